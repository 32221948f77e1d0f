#pragma once

#include <QString>
#include <QStringList>

/// What holds for the whole run: settings as read at start, and the flags of start and stop.
/// Plain data; the settings file itself is read and written by platform/Settings.
struct AppState
{
    QString AppTitle = QStringLiteral("Inkloom HTML Editor"); ///< window, application and every message box
    bool StartingUp = true;                                   ///< until the end of start-up
    bool ClosingDown = false;                                 ///< set while closing, cleared when the user cancels

    bool EngineVersionNew = false; ///< engine version compares >= "8" as text: the guide style is in use
    bool CharsetFix = false;       ///< editing engine version is exactly "6.1.0.9246"
    bool TableGuidesOn = true;     ///< the guide style is put into the design view

    /// Extensions treated as text by file pane and publishing, in this order.
    QString TextFileExtensions =
        QStringLiteral(".htm,.shtm,.php,.asp,.xml,.rtf,.xhtm,.css,.js,.txt,.cgi,.pl,.py,.htaccess");
    QString CommandLineFile; ///< file named on the command line, quotes removed

    // Settings, by their keys in the settings file.
    bool AutoOpen = true;                                   ///< autoopen
    bool AutoSave = false;                                  ///< autosave
    bool UseExternalEditor = false;                         ///< useexted
    QString ExternalEditorPath;                             ///< exted
    QString DefaultExtension = QStringLiteral(".htm");      ///< defext
    QString DefaultTemplate = QStringLiteral("_blank.htm"); ///< def_template
    bool AutoLinkStyles = true;                             ///< auto_link_style_insert
    bool PreserveHtml = false;                              ///< preserveHTML
    bool PaneHidden = false;                                ///< showpane is "0": the left pane is collapsed
    bool ExactSource = false;                               ///< exactsource: the clean-up reaches only what is new
    QString XmlEncoding = QStringLiteral("ISO-8859-1");     ///< xmlencode
    bool SaveImmediately = true;                            ///< saveimmed
    QString MainDir;                                        ///< main dir: folder of the installed data files
    QString MainDictionary;                                 ///< main dictionary
    QString CustomDictionary;                               ///< custom dictionary
    QString TemplatesDir;                                   ///< MainDir + "Templates"
    QString FilePattern; ///< file pane: patterns by ";"; grows with each OK in the settings

    QStringList RecentList;     ///< most recent first, each row "path| "; at most 25 rows
    QString FileToOpen;         ///< path that OpenProject_Click opens without asking; emptied afterwards
    bool NewWindowMode = false; ///< set around OpenProject_Click by File > Open in New Editor Window
    QString ProjectFile;        ///< base of the ".prj" file of GetProj; empty: the file is named ".prj"
    QString ProjectDir;         ///< the folder that the file pane opened first
};
