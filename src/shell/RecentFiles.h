#pragma once

#include <QStringList>

class Settings;
struct AppState;

/// The list of files opened last: rows "path| ", most recent first. A path is compared whole, without regard to case
/// where file names have none.
namespace RecentFiles {

inline constexpr int MaximumRows = 25;
inline constexpr int VisibleRows = 5;

/// Fills the list from keys "0", "1", ... of the settings. A row whose file is gone is left out and reading goes on;
/// an empty key ends it.
void Read(AppState &app, const Settings &ini);

/// Writes the list, and the two keys behind it empty, so that rows of a longer list before do not come back.
void Write(const AppState &app, Settings &ini);

/// `path` becomes the first row; a row it had moves up, else the 26th falls off.
void Add(AppState &app, const QString &path);

/// The path of a row; "" for a row that does not exist.
QString Path(const AppState &app, int row);

/// Menu text of the rows that show, at most five: "&0  " and the path. Of a path longer than 30 characters only its
/// end shows, from a separator on, behind "...".
QStringList Captions(const AppState &app);

} // namespace RecentFiles
