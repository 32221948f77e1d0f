#pragma once

#include <QString>
#include <QStringList>

class QUrl;

/// Starts a program that lives on when this one ends. False when it could not be started (no such file, no right to
/// run it). Arguments are handed over one by one, without a shell: nothing in them is interpreted.
bool StartDetached(const QString &program, const QStringList &arguments);

/// Hands an address to the desktop, which shows it in the user's browser. False when it has none.
bool OpenInBrowser(const QUrl &address);
