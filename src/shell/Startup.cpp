#include "shell/Startup.h"

#include "document/Editor.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/CommandLine.h"
#include "shell/EngineVersions.h"
#include "shell/LeftPane.h"
#include "shell/OpenPage.h"
#include "shell/RecentFiles.h"
#include "shell/RecoveryOffer.h"
#include "shell/Services.h"
#include "shell/StartSettings.h"
#include "shell/WindowPanes.h"
#include "shell/WorkArea.h"

#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds LongestHold(250); // after which somebody would wonder where the window is

} // namespace

Startup::Startup(const Parts &parts) : m_parts(parts) {}

void Startup::Run(const QString &commandText)
{
    m_parts.Page.App().StartingUp = true;
    m_parts.Page.Page().KeepPreviewFile = true;
    ReadEngineVersions();
    ReadCommandLine(commandText);
    ReadSettings();
    ReadRecentFiles();
    SelectFirstTab();
    // Before any page is loaded: an engine view whose first page came while it was hidden takes no keys.
    ShowWindow();
    HoldPainting();
    ChooseFirstPage();
    if (!FirstPageExists() || !BlankPageExists()) // else the blank page would only be seen to flash by
        LoadBlankPage();
    SelectStartView();
    OpenFirstPage();
    if (!m_parts.Page.HasPage())
        LoadBlankPage();
    OfferRecovery(m_parts.Page);
    EndStart();
}

void Startup::ReadEngineVersions()
{
    AppState &app = m_parts.Page.App();
    TakeEngineVersions(app, m_parts.Outside.Versions());
    app.TableGuidesOn = true;
    if (!app.EngineVersionNew)
        m_parts.Page.Surface().SetShowBorders(true);
}

void Startup::ReadCommandLine(const QString &commandText)
{
    const CommandLine commandLine = ParseCommandLine(commandText);
    m_parts.Page.App().CommandLineFile = PageFromCommandLine(commandLine.File, QDir::currentPath());
    if (commandLine.Splash) {
        m_splash = new frmSplash(m_parts.Page.Window());
    }
}

void Startup::ReadSettings()
{
    ReadStartSettings(m_parts.Page.App(), m_parts.Outside.Ini);
    m_parts.Page.Surface().SetSourceCodePreservation(m_parts.Page.App().PreserveHtml);
    m_parts.Page.Window()->setWindowTitle(m_parts.Page.App().AppTitle);
}

void Startup::LoadBlankPage()
{
    const QScopedValueRollback<bool> blank(m_parts.Page.Page().InitialBlankLoad, true);
    m_parts.Pages.LoadBlankPage();
}

void Startup::ReadRecentFiles()
{
    RecentFiles::Read(m_parts.Page.App(), m_parts.Outside.Ini);
}

void Startup::SelectFirstTab()
{
    PageState &page = m_parts.Page.Page();
    const QScopedValueRollback<bool> changing(page.TabChanging, true);
    page.ActiveTab = ViewTab::Normal;
    m_parts.Area.ShowView(ViewTab::Normal);
    m_parts.Panes.Left().ShowFirstPage();
}

void Startup::ShowWindow()
{
    if (m_parts.Page.App().PaneHidden)
        m_parts.Panes.HidePane();
    m_parts.Panes.SizeControls(PaneLayout::StartWidth);
    m_parts.Page.Window()->show();
    if (m_splash)
        m_splash->show(); // after the window, which would come up above it
}

/// The window is drawn in one go with its page, or without one that takes longer: each frame drawn before is a whole
/// window put together, which without a graphics card takes about as long as the engine needs to lay out a page.
void Startup::HoldPainting()
{
    QWidget *window = m_parts.Page.Window();
    window->setUpdatesEnabled(false);
    const auto paint = [window] { window->setUpdatesEnabled(true); };
    QObject::connect(&m_parts.Page.Surface(), &DesignSurface::DocumentComplete, window, paint,
                     Qt::SingleShotConnection);
    QTimer::singleShot(LongestHold, window, paint);
}

void Startup::SelectStartView()
{
    if (m_parts.Page.App().UseExternalEditor)
        m_parts.Area.Choose(ViewTab::HtmlSource);
}

void Startup::ChooseFirstPage()
{
    AppState &app = m_parts.Page.App();
    if (!app.CommandLineFile.isEmpty())
        app.FileToOpen = app.CommandLineFile;
    else if (app.AutoOpen)
        app.FileToOpen = m_parts.Outside.Ini.GetIni(u"Settings"_s, u"last_file"_s, QString());
}

bool Startup::FirstPageExists() const
{
    return QFileInfo(m_parts.Page.App().FileToOpen).isFile();
}

bool Startup::BlankPageExists() const
{
    return QFileInfo(m_parts.Page.App().MainDir + u"_blank.htm"_s).isFile();
}

void Startup::OpenFirstPage()
{
    if (!m_parts.Page.App().FileToOpen.isEmpty()) // a first start has no last file and nothing to complain of
        m_parts.Pages.OpenIfFound();
}

void Startup::EndStart()
{
    Editor &editor = m_parts.Page;
    editor.Source().ResetModified();
    editor.Surface().WaitWhileBusy();
    editor.App().StartingUp = false;
    editor.Page().KeepPreviewFile = false;
    editor.Surface().CaretToPageStart();
    emit editor.CommandStatesChanged();
}
