#include "document/ViewSwitcher.h"

#include "document/Editor.h"
#include "document/FixupHtml.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/SourceCleanUp.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <QScopedValueRollback>

void ViewSwitcher::SelectTab(ViewTab tab)
{
    PageState &page = m_editor.Page();
    const ViewTab left = page.ActiveTab;
    if (m_switching)
        return; // an event of the switch that is waiting below brought us here
    if (page.TabChanging || tab == left) {
        page.ActiveTab = tab;
        emit m_editor.TabSelected(tab);
        return;
    }
    const QScopedValueRollback<bool> switching(m_switching, true);
    emit m_editor.WaitCursor(true);
    const bool ahead = SourceIsAhead();
    page.ActiveTab = tab;
    if (ahead && !HandOver()) {
        page.ActiveTab = left;
        emit m_editor.WaitCursor(false);
        emit m_editor.TabSelected(left);
        return;
    }
    if (left == ViewTab::HtmlSource && !ahead)
        FollowSource();
    if (Enter(tab) == Outcome::Failed) {
        Recover();
        Enter(tab);
    }
    emit m_editor.WaitCursor(false);
    emit m_editor.TabSelected(tab);
    if (tab == ViewTab::Preview)
        emit m_editor.PreviewRequested(m_preview.Prepare());
    emit m_editor.CommandStatesChanged();
}

/// Failed: the surface did not answer, or its process went and it came up without the page's content.
ViewSwitcher::Outcome ViewSwitcher::Enter(ViewTab tab)
{
    PageState &page = m_editor.Page();
    DesignSurface &surface = m_editor.Surface();
    bool lost = false;
    const QMetaObject::Connection watch =
        QObject::connect(&surface, &DesignSurface::RendererLost, &m_editor, [&lost] { lost = true; });
    if (page.PropertiesDirty)
        m_editor.SaveTopicProperties();
    bool failed = !surface.WaitWhileBusy();
    page.SourceChanged = false;
    if (!failed && tab != ViewTab::Normal && surface.IsDirty())
        page.HtmlDirty = true;
    if (!failed && tab == ViewTab::HtmlSource)
        failed = ShowSource() == Outcome::Failed && lost;
    QObject::disconnect(watch);
    if (!failed && tab == ViewTab::PageProperties) {
        RefreshSource();
        m_editor.LoadTopicProperties();
    }
    return failed ? Outcome::Failed : Outcome::Done;
}

/// The last good texts come back, and count as unsaved.
void ViewSwitcher::Recover()
{
    constexpr qsizetype ShortestGood = 100;
    PageState &page = m_editor.Page();
    DesignSurface &surface = m_editor.Surface();
    if (page.LastGoodHtml.size() > ShortestGood) {
        surface.SetDocumentHTML(page.LastGoodHtml);
        surface.SetBaseURL(page.LastGoodBaseUrl);
    }
    if (!page.LastGoodSource.isEmpty() && m_editor.Source().Text().size() != page.LastGoodSource.size())
        m_editor.Source().SetText(page.LastGoodSource);
    page.HtmlDirty = true;
    surface.WaitWhileBusy();
}

bool ViewSwitcher::SourceIsAhead() const
{
    return m_editor.Page().ActiveTab == ViewTab::HtmlSource && (m_editor.Source().IsModified() || m_sourceLostWord);
}

bool ViewSwitcher::BringSurfaceUpToDate()
{
    if (SourceIsAhead() && !HandOver())
        return false;
    if (m_editor.Page().PropertiesDirty)
        m_editor.SaveTopicProperties();
    return true;
}

/// A renderer that dies over the text leaves the surface with the page before; one more try tells whether it was the
/// text's fault.
bool ViewSwitcher::HandOver()
{
    PageState &page = m_editor.Page();
    const SourceEditor &source = m_editor.Source();
    const QString text = source.Text();
    if (!IsBlankPage(text, page.HasBodyTag))
        page.LastGoodSource = text;
    if (m_editor.App().CharsetFix)
        page.DocumentCharset = DeclaredCharset(text);
    page.HtmlDirty = true;
    for (int attempt = 0; attempt < 2; ++attempt) {
        bool lost = false;
        const QMetaObject::Connection watch =
            QObject::connect(&m_editor.Surface(), &DesignSurface::RendererLost, &m_editor, [&lost] { lost = true; });
        GiveToSurface(text, source.SelectionStart(), source.SelectionLength());
        const bool ready = m_editor.Surface().WaitWhileBusy();
        QObject::disconnect(watch);
        if (ready && !lost) {
            m_editor.Source().ResetModified();
            m_sourceLostWord = false;
            return true;
        }
    }
    return false;
}

void ViewSwitcher::GiveToSurface(const QString &text, DesignSurface::TextForm form)
{
    if (form == DesignSurface::TextForm::Source) {
        GiveToSurface(text, 0, 0);
        return;
    }
    DesignSurface &surface = m_editor.Surface();
    const bool guides = m_editor.App().EngineVersionNew && m_editor.App().TableGuidesOn;
    const QString base = surface.BaseURL();
    m_editor.Page().RefillIfBlank = !IsBlankPage(text, m_editor.Page().HasBodyTag);
    surface.SetDocumentHTML(guides ? GuideStyle::InsertOnly(GuideStyle::Remove(text)) : text, form);
    surface.SetBaseURL(base);
}

