#pragma once

#include <QStringList>

/// What the command line asks for.
struct CommandLine
{
    QString File; ///< the page to open, without double quotes; "" for none
    bool Splash = true;
};

/// The command text: what stands behind the program's name. One argument is taken as it is (the desktop passes a path
/// with blanks as one), several are joined with blanks. `arguments` are those of the process, its name first.
QString CommandText(const QStringList &arguments);

/// "page.htm", or "nosplash-" directly followed by the page. The marker is taken to stand first: with it anywhere in
/// the text, the page is the text from its tenth character on.
CommandLine ParseCommandLine(const QString &commandText);

/// The path that is meant: absolute, seen from `workingFolder`. A folder stands for the index.htm or index.html in it,
/// and for itself when it has neither.
QString PageFromCommandLine(const QString &file, const QString &workingFolder);
