#pragma once

class QWebEngineProfile;
class QWebEngineSettings;

/// The engine profile of pages under edit: nothing is stored, nothing leaves the machine, no page script runs.
namespace InertProfile {

/// Shared by all design surfaces of the process; lives until the application ends.
QWebEngineProfile *Instance();

void ApplySettings(QWebEngineSettings &settings);

} // namespace InertProfile