void ViewSwitcher::GiveToSurface(const QString &text, qsizetype position, qsizetype length)
{
    DesignSurface &surface = m_editor.Surface();
    const QString base = surface.BaseURL();
    m_editor.Page().RefillIfBlank = !IsBlankPage(text, m_editor.Page().HasBodyTag);
    if (m_editor.App().EngineVersionNew && m_editor.App().TableGuidesOn) {
        const QString clean = GuideStyle::Remove(text);
        // Places move with the style that comes in before them.
        const auto moved = [&](qsizetype place) {
            const QString before = clean.left(place - 1);
            return place + GuideStyle::InsertOnly(before).size() - before.size();
        };
        const qsizetype start = position > 0 ? moved(position) : 0;
        const qsizetype end = position > 0 ? moved(position + length) : 0;
        surface.SetDocumentHTML(GuideStyle::InsertOnly(clean), {start, end - start});
    } else {
        surface.SetDocumentHTML(text, {position, length});
    }
    surface.SetBaseURL(base);
}

void ViewSwitcher::GiveChanged(const QString &engineHtml)
{
    m_editor.Page().HtmlDirty = true; // the surface itself counts a text that it was given as unchanged
    GiveToSurface(engineHtml, DesignSurface::TextForm::Engine);
    if (m_editor.Surface().SourceCodePreservation() && m_editor.Surface().WaitWhileBusy())
        RefreshSource();
    else
        m_editor.Source().SetText(WithPageLineEnds(GuideStyle::Remove(engineHtml), m_editor.File().Text));
}

/// The text is as it was. If the user went to another place of it, the design view goes there too; else it keeps all:
/// caret, selected object, and what it shows.
void ViewSwitcher::FollowSource()
{
    const SourceEditor &source = m_editor.Source();
    const qsizetype start = source.SelectionStart();
    const qsizetype length = source.SelectionLength();
    if (m_shown.Position == 0 || (start == m_shown.Position && length == m_shown.Length))
        return;
    m_editor.Surface().SelectInText(source.Text(), {start, length});
}

QString ViewSwitcher::Output(const MergedText &page, const QString &path)
{
    const OutputRules rules{
        .Preserved = m_editor.Surface().SourceCodePreservation(), .Exact = m_editor.App().ExactSource, .Path = path};
    return WithFixup([&](FixupContext &context) { return OutputOf(page, rules, m_editor.File().Text, context); });
}

QString ViewSwitcher::WithFixup(const std::function<QString(FixupContext &)> &clean)
{
    SurfaceState &selection = m_editor.Selection();
    FixupContext context;
    context.CharsetFix = m_editor.App().CharsetFix;
    context.DocumentCharset = m_editor.Page().DocumentCharset;
    context.SelectionOffset = selection.SelectionOffset;
    context.SelectionShift = selection.SelectionShift;
    const QString text = clean(context);
    selection.SelectionShift = context.SelectionShift;
    return text;
}

void ViewSwitcher::RememberGoodTexts(const QString &html)
{
    PageState &page = m_editor.Page();
    if (!IsBlankPage(html, page.HasBodyTag)) {
        page.LastGoodHtml = html;
        page.LastGoodBaseUrl = m_editor.Surface().BaseURL();
    }
    const QString source = m_editor.Source().Text();
    if (!IsBlankPage(source, page.HasBodyTag))
        page.LastGoodSource = source;
}

void ViewSwitcher::RefreshSource()
{
    const MergedText source = m_editor.Surface().DocumentSource();
    RememberGoodTexts(source.Text);
    if (RefuseSave(source.Text, m_editor.Page().HasBodyTag))
        return;
    const QString text = Output(source);
    if (text != m_editor.Source().Text())
        m_editor.Source().SetText(text);
    m_editor.Source().ResetModified();
}

/// A text that has lost the page's content never replaces the one in the source view.
ViewSwitcher::Outcome ViewSwitcher::ShowSource()
{
    PageState &page = m_editor.Page();
    SurfaceState &selection = m_editor.Selection();
    MergedText marked;
    {
        const QScopedValueRollback<bool> marking(selection.MarkingForSource, true);
        marked = m_tracker.MarkedPage();
    }
    RememberGoodTexts(selection.PendingHtml);
    m_shown = {};
    m_sourceLostWord = false;
    if (RefuseSave(selection.PendingHtml, page.HasBodyTag))
        return Outcome::Failed;
    // The marks ride through all that changes the text, so that the place found at the end is exact.
    QString text = Output(marked);
    const SelectionTracker::Place place = m_tracker.TakeMarksOut(text);
    SourceEditor &source = m_editor.Source();
    const bool same = text == source.Text();
    if (!same) {
        const int top = source.FirstLine();
        source.SetText(text);
        source.SetFirstLine(top);
    }
    if (source.Text().size() < text.size())
        source.SetText(text);
    source.ResetModified();
    page.SourceChanged = true;
    m_sourceLostWord = place.LostWord;
    if (place.Position > 0)
        source.Select(place.Position, place.Length);
    m_shown = {source.SelectionStart(), source.SelectionLength()};
    return Outcome::Done;
}

void ViewSwitcher::ToggleGuides()
{
    AppState &app = m_editor.App();
    DesignSurface &surface = m_editor.Surface();
    if (!app.EngineVersionNew) {
        surface.SetShowBorders(!surface.ShowBorders());
        return;
    }
    if (!BringSurfaceUpToDate() || !surface.WaitWhileBusy())
        return;
    app.TableGuidesOn = !app.TableGuidesOn;
    // Not by loading the page again with the style or without: that would cost the undo history.
    surface.SetHeadStyle(GuideStyle::Content(), app.TableGuidesOn);
    surface.CaretToPageStart();
}
