#include "platform/PageEncoding.h"

#include <QHash>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>
#include <cctype>
#include <memory>
#include <uchardet/uchardet.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MetaReach = 4096;
constexpr qsizetype GuessReach = 256 * 1024;
constexpr int LettersForGuess = 16;

constexpr auto ConverterFlags = QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom;

/// Labels that browsers read otherwise than the converters do, or that the converters do not know.
struct Alias
{
    const char *Label;
    const char *Encoding;
};
constexpr Alias Aliases[] = {
    {"ansi_x3.4-1968", "windows-1252"},
    {"ascii", "windows-1252"},
    {"us-ascii", "windows-1252"},
    {"cp819", "windows-1252"},
    {"ibm819", "windows-1252"},
    {"csisolatin1", "windows-1252"},
    {"iso-8859-1", "windows-1252"},
    {"iso8859-1", "windows-1252"},
    {"iso88591", "windows-1252"},
    {"iso_8859-1", "windows-1252"},
    {"iso_8859-1:1987", "windows-1252"},
    {"iso-ir-100", "windows-1252"},
    {"l1", "windows-1252"},
    {"latin1", "windows-1252"},
    {"x-cp1252", "windows-1252"},
    {"x-user-defined", "windows-1252"},
    {"csisolatin5", "windows-1254"},
    {"iso-8859-9", "windows-1254"},
    {"iso8859-9", "windows-1254"},
    {"iso88599", "windows-1254"},
    {"iso_8859-9", "windows-1254"},
    {"iso_8859-9:1989", "windows-1254"},
    {"iso-ir-148", "windows-1254"},
    {"l5", "windows-1254"},
    {"latin5", "windows-1254"},
    {"dos-874", "windows-874"},
    {"iso-8859-11", "windows-874"},
    {"iso8859-11", "windows-874"},
    {"tis-620", "windows-874"},
    {"chinese", "GBK"},
    {"csgb2312", "GBK"},
    {"csiso58gb231280", "GBK"},
    {"gb2312", "GBK"},
    {"gb_2312", "GBK"},
    {"gb_2312-80", "GBK"},
    {"iso-ir-58", "GBK"},
    {"x-gbk", "GBK"},
    {"cseuckr", "windows-949"},
    {"csksc56011987", "windows-949"},
    {"euc-kr", "windows-949"},
    {"iso-ir-149", "windows-949"},
    {"korean", "windows-949"},
    {"ks_c_5601-1987", "windows-949"},
    {"ks_c_5601-1989", "windows-949"},
    {"ksc5601", "windows-949"},
    {"ksc_5601", "windows-949"},
    {"uhc", "windows-949"},
    {"ms932", "Shift_JIS"},
    {"logical", "ISO-8859-8"},
    {"visual", "ISO-8859-8"},
    {"koi", "KOI8-R"},
    {"koi8-ru", "KOI8-U"},
    {"unicode", "UTF-8"},
    {"unicode11utf8", "UTF-8"},
    {"unicode20utf8", "UTF-8"},
    {"unicode-1-1-utf-8", "UTF-8"},
    {"x-unicode20utf8", "UTF-8"},
    {"unicodefeff", "UTF-8"},
    {"unicodefffe", "UTF-8"},
    {"csunicode", "UTF-8"},
    {"iso-10646-ucs-2", "UTF-8"},
    {"ucs-2", "UTF-8"},
};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

/// Plain characters must stand for themselves, or the declaration could not have been read.
bool ReadsPlainText(const QByteArray &encoding)
{
    QByteArray plain("\t\n\r");
    for (char c = ' '; c <= '~'; ++c)
        plain += c;
    QStringDecoder decoder(encoding.constData(), ConverterFlags);
    const QString text = decoder.decode(plain);
    return decoder.isValid() && !decoder.hasError() && text == QLatin1StringView(plain);
}

/// The converters would find a name in much else: they pass over what is no letter or digit.
bool IsName(const QByteArray &label)
{
    return !label.isEmpty() && std::all_of(label.cbegin(), label.cend(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || QByteArrayView("-_.:+()").contains(c);
    });
}

bool StartsWith(QByteArrayView text, qsizetype at, QByteArrayView word)
{
    return text.size() - at >= word.size() && qstrnicmp(text.data() + at, word.data(), size_t(word.size())) == 0;
}

struct Attribute
{
    QByteArray Name; ///< lower case; "" at the end of the tag
    QByteArray Value;
};

