#include "shell/MainForm.h"

#include "document/Editor.h"
#include "editing/FindTools.h"
#include "editing/FormCellProp.h"
#include "editing/FormHyperLink.h"
#include "editing/FormTableProp.h"
#include "editing/SurfaceHandlers.h"
#include "forms/FormBuilderPane.h"
#include "platform/Help.h"
#include "platform/PreviewView.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/TabStates.h"
#include "shell/FocusRing.h"
#include "shell/HelpKey.h"
#include "shell/HelpWindow.h"
#include "shell/Hourglass.h"
#include "shell/ImageDialog.h"
#include "shell/LeftPane.h"
#include "shell/LinksPanel.h"
#include "shell/PagePropertiesPanel.h"
#include "shell/Startup.h"
#include "shell/StatusPanels.h"
#include "shell/ToolBars.h"
#include "shell/WindowPanes.h"
#include "shell/WorkArea.h"
#include "site/FileListModel.h"
#include "site/FilePane.h"
#include "site/NoticeLabel.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

MainForm::MainForm(const Services &services)
    : m_services(services),
      m_area(new WorkArea(this)),
      m_panes(new WindowPanes(m_app, m_area, this)),
      m_panels(new StatusPanels(statusBar())),
      m_ring(new FocusRing(this)),
      m_hourglass(std::make_unique<Hourglass>())
{
    setObjectName(u"MainForm"_s);
    setWindowTitle(m_app.AppTitle);
    setCentralWidget(m_panes);
    statusBar()->setObjectName(u"StatusBar1"_s);

    m_editor = std::make_unique<Editor>(Editor::Parts{.App = m_app,
                                                      .Page = m_page,
                                                      .Selection = m_selection,
                                                      .Surface = m_area->Surface(),
                                                      .Source = m_area->Source(),
                                                      .Ini = m_services.Ini,
                                                      .Boxes = m_services.Boxes,
                                                      .Dialogs = m_services.Dialogs,
                                                      .Window = this});
    m_pages = std::make_unique<OpenPage>(*m_editor, m_services);
    m_editingDialogs.OpenCellProperties = [this] { FormCellProp(*m_editor, this).exec(); };
    m_editingDialogs.OpenTableProperties = [this] { FormTableProp(*m_editor, this).exec(); };
    m_editingDialogs.OpenHyperlink = [this] { OpenHyperlink(*m_editor); };
    m_handlers = std::make_unique<SurfaceHandlers>(*m_editor, m_editingDialogs);
    m_find = std::make_unique<FindTools>(*m_editor, [this] { return m_files->ListTopics().Paths(); });
    m_closeDown = std::make_unique<CloseDown>(*m_editor);
    m_commands = std::make_unique<CommandTable>(*this);
    PlaceOnScreen();
    BuildPanes();
    BuildMenus();
    m_toolBars = std::make_unique<ToolBars>(*this, *m_editor, m_area->Preview(), *m_commands);
    BuildRing();
    ConnectEditor();
    ConnectPanes();
    ConnectViews();
    ConnectSession();
    ConnectHelp();
}

MainForm::~MainForm()
{
    SetHelpViewer({});
}

void MainForm::PlaceOnScreen()
{
    const QSize room = QGuiApplication::primaryScreen()->availableSize();
    resize(QSize(1100, 760).boundedTo(room * 9 / 10));
}

void MainForm::BuildPanes()
{
    m_windowActions.PaneHidden = [this] { return m_app.PaneHidden; };
    m_windowActions.TogglePane = [this] { m_app.PaneHidden ? m_panes->ShowPane() : m_panes->HidePane(); };
    LeftPane &left = m_panes->Left();
    m_files = new FilePane(*m_editor, &left);
    left.AddPage(tr("Files"), tr("Pages and folders of the site"), m_files);
    left.AddPage(tr("Form Builder"), tr("Fields to drag onto the page"), new FormBuilderPane(&left));
    m_editingDialogs.OpenImage = [this] { OpenImageDialog(*m_editor, *m_files); };
    m_pages->PaneFolder = [this] { return m_files->Folder(); };
    statusBar()->addPermanentWidget(new NoticeLabel(*m_files));
    connect(m_files, &FilePane::NewWindowWanted, m_editor.get(),
            [this](const QString &path) { m_pages->OpenInNewWindow(path); });
    connect(m_files, &FilePane::NewPageWanted, m_editor.get(), [this] { m_pages->FileNew_Click(); });
}

/// What F6 goes around: toolbars, left pane, page, report on links, status bar.
void MainForm::BuildRing()
{
    const QList<QToolBar *> bars = findChildren<QToolBar *>(QString(), Qt::FindDirectChildrenOnly);
    for (QToolBar *bar : bars) {
        m_ring->Add(bar);
        if (auto *more = bar->findChild<QToolButton *>(u"qt_toolbar_ext_button"_s)) // Qt leaves it nameless
            more->setAccessibleName(tr("More of %1").arg(bar->windowTitle()));
    }
    m_ring->Add(&m_panes->Left());
    m_ring->Add(m_area->Views());
    m_ring->Add(&m_area->Links());
    m_ring->Add(m_panels->Bar());
}

