#include "document/Editor.h"

#include "document/GuideStyle.h"
#include "document/NavLinkStyles.h"
#include "document/PageLoader.h"
#include "document/PageOutput.h"
#include "document/PageProperties.h"
#include "document/PageSaver.h"
#include "document/PageText.h"
#include "document/Recovery.h"
#include "document/SaveCommands.h"
#include "document/ViewSwitcher.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {

constexpr int ShortestSource = 20; ///< a source view with less holds no page

const QString MapSection = u"IMAGE MAP"_s;
const QString MapKey = u"MapCount"_s;

} // namespace

Editor::Editor(const Parts &parts, QObject *parent)
    : QObject(parent),
      m_parts(parts),
      m_views(std::make_unique<ViewSwitcher>(*this)),
      m_saver(std::make_unique<PageSaver>(*this, *m_views)),
      m_saveCommands(std::make_unique<SaveCommands>(*this, *m_saver)),
      m_loader(std::make_unique<PageLoader>(*this, *m_saveCommands, *m_views)),
      m_recovery(std::make_unique<Recovery>(*this))
{
    connect(&m_parts.Surface, &DesignSurface::DocumentComplete, this, [this] { m_loader->DocumentComplete(); });
    connect(&m_parts.Surface, &DesignSurface::Notice, this, &Editor::SetStatusText);
    connect(&m_parts.Surface, &DesignSurface::RendererLost, this,
            [this] { SetStatusText(tr("The page view was restarted; your changes are kept.")); });
    // Later, when whoever changed the page has said whether that is to be saved.
    connect(
        &m_parts.Surface, &DesignSurface::DirtyChanged, this,
        [this](bool dirty) {
            if (!dirty)
                ForgetUndoneChanges();
        },
        Qt::QueuedConnection);
}

Editor::~Editor() = default;

bool Editor::LoadFile()
{
    return m_loader->LoadFile();
}

void Editor::GoBack()
{
    PageState &page = Page();
    if (page.BackHistory.isEmpty())
        return;
    page.FileToLoad = page.BackHistory.last();
    const QScopedValueRollback<bool> goingBack(page.GoingBack, true);
    if (!LoadFile())
        return;
    page.BackHistory.removeLast();
    emit BackHistoryChanged();
}

void Editor::SetHTML()
{
    const QString text = Source().Text();
    if (text.size() < ShortestSource)
        return;
    const QString base = Surface().BaseURL();
    Surface().SetDocumentHTML(text);
    Surface().SetBaseURL(base);
}

/// The user has taken back all that was changed since the page was loaded or saved, over all visits to other views.
void Editor::ForgetUndoneChanges()
{
    PageState &page = Page();
    if (!page.HtmlDirty || page.PropertiesDirty || m_views->SourceIsAhead() || !Surface().IsAsSaved())
        return;
    page.HtmlDirty = false;
    m_recovery->Update();
}

void Editor::SetDirty()
{
    m_saveCommands->SetDirty();
}

void Editor::SaveCurrentPage()
{
    m_saveCommands->SaveCurrentPage();
}

bool Editor::SaveHTML(const QString &path)
{
    return m_saver->SaveHTML(path) == PageSaver::Result::Written;
}

void Editor::SaveDocument()
{
    m_saveCommands->SaveDocument();
}

Editor::Prompted Editor::PromptSaveChanges()
{
    return m_saveCommands->PromptSaveChanges();
}

void Editor::FileSave_Click()
{
    m_saveCommands->FileSave_Click();
}

void Editor::FileSaveAs_Click()
{
    m_saveCommands->FileSaveAs_Click();
}

bool Editor::source_blank_error(int which)
{
    if (App().StartingUp)
        return false;
    return IsBlankPage(which == 1 ? Surface().DocumentHTML() : Source().Text(), Page().HasBodyTag);
}

void Editor::save_sourceblank_error()
{
    m_views->RememberGoodTexts(Surface().DocumentHTML());
}

void Editor::SetHTMLTitle(const QString &title)
{
    m_views->BringSurfaceUpToDate();
    if (!Surface().WaitWhileBusy())
        return;
    const QString old = Surface().EngineHTML();
    const QString html = WithTitle(old, title);
    if (html != old)
        m_views->GiveChanged(html);
    else if (Surface().SourceCodePreservation())
        m_views->RefreshSource();
    else
        Source().SetText(GuideStyle::Remove(html));
}

