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
        const QString value = DecodedAttribute(m_text, m_place, name);
        return value.isEmpty() ? std::nullopt : std::optional(value);
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
    /// Without a value, with an empty one, or with its own name as its value.
    bool HasFlag(const QString &name) const
    {
        const QString value = ReadAttribute(m_text, m_place, name);
        if (value.isEmpty()) // or it is not there at all
            return WriteAttribute(m_text, m_place, name, {}, TagMode::Set) != m_text;
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

/// A colour that differs only in the case of its letters is no other colour.
void KeepCase(const std::optional<QString> &was, std::optional<QString> &now)
{
    if (was && now && was->compare(*now, Qt::CaseInsensitive) == 0)
        now = was;
}

void KeepColors(const TableLook &was, TableLook &now)
{
    KeepCase(was.BgColor, now.BgColor);
    KeepCase(was.BorderColor, now.BorderColor);
}

void WriteLook(Tag &tag, const TableLook &was, const TableLook &now)
{
    tag.SetExtent(u"WIDTH"_s, was.Width, now.Width);
    tag.SetExtent(u"HEIGHT"_s, was.Height, now.Height);
    const auto set = [&tag](const QString &name, const std::optional<QString> &before,
                            const std::optional<QString> &after) {
        if (before != after)
            tag.Set(name, after.value_or(QString()));
    };
    set(u"BGCOLOR"_s, was.BgColor, now.BgColor);
    set(u"BORDERCOLOR"_s, was.BorderColor, now.BorderColor);
    set(u"BACKGROUND"_s, was.Background, now.Background);
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

QString WriteCell(QString text, qsizetype place, CellAttributes cell)
{
    const CellAttributes was = ReadCell(text, place);
    KeepColors(was, cell);
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

QString WriteTable(QString text, qsizetype place, TableAttributes table)
{
    const TableAttributes was = ReadTable(text, place);
    KeepColors(was, table);
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