/// Next attribute of a tag; `at` goes behind it.
Attribute NextAttribute(QByteArrayView page, qsizetype &at)
{
    const auto more = [&] { return at < page.size() && page[at] != '>'; };
    const auto skipBlanks = [&] {
        while (at < page.size() && IsBlank(page[at]))
            ++at;
    };
    while (at < page.size() && (IsBlank(page[at]) || page[at] == '/'))
        ++at;
    Attribute attribute;
    const qsizetype name = at;
    while (more() && !IsBlank(page[at]) && page[at] != '=' && page[at] != '/')
        ++at;
    attribute.Name = page.sliced(name, at - name).toByteArray().toLower();
    skipBlanks();
    if (at >= page.size() || page[at] != '=')
        return attribute;
    if (attribute.Name.isEmpty())
        attribute.Name = "="; // a stray sign, not the end of the tag
    ++at;
    skipBlanks();
    if (!more())
        return attribute;
    const char quote = page[at];
    if (quote == '"' || quote == '\'') {
        const qsizetype end = page.indexOf(quote, at + 1);
        if (end >= 0)
            attribute.Value = page.sliced(at + 1, end - at - 1).toByteArray();
        at = end < 0 ? page.size() : end + 1;
    } else {
        const qsizetype value = at;
        while (more() && !IsBlank(page[at]))
            ++at;
        attribute.Value = page.sliced(value, at - value).toByteArray();
    }
    return attribute;
}

/// The label in the content of an http-equiv: "text/html; charset=koi8-r".
QByteArray LabelInContent(const QByteArray &content)
{
    const QByteArray lower = content.toLower();
    for (qsizetype at = lower.indexOf("charset"); at >= 0; at = lower.indexOf("charset", at)) {
        at += 7;
        while (at < lower.size() && IsBlank(lower[at]))
            ++at;
        if (at >= lower.size() || lower[at] != '=')
            continue;
        QByteArray rest = lower.mid(at + 1).trimmed();
        if (rest.startsWith('"') || rest.startsWith('\'')) {
            const qsizetype end = rest.indexOf(rest[0], 1);
            return end < 0 ? QByteArray() : rest.mid(1, end - 1);
        }
        const auto end = std::find_if(rest.cbegin(), rest.cend(), [](char c) { return IsBlank(c) || c == ';'; });
        return rest.left(end - rest.cbegin());
    }
    return {};
}

/// The label of the meta tag whose attributes start at `at`; "" when it declares none.
QByteArray LabelOfMeta(QByteArrayView page, qsizetype &at)
{
    QByteArray charset;
    QByteArray content;
    bool contentType = false;
    for (Attribute a = NextAttribute(page, at); !a.Name.isEmpty(); a = NextAttribute(page, at)) {
        if (a.Name == "charset")
            charset = a.Value;
        else if (a.Name == "content")
            content = a.Value;
        else if (a.Name == "http-equiv")
            contentType = a.Value.trimmed().compare("content-type", Qt::CaseInsensitive) == 0;
    }
    return charset.isEmpty() && contentType ? LabelInContent(content) : charset;
}

void AddDeclared(QByteArrayList &encodings, const QByteArray &label)
{
    const bool wide = label.trimmed().toLower().startsWith("utf-16");
    const QByteArray encoding = wide ? QByteArray("UTF-8") : EncodingOfLabel(label);
    if (!encoding.isEmpty() && !encodings.contains(encoding))
        encodings += encoding;
}

QByteArray LabelOfXmlDeclaration(QByteArrayView page)
{
    if (!StartsWith(page, 0, "<?xml") || page.size() < 6 || !IsBlank(page[5]))
        return {};
    const QByteArrayView declaration = page.first(std::max<qsizetype>(page.indexOf("?>"), 0));
    qsizetype at = std::min<qsizetype>(5, declaration.size());
    for (Attribute a = NextAttribute(declaration, at); !a.Name.isEmpty(); a = NextAttribute(declaration, at)) {
        if (a.Name == "encoding")
            return a.Value;
    }
    return {};
}

/// Signs that Western pages are full of and that say nothing about the language: typographic quotes, dashes, dots,
/// (c), (R), (TM), no-break blanks, angle quotes.
bool IsWesternSign(unsigned char c)
{
    return c == 0x85 || (c >= 0x91 && c <= 0x97) || c == 0x99 || c == 0xA0 || c == 0xA9 || c == 0xAB || c == 0xAE ||
           c == 0xB7 || c == 0xBB;
}

struct Encoded
{
    bool Complete = false; ///< no character was replaced, as far as the converter says
    QByteArray Bytes;
};

Encoded Encode(const QString &text, const QByteArray &encoding)
{
    QStringEncoder encoder(encoding.constData(), ConverterFlags);
    if (!encoder.isValid())
        return {};
    // The converter does not shift back to plain characters at the end: one such character makes it.
    const bool shifting = encoding.startsWith("ISO-2022");
    QByteArray bytes = encoder.encode(shifting ? text + u'\n' : text);
    if (shifting)
        bytes.chop(1);
    return {!encoder.hasError(), bytes};
}

