#include "platform/IniText.h"

#include <algorithm>
#define SI_NO_CONVERSION // the file is UTF-8, and so is what we ask for
#include <SimpleIni.h>

namespace {

constexpr QByteArrayView Utf8Mark("\xEF\xBB\xBF", 3);

QByteArray OneLine(QString text)
{
    const qsizetype nul = text.indexOf(QChar::Null);
    if (nul >= 0)
        text.truncate(nul);
    return text.replace(u'\r', u' ').replace(u'\n', u' ').trimmed().toUtf8();
}

QByteArray SectionName(const QString &section)
{
    return OneLine(section.left(section.indexOf(u']'))).trimmed();
}

/// The parser takes a NUL for the end of the file; here it ends its line only.
QByteArray WithoutNuls(const QByteArray &ini)
{
    if (!ini.contains('\0'))
        return ini;
    QByteArray result;
    bool skipping = false;
    for (const char c : ini) {
        skipping = c == '\0' || (skipping && c != '\n' && c != '\r');
        if (!skipping)
            result += c;
    }
    return result;
}

/// Where a key stands, or where it would go.
struct Place
{
    qsizetype Value = -1;    ///< start of the value; -1 when the key is absent
    qsizetype ValueEnd = -1; ///< end of its line, without the line end
    qsizetype Insert = -1;   ///< start of the line for a new key; -1 when the section is absent
};

class Scanner
{
public:
    Scanner(QByteArrayView ini, QByteArrayView section, QByteArrayView key)
        : m_ini(ini), m_section(section), m_key(key), m_inSection(section.isEmpty())
    {}

    Place Find()
    {
        qsizetype start = m_ini.startsWith(Utf8Mark) ? Utf8Mark.size() : 0;
        if (m_inSection)
            m_place.Insert = start;
        while (start < m_ini.size()) {
            qsizetype end = start;
            while (end < m_ini.size() && m_ini[end] != '\n' && m_ini[end] != '\r')
                ++end;
            const bool pair = m_ini.sliced(end).startsWith("\r\n");
            const qsizetype next = std::min(end + (pair ? 2 : 1), m_ini.size());
            LookAt(start, end, next);
            start = next;
        }
        return m_place;
    }

private:
    static bool SameName(QByteArrayView a, QByteArrayView b)
    {
        a = a.trimmed();
        return a.size() == b.size() && qstrnicmp(a.data(), b.data(), size_t(b.size())) == 0;
    }

    void LookAt(qsizetype start, qsizetype end, qsizetype next)
    {
        const QByteArrayView line = m_ini.sliced(start, end - start);
        const QByteArrayView content = line.trimmed();
        if (content.isEmpty() || content.startsWith(';') || content.startsWith('#'))
            return;
        if (content.startsWith('[')) {
            const qsizetype close = content.indexOf(']');
            m_inSection = close > 0 && SameName(content.sliced(1, close - 1), m_section);
            if (m_inSection)
                m_place.Insert = next;
            return;
        }
        const qsizetype equals = line.indexOf('=');
        if (!m_inSection || equals < 0)
            return;
        m_place.Insert = next;
        if (!SameName(line.first(equals), m_key))
            return;
        m_place.Value = start + equals + 1;
        while (m_place.Value < end && (m_ini[m_place.Value] == ' ' || m_ini[m_place.Value] == '\t'))
            ++m_place.Value;
        m_place.ValueEnd = end;
    }

    QByteArrayView m_ini;
    QByteArrayView m_section;
    QByteArrayView m_key;
    bool m_inSection;
    Place m_place;
};

} // namespace

std::optional<QString> IniValue(const QByteArray &ini, const QString &section, const QString &key)
{
    const QByteArray text = WithoutNuls(ini);
    CSimpleIniA parsed;
    if (parsed.LoadData(text.constData(), size_t(text.size())) < 0)
        return {};
    const char *value = parsed.GetValue(SectionName(section).constData(), OneLine(key).constData());
    return value ? std::optional(QString::fromUtf8(value)) : std::nullopt;
}

std::optional<QByteArray> WithIniValue(const QByteArray &ini, const QString &section, const QString &key,
                                       const QString &value)
{
    // The parser would write the whole file anew, in its own layout and without what it did not understand. So the one
    // line is changed here, and the parser must then find it.
    const QByteArray sectionName = SectionName(section);
    const QByteArray keyName = OneLine(key);
    const QByteArray text = OneLine(value);
    const qsizetype firstEnd = ini.indexOf('\n');
    const QByteArray lineEnd = firstEnd > 0 && ini[firstEnd - 1] == '\r' ? "\r\n" : "\n";

    QByteArray result = ini;
    const Place place = Scanner(ini, sectionName, keyName).Find();
    if (place.Value >= 0) {
        result.replace(place.Value, place.ValueEnd - place.Value, text);
    } else {
        QByteArray addition = keyName + '=' + text + lineEnd;
        const qsizetype at = place.Insert >= 0 ? place.Insert : result.size();
        if (place.Insert < 0)
            addition.prepend((ini.isEmpty() ? QByteArray() : lineEnd) + '[' + sectionName + ']' + lineEnd);
        if (at == result.size() && !result.isEmpty() && !result.endsWith('\n') && !result.endsWith('\r') &&
            result != Utf8Mark)
            addition.prepend(lineEnd);
        result.insert(at, addition);
    }
    if (IniValue(result, section, key) != QString::fromUtf8(text))
        return {};
    return result;
}
