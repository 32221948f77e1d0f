#pragma once

#include <QString>

/// Where this program keeps its files, by the XDG base directory rules; without a separator at the end.
/// Nothing is created here.
namespace Folders {
QString Config(); ///< settings: $XDG_CONFIG_HOME/inkloom
QString State();  ///< log and recovery copies: $XDG_STATE_HOME/inkloom
QString Data();   ///< what the user adds: $XDG_DATA_HOME/inkloom
/// Folder of the read-only settings file that the installation writes: $INKLOOM_SYSTEM_CONFIG, else the folder of the
/// running program, when a settings file stands in it, else /etc/inkloom.
QString SystemConfig();
} // namespace Folders
