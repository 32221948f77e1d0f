#include "document/PageProperties.h"

#include "document/Editor.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/PathText.h"
#include "document/ServerCode.h"
#include "document/TagText.h"
#include "document/ViewSwitcher.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace PageProperties {
namespace {

constexpr qsizetype StepOn = 4; ///< a walk over tags goes on so far behind the start of the last one

QString Quoted(const QString &value)
{
    return u'"' + value + u'"';
}

/// Server-side code in a tag may hold ">" and quotes: such a tag is read as a parser would.
bool HoldsServerCode(QStringView text, qsizetype at)
{
    for (; at < text.size() && text[at] != u'>'; ++at)
        if (ServerBlockEnd(text, at) > at)
            return true;
    return false;
}

/// Of the tag at `at` (0-based).
QString ValueOf(const QString &text, qsizetype at, const QString &name)
{
    return HoldsServerCode(text, at) ? ReadAttribute(text, at + 1, name)
                                     : TagValue(text, at + 1, name, {}, TagMode::Read);
}

QString WithValue(const QString &text, qsizetype at, const QString &name, const QString &value)
{
    if (HoldsServerCode(text, at))
        return WriteAttribute(text, at + 1, name, value, TagMode::Set);
    const QString changed = TagValue(text, at + 1, name, value, TagMode::Set);
    // An attribute without a value answers with a sign of its own, which must not become the page.
    return changed.isEmpty() || changed == "<ON>"_L1 ? WriteAttribute(text, at + 1, name, value, TagMode::Set)
                                                     : changed;
}

/// Calls `visit` with the place of each tag until it answers true; it may change the text behind the tag's start.
void Walk(const QString &text, const QString &tag, const std::function<bool(qsizetype)> &visit)
{
    for (qsizetype at = text.indexOf(tag, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(tag, at + StepOn, Qt::CaseInsensitive))
    {
        if (visit(at))
            return;
    }
}

bool IsStyleSheet(const QString &text, qsizetype at)
{
    return ValueOf(text, at, u"REL"_s).compare("stylesheet"_L1, Qt::CaseInsensitive) == 0;
}

enum class Meta { Keywords, Description, Other };

Meta MetaAt(const QString &text, qsizetype at)
{
    const QString name = ValueOf(text, at, u"NAME"_s).toUpper();
    return name == "KEYWORDS"_L1 ? Meta::Keywords : name == "DESCRIPTION"_L1 ? Meta::Description : Meta::Other;
}

QString WithTag(const QString &text, const QString &tag)
{
    const qsizetype head = text.indexOf("<HEAD>"_L1, 0, Qt::CaseInsensitive);
    return head < 0 ? text : QString(text).insert(head + 6, u"\r\n"_s + tag);
}

/// A title that holds code is replaced up to its end tag; any other up to the first "<".
QString WithTitleText(const QString &text, const QString &title)
{
    const qsizetype start = text.indexOf("<TITLE>"_L1, 0, Qt::CaseInsensitive);
    const qsizetype end = start < 0 ? -1 : text.indexOf("</TITLE>"_L1, start, Qt::CaseInsensitive);
    if (end < 0)
        return WithTitle(text, title);
    return text.left(start + 7) + title + text.mid(end);
}

QString StyleValue(const QString &address)
{
    if (address.isEmpty())
        return u"\"\""_s;
    const bool plain = std::none_of(address.begin(), address.end(), [](QChar c) {
        return c.isSpace() || c == u'"' || c == u'\'' || c == u'<' || c == u'>' || c == u'=' || c == u'`';
    });
    return plain ? address : Quoted(address);
}

QString WithTitleAndTags(QString text, const Fields &fields, bool *hasStyle, bool *hasKeywords, bool *hasDescription)
{
    if (fields.Title != Read(text).Title)
        text = WithTitleText(text, fields.Title);
    Walk(text, u"<LINK"_s, [&](qsizetype at) {
        if (!IsStyleSheet(text, at))
            return false;
        if (ValueOf(text, at, u"HREF"_s) != fields.Style)
            text = WithValue(text, at, u"HREF"_s, StyleValue(fields.Style));
        return *hasStyle = true;
    });
    Walk(text, u"<META"_s, [&](qsizetype at) {
        const Meta meta = MetaAt(text, at);
        if (meta == Meta::Other)
            return false;
        const QString &value = meta == Meta::Keywords ? fields.Keywords : fields.Description;
        if (ValueOf(text, at, u"CONTENT"_s) != value)
            text = WithValue(text, at, u"CONTENT"_s, Quoted(value));
        (meta == Meta::Keywords ? *hasKeywords : *hasDescription) = true;
        return false;
    });
    return text;
}

} // namespace

Found Read(const QString &text)
{
    Found found;
    const qsizetype title = text.indexOf("<TITLE>"_L1, 0, Qt::CaseInsensitive);
    const qsizetype end = title < 0 ? -1 : text.indexOf("</TITLE>"_L1, title, Qt::CaseInsensitive);
    if (end >= 0)
        found.Title = text.sliced(title + 7, end - title - 7);
    Walk(text, u"<LINK"_s, [&](qsizetype at) {
        if (!IsStyleSheet(text, at))
            return false;
        found.Style = ValueOf(text, at, u"HREF"_s);
        return found.HasStyle = true;
    });
    Walk(text, u"<META"_s, [&](qsizetype at) {
        const Meta meta = MetaAt(text, at);
        if (meta != Meta::Other)
            (meta == Meta::Keywords ? found.Keywords : found.Description) = ValueOf(text, at, u"CONTENT"_s);
        return false;
    });
    return found;
}

QString Write(const QString &text, const Fields &fields)
{
    bool hasStyle = false;
    bool hasKeywords = false;
    bool hasDescription = false;
    QString result = WithTitleAndTags(text, fields, &hasStyle, &hasKeywords, &hasDescription);
    // Each goes directly behind the head tag, so the last one written comes first.
    const auto meta = [](const QString &name, const QString &value) {
        return u"<meta name=\"%1\" content="_s.arg(name) + Quoted(value) + u'>';
    };
    if (!hasKeywords && !fields.Keywords.isEmpty())
        result = WithTag(result, meta(u"keywords"_s, fields.Keywords));
    if (!hasDescription && !fields.Description.isEmpty())
        result = WithTag(result, meta(u"description"_s, fields.Description));
    if (!hasStyle && !fields.Style.isEmpty())
        result = WithTag(result, u"<link rel=\"stylesheet\" href="_s + Quoted(fields.Style) + u'>');
    return result;
}

QString Escaped(const QString &value)
{
    QString text;
    for (qsizetype at = 0; at < value.size();) {
        if (const qsizetype end = ServerBlockEnd(value, at); end > at) {
            text += QStringView(value).sliced(at, end - at);
            at = end;
            continue;
        }
        const QChar c = value[at++];
        if (c == u'&')
            text += "&amp;"_L1;
        else if (c == u'<')
            text += "&lt;"_L1;
        else if (c == u'>')
            text += "&gt;"_L1;
        else if (c == u'"')
            text += "&quot;"_L1;
        else
            text += c;
    }
    return text;
}

QString Unescaped(const QString &text)
{
    QString value = text;
    return value.replace("&lt;"_L1, "<"_L1)
        .replace("&gt;"_L1, ">"_L1)
        .replace("&quot;"_L1, "\""_L1)
        .replace("&amp;"_L1, "&"_L1);
}

void Load(Editor &editor)
{
    PageState &page = editor.Page();
    const Found found = Read(editor.Source().Text());
    page.EditTitle = Unescaped(found.Title);
    page.EditStyle = Unescaped(found.Style);
    if (found.HasStyle)
        page.StyleSheetPath = MakeFullPathRel(page.EditStyle, page.CurrentFilePath);
    // A field whose tag is absent keeps what it held, on purpose.
    if (found.Keywords)
        page.TextMetaKeys = Unescaped(*found.Keywords);
    if (found.Description)
        page.TextMetaDesc = Unescaped(*found.Description);
    page.PropertiesDirty = false;
    emit editor.TopicPropertiesLoaded();
}

/// All fields go into the page at once: one step for undo.
void Save(Editor &editor, ViewSwitcher &views)
{
    PageState &page = editor.Page();
    page.PropertiesDirty = false; // from here on: the waits below may come back here
    if (editor.Surface().WaitWhileBusy()) {
        const QString old = GuideStyle::Remove(editor.Surface().EngineHTML());
        const Found was = Read(old);
        // What shows as it is written in the page stays as it is written.
        const auto text = [](const QString &field, const QString &now) {
            return field == Unescaped(now) ? now : Escaped(field);
        };
        const QString html = Write(old, {text(page.EditTitle, was.Title), text(page.EditStyle, was.Style),
                                         text(page.TextMetaKeys, was.Keywords.value_or(QString())),
                                         text(page.TextMetaDesc, was.Description.value_or(QString()))});
        if (html != old)
            views.GiveChanged(html);
        else if (editor.Surface().SourceCodePreservation())
            views.RefreshSource();
        else
            editor.Source().SetText(WithPageLineEnds(html, editor.File().Text));
        editor.Surface().WaitWhileBusy();
    }
    page.HtmlDirty = true;
    editor.SetStatusText(page.EditTitle);
}

} // namespace PageProperties
