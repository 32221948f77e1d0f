#pragma once

class QWidget;

/// Help > About: name, version, licence, and what the program is made with.
void ShowAboutBox(QWidget *parent);
