#include "document/PageSaver.h"

#include "document/Editor.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/Recovery.h"
#include "document/ViewSwitcher.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

using namespace Qt::StringLiterals;

namespace {

/// Tells of a save from its start to its end, however it ends.
class SavingMark
{
public:
    explicit SavingMark(Editor &editor) : m_editor(editor) { emit m_editor.Saving(true); }
    ~SavingMark() { emit m_editor.Saving(false); }
    Q_DISABLE_COPY(SavingMark)

private:
    Editor &m_editor;
};

} // namespace

QString SaveErrorText(FileError error)
{
    switch (error) {
    case FileError::DiskFull:
        return Editor::tr("Disk is full");
    case FileError::PathNotFound:
        return Editor::tr("Path not found");
    case FileError::AccessDenied:
        return Editor::tr("Access denied");
    case FileError::Unexpected:
        return Editor::tr("Unexpected error");
    default:
        return Editor::tr("Unknown error");
    }
}

QString PageSaver::SetDirtyPath() const
{
    if (!IsPageName(m_editor.Page().CurrentFilePath))
        return {};
    QString path = WithoutWorkingSuffix(m_editor.Page().CurrentFilePath);
    if (!HasPageExtension(path, m_editor.App().TextFileExtensions))
        path += ".htm"_L1;
    return path;
}

PageSaver::Result PageSaver::SetDirty()
{
    PageState &page = m_editor.Page();
    if (page.PropertiesDirty)
        m_editor.SaveTopicProperties();
    if (m_editor.App().UseExternalEditor)
        return Result::NothingToDo;
    page.BusySaving = true;
    const QString path = SetDirtyPath();
    if (path.isEmpty())
        return Result::NothingToDo; // BusySaving stays set on purpose
    const Result result = SaveTo(path, Target::Page);
    page.BusySaving = false;
    if (result == Result::Written)
        page.LoadedFilePath = path;
    if (!m_editor.App().SaveImmediately)
        page.HtmlDirty = true;
    return result;
}

PageSaver::Result PageSaver::SaveCurrentPage()
{
    PageState &page = m_editor.Page();
    DesignSurface &surface = m_editor.Surface();
    m_editor.LastSaveError = FileError::None;
    const SavingMark saving(m_editor);
    emit m_editor.WaitCursor(true);
    Result result = Result::Failed;
    if (m_views.BringSurfaceUpToDate() && surface.WaitWhileBusy()) {
        const MergedText source = surface.DocumentSource();
        if (RefuseSave(source.Text, page.HasBodyTag))
            return Result::Refused;
        // One write, not the surface's own and then ours over it: should the second fail, the file would be left
        // with the guide style in it. The text is read once, since nothing can change it in between.
        if (m_editor.App().SaveImmediately && !m_editor.App().UseExternalEditor)
            result = WriteCleanedUp(page.CurrentFilePath, source, Target::Page);
        else
            result = Write(page.CurrentFilePath, AsItIs(source.Text), Target::Page);
    } else {
        m_editor.LastSaveError = FileError::Unexpected;
    }
    page.BusySaving = false;
    emit m_editor.WaitCursor(false);
    return result;
}

PageSaver::Result PageSaver::SaveHTML(const QString &path)
{
    return SaveTo(path, TargetFor(path));
}

PageSaver::Result PageSaver::SaveAsItIs(const QString &path)
{
    m_editor.LastSaveError = FileError::None;
    const SavingMark saving(m_editor);
    if (!m_views.BringSurfaceUpToDate() || !m_editor.Surface().WaitWhileBusy()) {
        m_editor.LastSaveError = FileError::Unexpected;
        return Result::Failed;
    }
    return Write(path, AsItIs(m_editor.Surface().DocumentHTML()), TargetFor(path));
}

PageSaver::Target PageSaver::TargetFor(const QString &path) const
{
    return path == m_editor.Page().CurrentFilePath ? Target::Page : Target::Copy;
}

PageSaver::Result PageSaver::SaveTo(const QString &path, Target target)
{
    m_editor.LastSaveError = FileError::None;
    if (path.isEmpty() || m_editor.Page().SuppressSave)
        return Result::NothingToDo;
    const SavingMark saving(m_editor);
    // A surface that is still busy answers with the page before: that must not get into this file.
    if (!m_views.BringSurfaceUpToDate() || !m_editor.Surface().WaitWhileBusy()) {
        m_editor.LastSaveError = FileError::Unexpected;
        return Result::Failed;
    }
    const MergedText source = m_editor.Surface().DocumentSource();
    if (RefuseSave(source.Text, m_editor.Page().HasBodyTag))
        return Result::Refused;
    return WriteCleanedUp(path, source, target);
}

/// The surface's text without the clean-up.
QString PageSaver::AsItIs(const QString &html) const
{
    const QString text = GuideStyle::Remove(html);
    return m_editor.Surface().SourceCodePreservation() ? text : WithPageLineEnds(text, m_editor.File().Text);
}

PageSaver::Result PageSaver::WriteCleanedUp(const QString &path, const MergedText &source, Target target)
{
    const QString text = m_views.Output(source, path);
    ShowInSource(text);
    return Write(path, text, target);
}

PageSaver::Result PageSaver::Write(const QString &path, const QString &text, Target target)
{
    if (!IsPageName(path))
        return Result::NothingToDo;
    LoadedFile &file = m_editor.File();
    const TextEncoding encoding = PageEncodingFor(text, file.Text, file.Encoding);
    const TextFileWritten written = WriteTextFile(path, text, encoding);
    m_editor.LastSaveError = written.Error;
    if (written.Error != FileError::None)
        return Result::Failed;
    if (target == Target::Page) {
        file = {path, encoding, written.Stamp, text};
        m_editor.Page().HtmlDirty = false;
        m_editor.Surface().MarkClean();
        m_editor.RecoveryCopies().Clear();
    }
    m_editor.WriteImageMapCount();
    return Result::Written;
}

/// The same text again keeps what the user can undo in the source view.
void PageSaver::ShowInSource(const QString &text)
{
    SourceEditor &source = m_editor.Source();
    if (source.Text() != text) {
        const qsizetype caret = source.CaretPosition();
        source.SetText(text);
        source.Select(caret, 0);
    }
    source.ResetModified();
}
