#include "shell/Startup.h"

#include "document/Editor.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/CommandLine.h"
#include "shell/EngineVersions.h"
#include "shell/OpenPage.h"
#include "shell/RecentFiles.h"
#include "shell/RecoveryOffer.h"
#include "shell/Services.h"
#include "shell/StartSettings.h"
#include "shell/WorkArea.h"

#include <QDir>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

Startup::Startup(const Parts &parts) : m_parts(parts) {}

void Startup::Run(const QString &commandText)
{
    m_parts.Page.App().StartingUp = true;
    ReadEngineVersions();
    ReadCommandLine(commandText);
    ReadSettings();
    LoadBlankPage();
    ReadRecentFiles();
    SelectFirstTab();
    ShowWindow();
    SelectStartView();
    OpenFirstPage();
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
        m_splash->show();
    }
}

void Startup::ReadSettings()
{
    ReadStartSettings(m_parts.Page.App(), m_parts.Outside.Ini);
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
}

void Startup::ShowWindow()
{
    m_parts.Page.Window()->show();
    if (m_splash)
        m_splash->raise();
}

void Startup::SelectStartView()
{
    if (m_parts.Page.App().UseExternalEditor)
        m_parts.Area.Choose(ViewTab::HtmlSource);
}

void Startup::OpenFirstPage()
{
    AppState &app = m_parts.Page.App();
    if (app.CommandLineFile.isEmpty() && !app.AutoOpen)
        return;
    app.FileToOpen = m_parts.Outside.Ini.GetIni(u"Settings"_s, u"last_file"_s, QString());
    if (!app.CommandLineFile.isEmpty())
        app.FileToOpen = app.CommandLineFile;
    if (!app.FileToOpen.isEmpty()) // a first start has no last file and nothing to complain of
        m_parts.Pages.OpenIfFound();
}

void Startup::EndStart()
{
    Editor &editor = m_parts.Page;
    editor.Source().ResetModified();
    editor.Surface().WaitWhileBusy();
    editor.App().StartingUp = false;
    editor.Surface().CaretToPageStart();
    emit editor.CommandStatesChanged();
}
