#include "shell/OpenPage.h"

#include "document/Editor.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/RecentFiles.h"
#include "shell/Services.h"
#include "site/FormNewTopic.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QObject>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The name that a page without one bears from its first question on.
const QString NewPageName = u"NEW PAGE"_s;

} // namespace

OpenPage::OpenPage(Editor &editor, const Services &services) : m_editor(editor), m_services(services) {}

void OpenPage::OpenProject_Click()
{
    AppState &app = m_editor.App();
    QString path = std::exchange(app.FileToOpen, QString());
    if (!LeavePage())
        return;
    if (path.isEmpty())
        path = AskForPage();
    if (path.isEmpty())
        return;
    if (app.NewWindowMode)
        OpenInNewWindow(path);
    else
        Load(path);
}

QString OpenPage::AskForPage()
{
    FileDialogs::Request request;
    request.Title = m_editor.App().NewWindowMode ? QObject::tr("Open HTML Page in New Editor Window")
                                                 : QObject::tr("Open HTML Page");
    request.Filter = QObject::tr("HTML Files (*.htm*)|*.htm*");
    const QFileInfo page(m_editor.Page().CurrentFilePath);
    if (page.isAbsolute())
        request.Folder = page.path();
    return m_services.Dialogs.Open(m_editor.Window(), request).value_or(QString());
}

void OpenPage::newwin_Click()
{
    const QScopedValueRollback<bool> newWindow(m_editor.App().NewWindowMode, true);
    m_editor.App().FileToOpen.clear();
    OpenProject_Click();
}

void OpenPage::recent_Click(int row)
{
    m_editor.App().FileToOpen = RecentFiles::Path(m_editor.App(), row);
    OpenIfFound();
}

void OpenPage::OpenIfFound()
{
    QString &path = m_editor.App().FileToOpen;
    if (QFileInfo(path).isFile()) {
        OpenProject_Click();
        return;
    }
    m_services.Boxes.Tell(m_editor.Window(), QObject::tr("Cannot find file %1.").arg(path),
                          MessageBoxes::Icon::Exclamation);
    path.clear();
}

void OpenPage::FileNew_Click()
{
    const QFileInfo page(m_editor.Page().CurrentFilePath);
    const QString folder = page.isAbsolute() ? page.path() : m_editor.App().ProjectDir;
    FormNewTopic(m_editor, folder, {}, m_editor.Window()).exec();
}

void OpenPage::LoadBlankPage()
{
    PageState &page = m_editor.Page();
    page.FileToLoad = m_editor.App().MainDir + u"_blank.htm"_s;
    const QScopedValueRollback<bool> skip(page.SkipSavePrompt, m_changesDropped);
    if (!m_editor.LoadFile())
        return;
    page.CurrentFilePath.clear();
    m_editor.SetStatusPath(QString());
}

/// False when the user wants to stay. The user is asked once: what "No" gives up is not asked for again by the load.
/// With AutoSave the load saves a page that has a name, without any question.
bool OpenPage::LeavePage()
{
    const AppState &app = m_editor.App();
    const QString &path = m_editor.Page().CurrentFilePath;
    m_changesDropped = false;
    if (app.AutoSave && !app.NewWindowMode && !path.isEmpty() && path != NewPageName)
        return true;
    const Editor::Prompted prompted = m_editor.PromptSaveChanges();
    m_changesDropped = prompted == Editor::Prompted::No;
    return prompted != Editor::Prompted::Cancel;
}

void OpenPage::Load(const QString &path)
{
    PageState &page = m_editor.Page();
    page.FileToLoad = path;
    const QScopedValueRollback<bool> skip(page.SkipSavePrompt, m_changesDropped);
    if (m_editor.LoadFile())
        RecentFiles::Add(m_editor.App(), page.CurrentFilePath);
}

void OpenPage::OpenInNewWindow(const QString &path)
{
    const QString program = QCoreApplication::applicationFilePath();
    if (!m_services.StartProgram(program, {u"nosplash-"_s + path}))
        m_services.Boxes.Tell(m_editor.Window(), QObject::tr("Cannot start %1.").arg(program),
                              MessageBoxes::Icon::Stop);
}