QString Decode(QByteArrayView bytes, const QByteArray &encoding)
{
    QStringDecoder decoder(encoding.constData(), ConverterFlags);
    return decoder.decode(bytes);
}

bool CanHold(const QByteArray &encoding, const QString &character)
{
    const Encoded encoded = Encode(character, encoding);
    return encoded.Complete && Decode(encoded.Bytes, encoding) == character;
}

/// `text` with all that `encoding` cannot hold written out. Needed for few pages, so a page pays for it only then.
QString WithReferences(const QString &text, const QByteArray &encoding)
{
    QHash<char32_t, QString> known;
    QString result;
    result.reserve(text.size() + text.size() / 8);
    for (qsizetype at = 0; at < text.size(); ++at) {
        char32_t character = text[at].unicode();
        if (character < 0x80) {
            result += text[at];
            continue;
        }
        if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(text[at], text[at + 1]);
            ++at;
        } else if (text[at].isSurrogate()) {
            character = QChar::ReplacementCharacter;
        }
        auto place = known.constFind(character);
        if (place == known.cend()) {
            const QString itself = QString::fromUcs4(&character, 1);
            const QString reference = u"&#%1;"_s.arg(uint(character));
            place = known.insert(character, CanHold(encoding, itself) ? itself : reference);
        }
        result += *place;
    }
    return result;
}

} // namespace

QByteArray EncodingOfLabel(const QByteArray &label)
{
    const QByteArray name = label.trimmed().toLower();
    const auto alias = std::find_if(std::begin(Aliases), std::end(Aliases), [&](auto &a) { return name == a.Label; });
    if (alias != std::end(Aliases))
        return alias->Encoding;
    if (!IsName(name) || !ReadsPlainText(name))
        return {};
    // A few encodings have no name that the converters would give: their label is as good.
    const QByteArray known = QStringDecoder(name.constData()).name();
    return known.isEmpty() ? name : known;
}

QByteArrayList DeclaredEncodings(QByteArrayView page)
{
    QByteArrayList encodings;
    const QByteArrayView head = page.first(std::min(page.size(), MetaReach));
    for (qsizetype at = head.indexOf('<'); at >= 0 && at < head.size(); at = head.indexOf('<', at)) {
        if (StartsWith(head, at, "<!--")) {
            const qsizetype end = head.indexOf("-->", at + 2);
            if (end < 0)
                break;
            at = end + 3;
        } else if (StartsWith(head, at, "<meta") && at + 5 < head.size() &&
                   (IsBlank(head[at + 5]) || head[at + 5] == '/')) {
            at += 5;
            AddDeclared(encodings, LabelOfMeta(head, at));
        } else {
            ++at;
            const bool tag = at < head.size() && (isalpha(static_cast<unsigned char>(head[at])) || head[at] == '/');
            while (tag && !NextAttribute(head, at).Name.isEmpty()) // a tag inside a value is none
                ;
        }
    }
    AddDeclared(encodings, LabelOfXmlDeclaration(head));
    return encodings;
}

QByteArray GuessEncoding(QByteArrayView page)
{
    const QByteArrayView sample = page.first(std::min(page.size(), GuessReach));
    const auto letters = std::count_if(sample.begin(), sample.end(), [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 && !IsWesternSign(static_cast<unsigned char>(c));
    });
    if (letters < LettersForGuess)
        return {};
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(), uchardet_delete);
    if (uchardet_handle_data(detector.get(), sample.data(), size_t(sample.size())) != 0)
        return {};
    uchardet_data_end(detector.get());
    const QByteArray encoding = EncodingOfLabel(uchardet_get_charset(detector.get()));
    // ISO-8859-15 differs from windows-1252 in signs that are rarer than the guess is wrong.
    return encoding == "windows-1252" || encoding == "ISO-8859-15" || encoding.startsWith("UTF-") ? QByteArray()
                                                                                                  : encoding;
}

std::optional<QString> DecodeExactly(QByteArrayView bytes, const QByteArray &encoding)
{
    QStringDecoder decoder(encoding.constData(), ConverterFlags);
    QString text = decoder.decode(bytes);
    if (!decoder.isValid() || decoder.hasError())
        return {};
    const Encoded back = Encode(text, encoding);
    if (!back.Complete || back.Bytes != bytes)
        return {};
    return text;
}

std::optional<QByteArray> EncodeText(const QString &text, const QByteArray &encoding)
{
    if (!QStringEncoder(encoding.constData()).isValid())
        return {};
    // Encoders replace some characters without a word (surrogates, private look-alikes): only the way back tells.
    const Encoded encoded = Encode(text, encoding);
    if (encoded.Complete && Decode(encoded.Bytes, encoding) == text)
        return encoded.Bytes;
    return Encode(WithReferences(text, encoding), encoding).Bytes;
}
