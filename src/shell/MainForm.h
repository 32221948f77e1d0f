#pragma once

#include "editing/EditingDialogs.h"
#include "shell/CloseDown.h"
#include "shell/commands/Commands.h"
#include "shell/OpenPage.h"
#include "shell/Services.h"
#include "state/AppState.h"
#include "state/PageState.h"
#include "state/SurfaceState.h"

#include <QMainWindow>

#include <memory>

class Editor;
class FilePane;
class FindTools;
class FocusRing;
class HelpKey;
class HelpWindow;
class Hourglass;
class StatusPanels;
class SurfaceHandlers;
class ToolBars;
class WindowPanes;
class WorkArea;

/// The main window: makes the controls, the shared fields and the objects that do the work, and connects them.
class MainForm : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainForm(const Services &services);
    ~MainForm() override;

    /// Start-up to the point where the user can work; shows the window. `commandText` is what stands behind the
    /// program's name on the command line.
    void Start(const QString &commandText);

    /// Ends the program without a question, as at the end of a session: unsaved words go to a recovery copy.
    void EndNow();

    Editor &Page() const { return *m_editor; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void PlaceOnScreen();
    void BuildPanes();
    void BuildRing();
    void BuildMenus();
    void ConnectEditor();
    void ConnectPanes();
    void ConnectViews();
    void ConnectSession();
    void ConnectHelp();
    void TakeTab(ViewTab view);

    Services m_services;
    AppState m_app;
    PageState m_page;
    SurfaceState m_selection;
    WorkArea *m_area;
    WindowPanes *m_panes;
    StatusPanels *m_panels;
    FocusRing *m_ring;
    std::unique_ptr<Hourglass> m_hourglass;
    std::unique_ptr<Editor> m_editor;
    FilePane *m_files = nullptr;
    std::unique_ptr<OpenPage> m_pages;
    EditingDialogs m_editingDialogs;
    std::unique_ptr<FindTools> m_find;
    WindowActions m_windowActions;
    std::unique_ptr<SurfaceHandlers> m_handlers;
    std::unique_ptr<CloseDown> m_closeDown;
    std::unique_ptr<CommandTable> m_commands;
    std::unique_ptr<ToolBars> m_toolBars;
    std::unique_ptr<HelpWindow> m_help; ///< made when it is first asked for
    std::unique_ptr<HelpKey> m_helpKey;
};
