#include "document/SaveCommands.h"

#include "document/PageOutput.h"
#include "platform/surface/DesignSurface.h"

#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

SaveCommands::Outcome SaveCommands::Report(PageSaver::Result result)
{
    if (result != PageSaver::Result::Failed)
        return Outcome::Done;
    if (m_editor.Surface().IsDirty())
        m_editor.Page().HtmlDirty = true;
    m_editor.Boxes().Tell(
        m_editor.Window(),
        Editor::tr("Error occurred while saving document: %1.").arg(SaveErrorText(m_editor.LastSaveError)),
        MessageBoxes::Icon::Stop);
    return Outcome::Stopped;
}

/// A file that is not as we read or wrote it last holds somebody else's work. One that vanished is written anew.
bool SaveCommands::MayOverwrite(const QString &path)
{
    const LoadedFile &file = m_editor.File();
    if (path.isEmpty() || !QFileInfo::exists(path))
        return true;
    QString question;
    if (path != file.Path)
        question = Editor::tr("The file %1 already exists. Overwrite it with the page in the editor?");
    else if (ChangedOnDisk(path, file.Stamp))
        question = Editor::tr("The file %1 has been changed on disk since it was opened. "
                              "Overwrite it with the page in the editor?");
    else
        return true;
    return m_editor.Boxes().Ask(m_editor.Window(), question.arg(path), MessageBoxes::Buttons::YesNo,
                                MessageBoxes::Icon::Exclamation) == MessageBoxes::Answer::Yes;
}

void SaveCommands::SetDirty()
{
    if (m_editor.App().UseExternalEditor || MayOverwrite(m_saver.SetDirtyPath()))
        Report(m_saver.SetDirty());
}

bool SaveCommands::SaveBeforeLeaving()
{
    PageState &page = m_editor.Page();
    if (!IsPageName(page.CurrentFilePath)) {
        // The load that follows would drop what the user just asked to save.
        page.CurrentFilePath.clear();
        const QString path = AskForName();
        return !path.isEmpty() && Report(m_saver.SaveHTML(path)) == Outcome::Done;
    }
    if (!MayOverwrite(m_saver.SetDirtyPath()))
        return false;
    // With an external editor in use SetDirty writes nothing, but here the user has asked for it.
    const bool external = m_editor.App().UseExternalEditor;
    return Report(external ? m_saver.SaveCurrentPage() : m_saver.SetDirty()) == Outcome::Done;
}

void SaveCommands::SaveCurrentPage()
{
    Report(m_saver.SaveCurrentPage());
}

void SaveCommands::SaveDocument()
{
    {
        const QScopedValueRollback<bool> saving(m_editor.Page().ToolbarsOff, true);
        emit m_editor.CommandStatesChanged();
        const QString path = AskForName();
        if (!path.isEmpty())
            Report(m_saver.SaveAsItIs(path));
        m_editor.Surface().CollapseSelection();
    }
    emit m_editor.CommandStatesChanged();
}

Editor::Prompted SaveCommands::PromptSaveChanges()
{
    PageState &page = m_editor.Page();
    if (m_editor.Surface().IsDirty())
        page.HtmlDirty = true;
    if (page.PropertiesDirty)
        m_editor.SaveTopicProperties();
    if (!page.HtmlDirty)
        return Editor::Prompted::Nothing;
    if (page.CurrentFilePath.isEmpty())
        page.CurrentFilePath = NewPageName;
    const QString question = Editor::tr("Save changes to %1?").arg(page.CurrentFilePath);
    switch (m_editor.Boxes().Ask(m_editor.Window(), question, MessageBoxes::Buttons::YesNoCancel,
                                 MessageBoxes::Icon::Exclamation))
    {
    case MessageBoxes::Answer::Yes:
        // Also when its Save As was cancelled: then the operation that asked goes on, on purpose.
        return FileSave_Click() == Outcome::Stopped ? Editor::Prompted::Cancel : Editor::Prompted::Yes;
    case MessageBoxes::Answer::No:
        if (!m_editor.App().SaveImmediately)
            QFile::remove(page.CurrentFilePath + WorkingSuffix);
        return Editor::Prompted::No;
    default:
        return Editor::Prompted::Cancel;
    }
}

SaveCommands::Outcome SaveCommands::FileSave_Click()
{
    PageState &page = m_editor.Page();
    if (!IsPageName(page.CurrentFilePath)) {
        page.CurrentFilePath.clear();
        return FileSaveAs_Click();
    }
    if (!MayOverwrite(page.CurrentFilePath))
        return Outcome::Stopped;
    if (page.PropertiesDirty)
        m_editor.SaveTopicProperties(); // shows the new title
    const QString kept = m_editor.StatusText();
    m_editor.SetStatusText(Editor::tr("Saving Page..."));
    const PageSaver::Result result = m_saver.SaveCurrentPage();
    if (result == PageSaver::Result::Written)
        m_editor.SetStatusText(Editor::tr("Page Saved."));
    m_editor.SetStatusText(kept);
    return Report(result);
}

SaveCommands::Outcome SaveCommands::FileSaveAs_Click()
{
    PageState &page = m_editor.Page();
    const QString path = AskForName();
    if (path.isEmpty())
        return Outcome::NotDone;
    const bool wasDirty = page.HtmlDirty;
    page.HtmlDirty = false;
    const PageSaver::Result result = m_saver.SaveHTML(path);
    if (result != PageSaver::Result::Written) {
        page.HtmlDirty = wasDirty;
        return Report(result);
    }
    // What the surface holds is safe under the new name, from which it is loaded again.
    m_editor.Surface().MarkClean();
    page.HtmlDirty = false;
    page.FileToLoad = path;
    {
        const QScopedValueRollback<bool> skip(page.SkipSavePrompt, true);
        m_editor.LoadFile();
    }
    emit m_editor.FilesChanged(QFileInfo(path).path());
    m_editor.SetStatusText(m_editor.Surface().DocumentTitle());
    m_editor.SetStatusPath(page.CurrentFilePath);
    return Outcome::Done;
}

QString SaveCommands::AskForName()
{
    const PageState &page = m_editor.Page();
    FileDialogs::Request request;
    request.Title = Editor::tr("Save As");
    request.Filter = Editor::tr("HTML Files (*.htm*)|*.htm*");
    request.DefaultExtension = m_editor.App().DefaultExtension.mid(1);
    if (IsPageName(page.CurrentFilePath)) {
        request.Folder = QFileInfo(page.CurrentFilePath).path();
        request.FileName = QFileInfo(page.CurrentFilePath).fileName();
    }
    const std::optional<QString> chosen = m_editor.Dialogs().Save(m_editor.Window(), request);
    return chosen && !chosen->isEmpty() ? WithDefaultExtension(QFileInfo(*chosen).absoluteFilePath()) : QString();
}

/// Nobody has been asked yet about a file that the added extension hits.
QString SaveCommands::WithDefaultExtension(const QString &name)
{
    if (QFileInfo(name).fileName().contains(u'.'))
        return name;
    const QString path = name + m_editor.App().DefaultExtension;
    const bool taken = QFileInfo::exists(path) && path != m_editor.File().Path;
    return taken && !MayOverwrite(path) ? QString() : path;
}
