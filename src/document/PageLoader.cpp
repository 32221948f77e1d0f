#include "document/PageLoader.h"

#include "document/BackHistory.h"
#include "document/Editor.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/PathText.h"
#include "document/Recovery.h"
#include "document/SaveCommands.h"
#include "document/TagText.h"
#include "document/ViewSwitcher.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

quint32 ErrorCodeOf(DesignSurface::LoadError error)
{
    switch (error) {
    case DesignSurface::LoadError::None:
        return 0;
    case DesignSurface::LoadError::NotFound:
        return 0x80070002;
    case DesignSurface::LoadError::AccessDenied:
        return 70;
    case DesignSurface::LoadError::NotText:
    case DesignSurface::LoadError::Unexpected:
        break;
    }
    return 0x8000FFFF;
}

QString ReadErrorText(FileError error, const QString &path)
{
    switch (error) {
    case FileError::NotFound:
    case FileError::PathNotFound:
        return Editor::tr("Error: File %1 does not exist.").arg(path);
    case FileError::NotText:
        return Editor::tr("Error: File %1 is not a text file.").arg(path);
    case FileError::TooLarge:
        return Editor::tr("Error: File %1 is too large.").arg(path);
    default:
        return Editor::tr("Error: File %1 could not be read.").arg(path);
    }
}

} // namespace

QString LoadErrorText(quint32 code)
{
    switch (code) {
    case 0x80100001:
        return Editor::tr("Document contains a frameset");
    case 0x80100002:
        return Editor::tr("Document is primarily server side script");
    case 0x8000FFFF:
        return Editor::tr("Unexpected error");
    case 0x80070002:
        return Editor::tr("File not found");
    case 0x80070003:
        return Editor::tr("Path not found");
    case 5:
        return Editor::tr("Invalid argument");
    case 70:
        return Editor::tr("Access denied");
    default:
        return {};
    }
}

bool PageLoader::LoadFile()
{
    if (m_loading)
        return false;
    const QScopedValueRollback<bool> loading(m_loading, true);
    PageState &page = m_editor.Page();

    emit m_editor.LoadStarted();
    Load load;
    if (!ReadTarget(load))
        return false;
    NoteUnsavedChanges();
    // LoadInProgress stays set after Cancel and after a load in the design view: others rely on that.
    page.LoadInProgress = true;
    page.FormatBoxesReady = false;
    if (!LookAfterOldPage(load))
        return false;

    ChoosePaths(load);
    KeepHistory();
    TakeOver(load);
    GiveToSurface(load);
    ReadCharset(load.File.Text);
    page.HasBodyTag = HasBodyTagIn(load.File.Text);
    GiveToSource(load);

    emit m_editor.WaitCursor(true);
    const bool ready = m_editor.Surface().WaitWhileBusy();
    emit m_editor.CommandStatesChanged();
    emit m_editor.WaitCursor(false);
    page.PropertiesDirty = false;
    ReportError(load);
    if (ready)
        m_editor.Surface().CollapseSelection();
    ShowTitle();
    emit m_editor.FolderChanged(QFileInfo(page.CurrentFilePath).path());
    FinishByTab(load);
    return true;
}

/// The file is read before the old page is touched, so that a file which is no page leaves everything as it was.
bool PageLoader::ReadTarget(Load &load)
{
    const QString name = m_editor.Page().FileToLoad;
    if (!QFileInfo::exists(name)) {
        m_editor.Boxes().Tell(m_editor.Window(), Editor::tr("Error: File %1 does not exist.").arg(name),
                              MessageBoxes::Icon::Exclamation);
        return false;
    }
    load.Target = QFileInfo(name).absoluteFilePath();
    load.File = ReadTextFile(load.Target);
    if (load.File.Error == FileError::None)
        return true;
    m_editor.Boxes().Tell(m_editor.Window(), ReadErrorText(load.File.Error, name), MessageBoxes::Icon::Stop);
    return false;
}

void PageLoader::NoteUnsavedChanges()
{
    PageState &page = m_editor.Page();
    const bool changed =
        page.ActiveTab == ViewTab::HtmlSource ? m_editor.Source().IsModified() : m_editor.Surface().IsDirty();
    if (changed)
        page.HtmlDirty = true;
}

