#pragma once

#include <QString>
#include <QStringList>

/// Starts a program that lives on when this one ends. False when it could not be started (no such file, no right to
/// run it). Arguments are handed over one by one, without a shell: nothing in them is interpreted.
bool StartDetached(const QString &program, const QStringList &arguments);
