#include "platform/surface/merge/TagPatch.h"

#include "platform/surface/merge/CharacterReferences.h"
#include "platform/surface/merge/MarkupTokens.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct ParsedTag
{
    explicit ParsedTag(const QString &tag) : Text(tag), Source(Text, FindServerBlocks(tag)) { ReadTag(Source, 0, Tag); }

    QStringView Part(TextRange range) const { return Text.sliced(range.Start, range.End - range.Start); }

    /// Of those with one name the first; null when there is none. Blocks are the same when they are spelt so.
    const WrittenAttribute *Find(const ParsedTag &other, const WrittenAttribute &attribute) const
    {
        const QStringView name = other.Part(attribute.Name);
        const auto found = std::find_if(Tag.Attributes.begin(), Tag.Attributes.end(), [&](const WrittenAttribute &one) {
            if (name.isEmpty())
                return one.Name.Start == one.Name.End && Part(one.Value) == other.Part(attribute.Value);
            return Part(one.Name).compare(name, Qt::CaseInsensitive) == 0;
        });
        return found == Tag.Attributes.end() ? nullptr : &*found;
    }

    QStringView Text;
    MarkupSource Source;
    WrittenTag Tag;
};

/// The value as it can stand in `quote`; engine form escapes only double quotes.
QString QuotedValue(QStringView value, QChar quote)
{
    QString text = value.toString();
    if (quote == u'\'')
        return u'\'' + text.replace("&quot;"_L1, "\""_L1).replace(u'\'', "&#39;"_L1) + u'\'';
    return u'"' + text + u'"';
}

/// From the attribute's name to its end, as it stands in `wanted`.
QString Written(const ParsedTag &tag, const WrittenAttribute &attribute)
{
    return tag.Text.sliced(attribute.Name.Start, attribute.End - attribute.Name.Start).toString();
}

/// With its "=" and in quotes, as clean-up would have it; "" when there is none.
QString ValueOf(const ParsedTag &tag, const WrittenAttribute &attribute)
{
    const bool any = attribute.Name.End > attribute.Name.Start && attribute.HasValue();
    return any ? u'=' + QuotedValue(tag.Part(attribute.Value), u'"') : QString();
}

QString Changed(const ParsedTag &from, const WrittenAttribute &old, const ParsedTag &to, const WrittenAttribute &wanted)
{
    const QString name = from.Part(old.Name).toString();
    if (!wanted.HasValue())
        return name;
    const bool bare = old.Quote.isNull() && old.HasValue() && wanted.Quote.isNull();
    const QString value = bare ? to.Part(wanted.Value).toString() : QuotedValue(to.Part(wanted.Value), old.Quote);
    const qsizetype valueStart = old.Value.Start - (old.Quote.isNull() ? 0 : 1);
    const QString equals =
        old.HasValue() ? from.Text.sliced(old.Name.End, valueStart - old.Name.End).toString() : u"="_s;
    return name + equals + value;
}

QString Patched(const ParsedTag &from, const ParsedTag &to)
{
    QString result;
    qsizetype done = 0;
    std::vector<const WrittenAttribute *> kept;
    for (const WrittenAttribute &one : from.Tag.Attributes) {
        const WrittenAttribute *const now = to.Find(from, one);
        if (now && std::find(kept.begin(), kept.end(), now) != kept.end())
            continue; // a second one of that name says nothing and may stay
        const QStringView before = from.Text.sliced(done, one.Name.Start - done);
        if (!now) {
            // With the blanks in front of it.
            qsizetype size = before.size();
            while (size > 0 && IsMarkupSpace(before[size - 1]))
                --size;
            result += before.first(size);
            done = one.End;
            continue;
        }
        kept.push_back(now);
        const bool same = DecodeReferences(from.Part(one.Value), ReferencePlace::Attribute) ==
                          DecodeReferences(to.Part(now->Value), ReferencePlace::Attribute);
        result += before;
        result += same ? Written(from, one) : Changed(from, one, to, *now);
        done = one.End;
    }
    qsizetype tail = done;
    if (done == 0) { // no attributes: behind the name
        tail = from.Tag.Name.End;
        result += from.Text.first(tail);
    }
    for (const WrittenAttribute &one : to.Tag.Attributes)
        if (std::find(kept.begin(), kept.end(), &one) == kept.end()) {
            result += u' ';
            result += to.Part(one.Name.End > one.Name.Start ? one.Name : one.Value);
            result += ValueOf(to, one);
        }
    result += from.Text.sliced(tail);
    return result;
}

/// Whether both are one tag and mean the same.
bool ReadsAs(const QString &tag, const QString &wanted)
{
    const MarkupTokens a = TokenizeMarkup(tag).Tokens;
    const MarkupTokens b = TokenizeMarkup(wanted).Tokens;
    return a.size() == 1 && b.size() == 1 && a.front().Key == b.front().Key;
}

} // namespace

QString PatchTag(const QString &written, const QString &wanted)
{
    const ParsedTag from(written);
    const ParsedTag to(wanted);
    // An attribute added to a tag that never ends would go into the value that swallowed the end.
    if (!from.Tag.Closed || !to.Tag.Closed)
        return wanted;
    const QString result = Patched(from, to);
    return ReadsAs(result, wanted) ? result : wanted;
}

QString PatchText(QStringView written, QStringView wanted)
{
    QList<qsizetype> oldStarts;
    QList<qsizetype> newStarts;
    const QString oldText = DecodeReferences(written, ReferencePlace::Text, oldStarts);
    const QString newText = DecodeReferences(wanted, ReferencePlace::Text, newStarts);
    const qsizetype most = std::min(oldText.size(), newText.size());
    // A place within what one reference stands for can't be cut at.
    const auto cuttable = [](const QList<qsizetype> &starts, qsizetype at) {
        return at == 0 || at + 1 == starts.size() || starts[at] != starts[at - 1];
    };
    qsizetype head = 0;
    while (head < most && oldText[head] == newText[head])
        ++head;
    while (head > 0 && (!cuttable(oldStarts, head) || !cuttable(newStarts, head)))
        --head;
    qsizetype tail = 0;
    while (tail < most - head && oldText[oldText.size() - 1 - tail] == newText[newText.size() - 1 - tail])
        ++tail;
    while (tail > 0 && (!cuttable(oldStarts, oldText.size() - tail) || !cuttable(newStarts, newText.size() - tail)))
        --tail;
    const qsizetype from = newStarts[head];
    const qsizetype to = newStarts[newText.size() - tail];
    QString result = written.first(oldStarts[head]).toString();
    result += wanted.sliced(from, to - from);
    result += written.sliced(oldStarts[oldText.size() - tail]);
    // What stands side by side now may read as something else: a bare "&" and a word.
    const bool same = DecodeReferences(result, ReferencePlace::Text) == newText;
    return same ? result : wanted.toString();
}
