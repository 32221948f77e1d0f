#include "document/ViewSwitcher.h"

#include "document/Editor.h"
#include "document/FixupHtml.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/SourceCleanUp.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

void ViewSwitcher::SelectTab(ViewTab tab)
{
    PageState &page = m_editor.Page();
    const ViewTab left = page.ActiveTab;
    if (page.TabChanging || tab == left) {
        page.ActiveTab = tab;
        emit m_editor.TabSelected(tab);
        return;
    }
    emit m_editor.WaitCursor(true);
    const bool ahead = SourceIsAhead();
    page.ActiveTab = tab;
    if (ahead && !HandOver()) {
        page.ActiveTab = left;
        emit m_editor.WaitCursor(false);
        emit m_editor.TabSelected(left);
        return;
    }
    if (page.PropertiesDirty)
        emit m_editor.TopicPropertiesToSave();
    const bool ready = m_editor.Surface().WaitWhileBusy();
    emit m_editor.WaitCursor(false);

    page.SourceChanged = false;
    if (tab == ViewTab::HtmlSource && ready)
        ShowSource();
    else if (tab == ViewTab::PageProperties)
        emit m_editor.TopicPropertiesToLoad();
    emit m_editor.TabSelected(tab);
    emit m_editor.CommandStatesChanged();
}

bool ViewSwitcher::SourceIsAhead() const
{
    return m_editor.Page().ActiveTab == ViewTab::HtmlSource && m_editor.Source().IsModified();
}

bool ViewSwitcher::BringSurfaceUpToDate()
{
    return !SourceIsAhead() || HandOver();
}

/// A renderer that dies over the text leaves the surface with the page before; one more try tells whether it was the
/// text's fault.
bool ViewSwitcher::HandOver()
{
    PageState &page = m_editor.Page();
    const QString text = m_editor.Source().Text();
    if (!IsBlankPage(text, page.HasBodyTag))
        page.LastGoodSource = text;
    if (m_editor.App().CharsetFix)
        page.DocumentCharset = DeclaredCharset(text);
    page.HtmlDirty = true;
    for (int attempt = 0; attempt < 2; ++attempt) {
        bool lost = false;
        const QMetaObject::Connection watch =
            QObject::connect(&m_editor.Surface(), &DesignSurface::RendererLost, &m_editor, [&lost] { lost = true; });
        GiveToSurface(text, DesignSurface::TextForm::Source);
        const bool ready = m_editor.Surface().WaitWhileBusy();
        QObject::disconnect(watch);
        if (ready && !lost) {
            m_editor.Source().ResetModified();
            return true;
        }
    }
    return false;
}

void ViewSwitcher::GiveToSurface(const QString &text, DesignSurface::TextForm form)
{
    DesignSurface &surface = m_editor.Surface();
    const bool guides = m_editor.App().EngineVersionNew && m_editor.App().TableGuidesOn;
    const QString base = surface.BaseURL();
    m_editor.Page().RefillIfBlank = !IsBlankPage(text, m_editor.Page().HasBodyTag);
    surface.SetDocumentHTML(guides ? GuideStyle::InsertOnly(GuideStyle::Remove(text)) : text, form);
    surface.SetBaseURL(base);
}

QString ViewSwitcher::Output(const MergedText &page, const QString &path)
{
    const bool exact = m_editor.App().ExactSource && m_editor.Surface().SourceCodePreservation();
    const CleanUp reach = exact ? CleanUp::NewOnly : CleanUp::Whole;
    const MergedText linked = path.isEmpty() ? page : WithRelativeFileLinks(page, reach, path);
    if (!m_editor.Surface().SourceCodePreservation())
        return WithPageLineEnds(CleanedUp(linked.Text), m_editor.File().Text);
    return WithFixup([&](FixupContext &context) { return CleanUpSource(linked, reach, context); });
}

QString ViewSwitcher::CleanedUp(const QString &html)
{
    return WithFixup([&](FixupContext &context) { return FixupHTML(html, context); });
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

/// A text that has lost the page's content never replaces the one in the source view.
void ViewSwitcher::ShowSource()
{
    PageState &page = m_editor.Page();
    DesignSurface &surface = m_editor.Surface();
    if (surface.IsDirty())
        page.HtmlDirty = true;
    const MergedText source = surface.DocumentSource();
    RememberGoodTexts(source.Text);
    if (RefuseSave(source.Text, page.HasBodyTag))
        return;
    const QString text = Output(source);
    if (text != m_editor.Source().Text())
        m_editor.Source().SetText(text);
    m_editor.Source().ResetModified();
    page.SourceChanged = true;
}
