#pragma once

#include <QString>
#include <QStringList>

struct AppState;

/// Templates are plain pages in two folders: those of the program, which an installation lets nobody write to, and the
/// user's own, which come first where both have one of a name.

/// Makes the program's folder if there is none; that it cannot be made is no fault.
void MakeTemplatesFolder(const AppState &app);

/// Names of all templates, sorted without regard to case.
QStringList TemplateNames(const AppState &app);

/// The file of that name, which need not exist.
QString TemplatePath(const AppState &app, const QString &name);

/// Where a new template goes: the program's folder if it can be written to, else the user's, which is made.
QString FolderForNewTemplate(const AppState &app);
