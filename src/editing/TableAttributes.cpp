#include "editing/TableAttributes.h"

#include "document/TagText.h"
#include "editing/AttributeText.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString Flag = u"<ON>"_s; // ReadAttribute's answer for an attribute without a value

/// One tag in a text, which changes.
class Tag
{
public:
    Tag(QString text, qsizetype place) : m_text(std::move(text)), m_place(place) {}

    const QString &Text() const { return m_text; }

    std::optional<QString> Value(const QString &name) const
    {
        const QString value = ReadAttribute(m_text, m_place, name);
        return value.isEmpty() || value == Flag ? std::nullopt : std::optional(value);
    }
    std::optional<TableExtent> Extent(const QString &name) const
    {
        const std::optional<QString> value = Value(name);
        if (!value || value->contains(u'<')) // "%" may be the server's sign
            return value ? std::optional(TableExtent{*value}) : std::nullopt;
        return TableExtent{QString(*value).remove(u'%').trimmed(), value->contains(u'%')};
    }
    /// That one of `words` which the value is, ignoring case.
    QString Word(const QString &name, const QStringList &words, const QString &synonym, const QString &of) const
    {
        QString value = Value(name).value_or(QString()).trimmed();
        if (value.compare(synonym, Qt::CaseInsensitive) == 0)
            value = of;
        const auto found = std::find_if(words.begin(), words.end(), [&](const QString &word) {
            return value.compare(word, Qt::CaseInsensitive) == 0;
        });
        return found == words.end() ? QString() : *found;
    }
    bool HasFlag(const QString &name) const
    {
        const QString value = ReadAttribute(m_text, m_place, name);
        return value == Flag || value.compare(name, Qt::CaseInsensitive) == 0;
    }
    int Span(const QString &name) const
    {
        const double number = LeadingNumber(Value(name).value_or(QString()));
        return number >= 1 ? int(std::min(number, 65534.0)) : 1;
    }

    void Set(const QString &name, const QString &value)
    {
        m_text = WriteAttribute(m_text, m_place, name, value.isEmpty() ? value : AttributeText(value), TagMode::Set);
    }
    void SetExtent(const QString &name, const std::optional<TableExtent> &was, const std::optional<TableExtent> &now)
    {
        if (was != now)
            Set(name, now ? now->Text + (now->Percent ? u"%"_s : QString()) : QString());
    }
    void SetColor(const QString &name, const std::optional<QString> &was, const std::optional<QString> &now)
    {
        const bool same = was && now ? was->compare(*now, Qt::CaseInsensitive) == 0 : was == now;
        if (!same)
            Set(name, now.value_or(QString()));
    }
    void SetFlag(const QString &name, bool on)
    {
        m_text = WriteAttribute(m_text, m_place, name, on ? u"1"_s : u"0"_s, TagMode::SetFlag);
    }

private:
    QString m_text;
    qsizetype m_place;
};

void ReadLook(const Tag &tag, TableLook &look)
{
    look.Width = tag.Extent(u"WIDTH"_s);
    look.Height = tag.Extent(u"HEIGHT"_s);
    look.BgColor = tag.Value(u"BGCOLOR"_s);
    look.BorderColor = tag.Value(u"BORDERCOLOR"_s);
    look.Background = tag.Value(u"BACKGROUND"_s);
    look.Align = tag.Word(u"ALIGN"_s, AlignWords(), u"MIDDLE"_s, u"CENTER"_s);
}

void WriteLook(Tag &tag, const TableLook &was, const TableLook &now)
{
    tag.SetExtent(u"WIDTH"_s, was.Width, now.Width);
    tag.SetExtent(u"HEIGHT"_s, was.Height, now.Height);
    tag.SetColor(u"BGCOLOR"_s, was.BgColor, now.BgColor);
    tag.SetColor(u"BORDERCOLOR"_s, was.BorderColor, now.BorderColor);
    if (was.Background != now.Background)
        tag.Set(u"BACKGROUND"_s, now.Background.value_or(QString()));
    if (was.Align != now.Align)
        tag.Set(u"ALIGN"_s, now.Align);
}

} // namespace

const QStringList &AlignWords()
{
    static const QStringList words{u"Left"_s, u"Right"_s, u"Center"_s};
    return words;
}

const QStringList &VAlignWords()
{
    static const QStringList words{u"Top"_s, u"Middle"_s, u"Baseline"_s, u"Bottom"_s};
    return words;
}

CellAttributes ReadCell(const QString &text, qsizetype place)
{
    const Tag tag(text, place);
    CellAttributes cell;
    ReadLook(tag, cell);
    cell.VAlign = tag.Word(u"VALIGN"_s, VAlignWords(), u"CENTER"_s, u"MIDDLE"_s);
    cell.NoWrap = tag.HasFlag(u"NOWRAP"_s);
    cell.RowSpan = tag.Span(u"ROWSPAN"_s);
    cell.ColSpan = tag.Span(u"COLSPAN"_s);
    return cell;
}

QString WriteCell(QString text, qsizetype place, const CellAttributes &cell)
{
    const CellAttributes was = ReadCell(text, place);
    Tag tag(std::move(text), place);
    WriteLook(tag, was, cell);
    if (was.VAlign != cell.VAlign)
        tag.Set(u"VALIGN"_s, cell.VAlign);
    if (was.NoWrap != cell.NoWrap)
        tag.SetFlag(u"NOWRAP"_s, cell.NoWrap);
    const auto setSpan = [&tag](const QString &name, int before, int now) {
        if (before != now)
            tag.Set(name, now > 1 ? QString::number(now) : QString());
    };
    setSpan(u"ROWSPAN"_s, was.RowSpan, cell.RowSpan);
    setSpan(u"COLSPAN"_s, was.ColSpan, cell.ColSpan);
    return tag.Text();
}

TableAttributes ReadTable(const QString &text, qsizetype place)
{
    const Tag tag(text, place);
    TableAttributes table;
    ReadLook(tag, table);
    const auto number = [&](const QString &name, int fallback) {
        const std::optional<QString> value = tag.Value(name);
        return value ? int(std::clamp(LeadingNumber(*value), 0.0, 9999.0)) : fallback;
    };
    // A border without a width is one pixel wide.
    table.Border = number(u"BORDER"_s, tag.HasFlag(u"BORDER"_s) ? 1 : table.Border);
    table.Padding = number(u"CELLPADDING"_s, table.Padding);
    table.Spacing = number(u"CELLSPACING"_s, table.Spacing);
    return table;
}

QString WriteTable(QString text, qsizetype place, const TableAttributes &table)
{
    const TableAttributes was = ReadTable(text, place);
    if (was == table)
        return text;
    Tag tag(std::move(text), place);
    WriteLook(tag, was, table);
    const auto setNumber = [&tag](const QString &name, int before, int now) {
        if (before != now || (!tag.Value(name) && !tag.HasFlag(name)))
            tag.Set(name, QString::number(now));
    };
    setNumber(u"BORDER"_s, was.Border, table.Border);
    setNumber(u"CELLPADDING"_s, was.Padding, table.Padding);
    setNumber(u"CELLSPACING"_s, was.Spacing, table.Spacing);
    return tag.Text();
}

double LeadingNumber(const QString &text)
{
    static const QRegularExpression number(u"^\\s*([+-]?[0-9]*\\.?[0-9]*)"_s);
    return number.match(text).captured(1).toDouble();
}
