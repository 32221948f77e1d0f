#pragma once

class Settings;
struct AppState;

/// Reads every setting that holds for the whole run, with its default, and derives the folders and names that depend
/// on them. A missing file gives all defaults.
void ReadStartSettings(AppState &app, const Settings &ini);