/// Brings the page being left up to date and offers to save it. False: it stays, because the user said so, because it
/// could not be written, or because the file asked for went away meanwhile.
bool PageLoader::LookAfterOldPage(Load &load)
{
    PageState &page = m_editor.Page();
    m_views.BringSurfaceUpToDate();
    if (page.PropertiesDirty)
        m_editor.SaveTopicProperties();
    if (!page.SkipSavePrompt && (page.HtmlDirty || m_editor.Surface().IsDirty())) {
        if (!SaveOldPage())
            return false;
        // Saving may have been saving over the very file that is to be loaded.
        if (ChangedOnDisk(load.Target, load.File.Stamp) && !ReadTarget(load))
            return false;
        page.HtmlDirty = false;
        m_editor.Source().ResetModified();
    }
    return true;
}

bool PageLoader::SaveOldPage()
{
    if (!m_editor.App().AutoSave) {
        const QString question = Editor::tr("Save changes to %1?").arg(m_editor.Page().CurrentFilePath);
        const MessageBoxes::Answer answer = m_editor.Boxes().Ask(
            m_editor.Window(), question, MessageBoxes::Buttons::YesNoCancel, MessageBoxes::Icon::Exclamation);
        if (answer == MessageBoxes::Answer::Cancel)
            return false;
        if (answer == MessageBoxes::Answer::No)
            return true;
    }
    return m_saveCommands.SaveBeforeLeaving();
}

void PageLoader::ChoosePaths(Load &load)
{
    load.Real = WithoutWorkingSuffix(load.Target);
    if (!m_editor.App().SaveImmediately && !QFileInfo::exists(load.Target)) {
        if (load.Target == load.Real)
            load.Target += WorkingSuffix;
        else
            load.Target = load.Real;
    }
}

void PageLoader::KeepHistory()
{
    PageState &page = m_editor.Page();
    if (page.InitialBlankLoad || page.GoingBack || !IsPageName(page.CurrentFilePath))
        return;
    PushBackHistory(page.BackHistory, page.CurrentFilePath);
    emit m_editor.BackHistoryChanged();
}

/// From here on the new page is the page in hand. What was unsaved of the old one is saved or given up.
void PageLoader::TakeOver(const Load &load)
{
    PageState &page = m_editor.Page();
    page.LoadedFilePath = load.Target;
    page.CurrentFilePath = load.Real;
    page.HtmlDirty = false;
    page.RefillIfBlank = false;
    m_editor.RemovePreviewFile();
    m_editor.RecoveryCopies().Clear();
}

/// The surface shows the page itself, the source view the file asked for; they are two files only where a working
/// copy of older data is opened.
void PageLoader::GiveToSurface(Load &load)
{
    const PageState &page = m_editor.Page();
    TextFileContent real = load.File;
    if (load.Real != load.Target) {
        real = ReadTextFile(load.Real);
        if (real.Error != FileError::None) {
            real = load.File;
            real.Stamp = {};
        }
    }
    m_editor.File() = {load.Real, real.Encoding, real.Stamp, real.Text};

    if (!m_editor.App().EngineVersionNew) {
        load.ErrorCode = ErrorCodeOf(m_editor.Surface().LoadDocument(load.Target));
        return;
    }
    const QString text = GuideStyle::Remove(real.Text);
    load.SurfaceText = m_editor.App().TableGuidesOn ? GuideStyle::InsertOnly(text) : text;
    // The text goes straight to the surface: the scratch copy is one for a whole folder, and another window may have
    // its page in it by the time it is read back. It is written while the engine is at work already.
    m_editor.Surface().LoadText(load.SurfaceText, page.CurrentFilePath);
    WriteScratchCopy(load, m_editor.App().TableGuidesOn ? GuideStyle::Insert(text) : text);
}

/// The copy is never deleted. A folder that can't be written to has none, and the page opens all the same.
void PageLoader::WriteScratchCopy(const Load &load, const QString &text)
{
    const QDir folder = QFileInfo(load.Target).dir();
    const QFileInfo scratch(folder.filePath(ScratchFileName));
    if (!QFileInfo(folder.path()).isWritable() || scratch.isSymLink() || scratch.absoluteFilePath() == load.Target)
        return;
    WriteTextFile(scratch.absoluteFilePath(), text, m_editor.File().Encoding);
}

void PageLoader::ReadCharset(const QString &text)
{
    if (m_editor.App().CharsetFix)
        m_editor.Page().DocumentCharset = DeclaredCharset(text);
}