void MainForm::BuildMenus()
{
    const auto add = [this](const QString &name, const QString &title, const std::vector<Command> &rows) {
        QMenu *menu = menuBar()->addMenu(title);
        menu->setObjectName(name);
        m_commands->Add(menu, rows);
        m_commands->SetMenuState(menu, [this, name] { return IsMenuOn(name, m_page.ActiveTab); });
        return menu;
    };
    add(u"file"_s, tr("&File"), FileCommands(*m_editor, *m_pages));
    add(u"Edit"_s, tr("&Edit"), EditCommands(*m_editor, *m_find));
    QMenu *view = add(u"view"_s, tr("&View"), ViewCommands(*m_editor, *m_area, m_windowActions));
    m_commands->Add(view, PaneCommands(*m_ring));
    add(u"insert"_s, tr("&Insert"), InsertCommands(*m_editor, m_editingDialogs));
    QMenu *format = add(u"FormatMain"_s, tr("F&ormat"), FormatCommands(*m_editor));
    QMenu *blocks = format->addMenu(tr("Block Form&at"));
    blocks->setObjectName(u"FormatSub"_s);
    m_commands->Add(blocks, BlockFormatCommands(*m_editor));
    add(u"formmenu"_s, tr("For&m"), FormCommands());
    add(u"table"_s, tr("T&able"), TableCommands(*m_editor, m_editingDialogs));
    add(u"tools"_s, tr("&Tools"), ToolsCommands(*m_editor));
    add(u"D2D"_s, tr("&Position"), PositionCommands(*m_editor));
    add(u"help"_s, tr("&Help"), HelpCommands(this));
}

void MainForm::ConnectEditor()
{
    // The context is always one of our workers: they are gone before the controls are, which still signal while they
    // go.
    Editor *editor = m_editor.get();
    connect(editor, &Editor::StatusTextChanged, m_panels, &StatusPanels::ShowText);
    connect(editor, &Editor::StatusPathChanged, m_panels, &StatusPanels::ShowPath);
    connect(editor, &Editor::CaptionChanged, editor, [this](QString caption) {
        setWindowTitle(caption.replace("[*]"_L1, "[*][*]"_L1)); // Qt takes a lone one for its mark of changes
    });
    connect(editor, &Editor::TabSelected, m_area, &WorkArea::ShowView);
    connect(editor, &Editor::WaitCursor, m_hourglass.get(), &Hourglass::Show);
    connect(m_hourglass.get(), &Hourglass::TakesLong, m_panels,
            [this] { m_panels->ShowProgress(m_area->Surface().Busy()); });
    connect(m_hourglass.get(), &Hourglass::Ended, m_panels, [this] { m_panels->ShowProgress(false); });
    connect(m_find.get(), &FindTools::Progress, m_panels, &StatusPanels::ShowProgressOf);
}

void MainForm::ConnectPanes()
{
    connect(m_panes, &WindowPanes::PaneHiddenChanged, m_commands.get(), &CommandTable::Refresh);
    connect(m_panes, &WindowPanes::FocusLost, m_area, &WorkArea::TakeFocus);
    connect(m_editor.get(), &Editor::Saving, m_area, &WorkArea::ShowWhiteOut);
    connect(m_panels, &StatusPanels::UpdateAsked, m_editor.get(),
            [this] { m_services.Browse(QUrl::fromLocalFile(m_app.MainDir + u"help/updates.htm"_s)); });
}

void MainForm::ConnectViews()
{
    connect(m_area, &WorkArea::ViewChosen, m_editor.get(), [this](ViewTab view) { TakeTab(view); });
    connect(m_handlers.get(), &SurfaceHandlers::ToolbarsOutOfDate, m_toolBars.get(), &ToolBars::Follow);
    connect(m_handlers.get(), &SurfaceHandlers::ToolbarsOutOfDate, m_commands.get(), &CommandTable::RefreshSoon);
    connect(&m_area->Surface(), &DesignSurface::FindTextWanted, m_find.get(), &FindTools::Find);
    m_area->Properties().Connect(*m_editor);
    connect(m_editor.get(), &Editor::PreviewRequested, &m_area->Preview(), &PreviewView::Navigate);
    connect(&m_area->Source(), &SourceEditor::TextEdited, m_commands.get(), &CommandTable::RefreshSoon);
}

void MainForm::ConnectSession()
{
    connect(qGuiApp, &QGuiApplication::commitDataRequest, m_closeDown.get(), &CloseDown::CommitData,
            Qt::DirectConnection);
}

void MainForm::ConnectHelp()
{
    m_helpKey = std::make_unique<HelpKey>();
    SetHelpViewer([this](const QString &page) {
        if (!m_help)
            m_help = std::make_unique<HelpWindow>();
        m_help->ShowPage(m_app.MainDir + u"help"_s, page);
    });
}

void MainForm::Start(const QString &commandText)
{
    Startup({.Page = *m_editor, .Pages = *m_pages, .Area = *m_area, .Panes = *m_panes, .Outside = m_services})
        .Run(commandText);
    m_files->ShowFirstFolder();
}

void MainForm::TakeTab(ViewTab view)
{
    if (!m_page.TabChanging)
        m_editor->SelectTab(view);
    m_area->ShowView(m_page.ActiveTab);
}

void MainForm::EndNow()
{
    m_closeDown->EndNow();
}

void MainForm::closeEvent(QCloseEvent *event)
{
    event->setAccepted(m_closeDown->Close());
    if (!event->isAccepted())
        return;
    m_files->WriteSettings();
    m_help.reset();
}