bool Editor::ChooseAColor(quint32 start)
{
    const QColor first(int(start & 0xFF), int((start >> 8) & 0xFF), int((start >> 16) & 0xFF));
    const std::optional<QColor> chosen = Dialogs().Color(Window(), first);
    if (!chosen)
        return false;
    ChosenColor = quint32(chosen->red()) | quint32(chosen->green()) << 8 | quint32(chosen->blue()) << 16;
    return true;
}

void Editor::LoadTopicProperties()
{
    PageProperties::Load(*this);
}

void Editor::SaveTopicProperties()
{
    PageProperties::Save(*this, *m_views);
}

void Editor::AddNavLinkStyles()
{
    NavLinkStyles::Add(*this, *m_views);
}

void Editor::SaveSelection()
{
    m_views->Tracker().SaveSelection();
}

void Editor::RestoreSelection()
{
    m_views->Tracker().RestoreSelection();
}

void Editor::GetSelection()
{
    m_views->Tracker().GetSelection();
}

void Editor::RemovePreviewFile()
{
    m_views->Preview().Remove();
}

void Editor::SelectTab(ViewTab tab)
{
    m_views->SelectTab(tab);
}

void Editor::ReplacePage(const QString &text, DesignSurface::TextForm form)
{
    Page().HasBodyTag = HasBodyTagIn(text);
    Source().SetText(text);
    m_views->GiveToSurface(text, form);
    Page().HtmlDirty = true;
    Surface().WaitWhileBusy();
}

DomElement Editor::GetSelectedElement() const
{
    const DomDocument dom = Surface().DOM();
    if (dom.SelectionType() == "Control"_L1)
        return dom.SelectionControlRange().commonParentElement();
    DomTextRange range = dom.SelectionTextRange();
    range.collapse();
    return range.parentElement();
}

QString Editor::GetProjFile() const
{
    return SideFileName(Page().CurrentFilePath);
}

QString Editor::GetProj(const QString &section, const QString &key, const QString &fallback) const
{
    return Ini().GetSide(SideFileName(App().ProjectFile), section, key, fallback);
}

void Editor::SetProj(const QString &section, const QString &key, const QString &value)
{
    Ini().SetSide(SideFileName(App().ProjectFile), section, key, value);
}

void Editor::ReadImageMapCount()
{
    Page().MapCount = Ini().GetSide(GetProjFile(), MapSection, MapKey, u"0"_s).toInt();
}

void Editor::WriteImageMapCount()
{
    Ini().SetSide(GetProjFile(), MapSection, MapKey, QString::number(Page().MapCount));
}

void Editor::SetStatusText(const QString &text)
{
    m_statusText = text;
    emit StatusTextChanged(text);
}

void Editor::SetStatusPath(const QString &path)
{
    m_statusPath = path;
    emit StatusPathChanged(path);
}

void Editor::ViewSub_Click(int index)
{
    if (index == 0)
        m_views->ToggleGuides();
    if (index == 1)
        Surface().SetShowDetails(!Surface().ShowDetails());
    if (index == 2) {
        App().PreserveHtml = !App().PreserveHtml;
        Surface().SetSourceCodePreservation(App().PreserveHtml);
    }
    if (index == 3)
        App().ExactSource = !App().ExactSource;
    emit CommandStatesChanged();
}

bool Editor::ViewSubTicked(int index) const
{
    switch (index) {
    case 0:
        return App().EngineVersionNew ? App().TableGuidesOn : Surface().ShowBorders();
    case 1:
        return Surface().ShowDetails();
    case 2:
        return App().PreserveHtml;
    case 3:
        return App().ExactSource && App().PreserveHtml;
    default:
        return false;
    }
}

bool Editor::ViewSubPossible(int index) const
{
    switch (index) {
    case 0:
    case 1:
        return Page().ActiveTab == ViewTab::Normal && !Surface().Busy();
    case 2:
        return !Surface().Busy();
    case 3:
        return App().PreserveHtml; // there is nothing exact about a text that the engine wrote
    default:
        return false;
    }
}

bool Editor::HasUnsavedChanges()
{
    const PageState &page = Page();
    return page.HtmlDirty || page.PropertiesDirty || m_views->SourceIsAhead() || Surface().IsDirty();
}
