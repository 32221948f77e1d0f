#include "editing/LinkText.h"

#include "document/PageOutput.h"
#include "document/PathText.h"
#include "document/TagText.h"
#include "editing/AttributeText.h"
#include "platform/TextFile.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView AnchorStart("<A NAME");

QString WithAttribute(const QString &markup, const QString &name, const QString &was, const QString &now)
{
    if (was == now)
        return markup;
    return WriteAttribute(markup, 1, name, now.isEmpty() ? QString() : QuotedValue(now), TagMode::Set);
}

/// Of the character that starts at `at`, in UTF-16 units.
qsizetype CharacterLength(const QString &text, qsizetype at)
{
    const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return pair ? 2 : 1;
}

bool IsWrittenEncoded(QChar c)
{
    return c == u' ' || c.unicode() > 0x7F;
}

/// Where the name of the host ends, which has an encoding of its own; 0 without one.
qsizetype HostEnd(const QString &address)
{
    static const QRegularExpression host(u"^[a-z][a-z0-9+.-]*://[^/?#]*"_s, QRegularExpression::CaseInsensitiveOption);
    return host.match(address).capturedLength();
}

bool IsScript(const QString &address)
{
    return address.startsWith("javascript:"_L1, Qt::CaseInsensitive);
}

/// The bytes of a run of "%XX" that starts at `at`.
QByteArray EncodedRun(const QString &text, qsizetype at)
{
    static const QRegularExpression run(u"(?:%[0-9A-Fa-f]{2})+"_s);
    const QRegularExpressionMatch match =
        run.match(text, at, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
    return match.captured().toLatin1();
}

/// One run decoded as far as it may be.
QString ShownRun(const QByteArray &run)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString decoded = utf8(QByteArray::fromPercentEncoding(run));
    if (utf8.hasError())
        return QString::fromLatin1(run);
    QString shown;
    for (const QChar c : decoded)
        shown += IsWrittenEncoded(c) ? QString(c)
                                     : QString::fromLatin1(QByteArray(1, char(c.unicode())).toPercentEncoding());
    return shown;
}

/// A line joined with those that follow while it ends within a tag.
class TagLines
{
public:
    explicit TagLines(const QString &text) : m_lines(text.split(lineEnd())) {}

    bool AtEnd() const { return m_next >= m_lines.size(); }
    QString Next()
    {
        QString line = m_lines[m_next++];
        for (bool inTag = EndsInTag(line, false); inTag && !AtEnd(); inTag = EndsInTag(m_lines[m_next++], true))
            line += u' ' + m_lines[m_next];
        return line.replace("  "_L1, " "_L1);
    }

private:
    static QRegularExpression lineEnd() { return QRegularExpression(u"\r\n|\n|\r"_s); }
    static bool EndsInTag(const QString &piece, bool before)
    {
        const qsizetype opened = piece.lastIndexOf(u'<');
        const qsizetype closed = piece.lastIndexOf(u'>');
        return opened == closed ? before : opened > closed;
    }

    QStringList m_lines;
    qsizetype m_next = 0;
};

} // namespace

LinkAttributes ReadLink(const QString &markup)
{
    if (markup.isEmpty())
        return {};
    return {DecodedAttribute(markup, 1, u"HREF"_s), DecodedAttribute(markup, 1, u"TARGET"_s),
            DecodedAttribute(markup, 1, u"CLASS"_s)};
}

QString WriteLink(QString markup, const LinkAttributes &was, const LinkAttributes &now)
{
    markup = WithAttribute(markup, u"HREF"_s, was.Address, now.Address);
    markup = WithAttribute(markup, u"TARGET"_s, was.Target, now.Target);
    return WithAttribute(markup, u"CLASS"_s, was.Class, now.Class);
}

SplitAddress::SplitAddress(const QString &address) : File(address)
{
    const qsizetype mark = HasServerCode(address) ? -1 : address.indexOf(u'#');
    if (mark < 0)
        return;
    File = address.first(mark);
    Bookmark = address.sliced(mark + 1);
}

QString ShownAddress(const QString &address)
{
    if (IsScript(address) || HasServerCode(address))
        return address;
    QString shown;
    for (qsizetype at = 0; at < address.size();) {
        const QByteArray run = address[at] == u'%' ? EncodedRun(address, at) : QByteArray();
        shown += run.isEmpty() ? QString(address[at]) : ShownRun(run);
        at += run.isEmpty() ? 1 : run.size();
    }
    return shown;
}

QString WrittenAddress(const QString &typed)
{
    if (IsScript(typed) || HasServerCode(typed))
        return typed;
    const qsizetype host = HostEnd(typed);
    QString written = typed.first(host);
    for (qsizetype at = host; at < typed.size();) {
        const QString c = typed.sliced(at, CharacterLength(typed, at));
        written += IsWrittenEncoded(c[0]) ? QString::fromLatin1(c.toUtf8().toPercentEncoding()) : c;
        at += c.size();
    }
    return written;
}

QString AddressTyped(const QString &typed, const QString &currentFile)
{
    if (IsScript(typed) || HasServerCode(typed))
        return typed;
    const QString relative = IsPageName(currentFile) ? MakeRelPathRel(typed, currentFile) : typed;
    return WrittenAddress(QString(relative).replace(u'\\', u'/'));
}

QStringList BookmarksInText(const QString &text)
{
    QStringList names;
    qsizetype at = -1;
    while ((at = text.indexOf(AnchorStart, at + 1, Qt::CaseInsensitive)) >= 0) {
        const qsizetype end = text.indexOf(u'>', at);
        if (end < 0)
            break;
        const QString name = DecodedAttribute(text.sliced(at, end + 1 - at), 1, u"NAME"_s);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

QStringList BookmarksInFile(const QString &path)
{
    const QString working = path + WorkingSuffix;
    const TextFileContent file = ReadTextFile(QFileInfo::exists(working) ? working : path);
    if (file.Error != FileError::None)
        return {};
    QStringList names;
    for (TagLines lines(file.Text); !lines.AtEnd();)
        names += BookmarksInText(lines.Next());
    return names;
}

QString BookmarkMarkup(const QString &name)
{
    return "<A Name="_L1 + name + u'>';
}
