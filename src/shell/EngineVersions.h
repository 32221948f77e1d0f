#pragma once

#include <QString>

struct AppState;

/// Versions of the two engine parts that page handling depends on.
struct EngineVersions
{
    QString Browser; ///< "a.b.c.d"
    QString Editing; ///< "" when there is no such part
};

/// Asks the system files, and for a file that is not there the design surface's own version ("9.0.0.0" and "").
EngineVersions AskEngineVersions();

/// Sets EngineVersionNew and CharsetFix. The browser version is compared as text, on purpose: "9.0" is new,
/// "10.0" and "11.0" are not.
void TakeEngineVersions(AppState &app, const EngineVersions &versions);
