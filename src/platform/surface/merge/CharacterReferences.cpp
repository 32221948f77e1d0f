#include "platform/surface/merge/CharacterReferences.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace {

struct NamedCharacter
{
    const char16_t *Name;
    const char16_t *Text;
};

constexpr NamedCharacter namedCharacters[] = {
#include "platform/surface/merge/NamedCharacters.inc"
};

constexpr qsizetype longestBareName = 6; // "frac12" and the like: of names without ";"

const QHash<QStringView, QStringView> &Names()
{
    static const QHash<QStringView, QStringView> names = [] {
        QHash<QStringView, QStringView> result;
        result.reserve(std::size(namedCharacters));
        for (const NamedCharacter &one : namedCharacters)
            result.insert(QStringView(one.Name), QStringView(one.Text));
        return result;
    }();
    return names;
}

/// What the standard reads references to control characters as: windows-1252.
constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

bool IsAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool IsNameCharacter(QChar c)
{
    const char16_t lower = c.unicode() | 0x20;
    return IsAsciiDigit(c) || (lower >= u'a' && lower <= u'z');
}

char32_t ReadAs(char32_t number)
{
    if (number >= 0x80 && number < 0xA0)
        return windows1252[number - 0x80];
    if (number == 0 || number > 0x10FFFF || (number >= 0xD800 && number < 0xE000))
        return 0xFFFD;
    return number;
}

/// Behind the reference that starts at `at`; `at` when none does.
qsizetype Numeric(QStringView text, qsizetype at, QString &out)
{
    qsizetype end = at + 2;
    const bool hex = end < text.size() && (text[end].unicode() | 0x20) == u'x';
    const qsizetype digits = hex ? ++end : end;
    char32_t number = 0;
    for (; end < text.size(); ++end) {
        const char16_t lower = text[end].unicode() | 0x20;
        char32_t digit = 0;
        if (IsAsciiDigit(text[end]))
            digit = text[end].unicode() - u'0';
        else if (hex && lower >= u'a' && lower <= u'f')
            digit = lower - u'a' + 10;
        else
            break;
        number = std::min<char32_t>(number * (hex ? 16 : 10) + digit, 0x110000);
    }
    if (end == digits)
        return at;
    out += QStringView(QChar::fromUcs4(ReadAs(number)));
    return end < text.size() && text[end] == u';' ? end + 1 : end;
}

qsizetype Named(QStringView text, qsizetype at, ReferencePlace place, QString &out)
{
    qsizetype end = at + 1;
    while (end < text.size() && IsNameCharacter(text[end]))
        ++end;
    const auto &names = Names();
    if (end < text.size() && text[end] == u';') {
        const auto found = names.constFind(text.sliced(at + 1, end - at));
        if (found != names.constEnd()) {
            out += *found;
            return end + 1;
        }
    }
    for (qsizetype size = std::min(end - at - 1, longestBareName); size >= 2; --size) {
        const auto found = names.constFind(text.sliced(at + 1, size));
        if (found == names.constEnd())
            continue;
        const qsizetype behind = at + 1 + size;
        if (place == ReferencePlace::Attribute && behind < text.size() &&
            (text[behind] == u'=' || IsNameCharacter(text[behind])))
            return at;
        out += *found;
        return behind;
    }
    return at;
}

} // namespace

QString DecodeReferences(QStringView text, ReferencePlace place, QList<qsizetype> &starts)
{
    QString out;
    out.reserve(text.size());
    starts.clear();
    starts.reserve(text.size() + 1);
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype start = at;
        if (text[at] == u'&' && at + 1 < text.size())
            at = text[at + 1] == u'#' ? Numeric(text, at, out) : Named(text, at, place, out);
        if (at == start) {
            const bool carriageReturn = text[at] == u'\r';
            out += carriageReturn ? QChar(u'\n') : text[at];
            at += carriageReturn && at + 1 < text.size() && text[at + 1] == u'\n' ? 2 : 1;
        }
        while (starts.size() < out.size())
            starts.append(start);
    }
    starts.append(text.size());
    return out;
}

QString DecodeReferences(QStringView text, ReferencePlace place)
{
    QList<qsizetype> starts;
    return DecodeReferences(text, place, starts);
}
