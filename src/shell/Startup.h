#pragma once

#include "shell/frmSplash.h"

#include <QPointer>
#include <QString>

class Editor;
class OpenPage;
class WindowPanes;
class WorkArea;
struct Services;

/// The steps from an empty window to the page that the user wants to see, in their order. A step that fails is passed
/// over: the editor always comes up.
class Startup
{
public:
    struct Parts
    {
        Editor &Page;
        OpenPage &Pages;
        WorkArea &Area;
        WindowPanes &Panes;
        const Services &Outside;
    };

    explicit Startup(const Parts &parts);
    void Run(const QString &commandText);

private:
    void ReadEngineVersions();
    void ReadCommandLine(const QString &commandText);
    void ReadSettings();
    void LoadBlankPage();
    void ReadRecentFiles();
    void SelectFirstTab();
    void ShowWindow();
    void HoldPainting();
    void SelectStartView();
    void ChooseFirstPage();
    bool FirstPageExists() const;
    bool BlankPageExists() const;
    void OpenFirstPage();
    void EndStart();

    Parts m_parts;
    QPointer<frmSplash> m_splash;
};
