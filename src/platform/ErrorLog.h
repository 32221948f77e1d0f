#pragma once

#include <QString>

/// The error log of a few dialogs: one line each, "source: number description", appended to "TomeloftJavaHelp.log" in
/// the user's state folder. A log that cannot be written is no reason to stop anything.
void LogError(const QString &source, int number, const QString &description);
