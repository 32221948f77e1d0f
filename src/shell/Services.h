#pragma once

#include "platform/Processes.h"
#include "shell/EngineVersions.h"

#include <QStringList>
#include <QUrl>

#include <functional>

class FileDialogs;
class MessageBoxes;
class Settings;

/// What the main window gets from outside: the seams to files, desktop and processes. All outlive the window.
struct Services
{
    Settings &Ini;
    MessageBoxes &Boxes;
    FileDialogs &Dialogs;
    std::function<EngineVersions()> Versions = AskEngineVersions;
    /// Starts a program that lives on by itself; false when it could not be started.
    std::function<bool(const QString &program, const QStringList &arguments)> StartProgram = StartDetached;
    /// Shows an address in the user's browser.
    std::function<bool(const QUrl &address)> Browse = OpenInBrowser;
};