void PageLoader::GiveToSource(const Load &load)
{
    PageState &page = m_editor.Page();
    m_editor.Source().SetText(load.File.Text);
    m_editor.Source().ResetModified();

    // The texts to fall back on are this page's from now on: an empty page must not be filled with the page before it.
    const bool blank = IsBlankPage(load.File.Text, page.HasBodyTag);
    page.LastGoodHtml.clear();
    page.LastGoodSource = blank ? QString() : load.File.Text;
    page.LastGoodBaseUrl = m_editor.Surface().BaseURL();
    page.RefillIfBlank = !blank;
}

/// Only positive codes are told; the surface's own are negative, and the page then stands in the source view.
void PageLoader::ReportError(Load &load)
{
    if (static_cast<qint32>(load.ErrorCode) <= 0)
        return;
    const QString text = LoadErrorText(load.ErrorCode);
    if (text.isEmpty())
        m_editor.Surface().LoadDocument(load.Target);
    m_editor.Boxes().Tell(m_editor.Window(), Editor::tr("Error occurred while loading document: %1.").arg(text),
                          MessageBoxes::Icon::Stop);
}

void PageLoader::ShowTitle()
{
    const QString title = m_editor.Surface().DocumentTitle();
    m_editor.SetStatusText(title.isEmpty() ? Editor::tr("[No Title]") : title);
    m_editor.SetStatusPath(m_editor.Page().CurrentFilePath);
    emit m_editor.CaptionChanged(m_editor.App().AppTitle + " - "_L1 + m_editor.StatusText());
}

void PageLoader::FinishByTab(const Load &load)
{
    PageState &page = m_editor.Page();
    switch (page.ActiveTab) {
    case ViewTab::Normal:
        if (QWidget *input = m_editor.Surface().InputWidget())
            input->setFocus();
        return;
    case ViewTab::PageProperties:
        m_editor.LoadTopicProperties();
        return;
    case ViewTab::Preview:
        emit m_editor.PreviewRequested(load.Target);
        if (page.SourceChanged)
            m_editor.SetHTML();
        page.SourceChanged = false;
        return;
    case ViewTab::HtmlSource:
    case ViewTab::Publish:
        m_editor.Source().ResetModified();
        page.LoadInProgress = false;
        return;
    }
}

void PageLoader::DocumentComplete()
{
    PageState &page = m_editor.Page();
    const bool mayRefill = std::exchange(page.RefillIfBlank, false);
    if (page.ActiveTab != ViewTab::Normal || m_editor.App().ClosingDown)
        return;
    m_editor.Selection().PendingHtmlFromSource = false;
    if (!page.FormatBoxesReady)
        ReadBlockFormats();
    // Serialising a big page takes its time: only when the answer depends on the text.
    if (page.StyleSheetPath == "none"_L1)
        FindStyleSheet(m_editor.Surface().DocumentHTML());
    if (mayRefill && m_editor.Surface().LooksEmpty() && m_editor.source_blank_error(1))
        RefillSurface();
}

void PageLoader::ReadBlockFormats()
{
    emit m_editor.BlockFormatsRead(m_editor.Surface().ExecCommand(DECMD_GETBLOCKFMTNAMES).toStringList());
    m_editor.Page().FormatBoxesReady = true;
}

void PageLoader::FindStyleSheet(const QString &html)
{
    PageState &page = m_editor.Page();
    const qsizetype link = html.indexOf("<link "_L1, 0, Qt::CaseInsensitive);
    if (link >= 0) {
        const QString address = TagValue(html, link + 1, u"HREF"_s, {}, TagMode::Read);
        page.StyleSheetPath = address.isEmpty() ? address : MakeFullPathRel(address, page.FileToLoad);
    }
    // A page without a link gets a style sheet of this name in the site's folder.
    if (page.StyleSheetPath == "none"_L1)
        page.StyleSheetPath = MakeFullPath(u"javahelp.css"_s, m_editor.App().ProjectDir);
}

void PageLoader::RefillSurface()
{
    const PageState &page = m_editor.Page();
    const bool fromSurface = page.LastGoodHtml.size() > page.LastGoodSource.size() + 30;
    const QString &text = fromSurface ? page.LastGoodHtml : page.LastGoodSource;
    if (text.isEmpty())
        return;
    m_editor.Surface().SetDocumentHTML(text);
    m_editor.Surface().SetBaseURL(page.LastGoodBaseUrl);
}
