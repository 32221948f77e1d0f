#include "site/FileRules.h"

#include <QCollator>
#include <QDir>
#include <QHash>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int PageExtensions = 4; ///< that many of the text extensions are pages

bool IsAllFiles(QStringView pattern)
{
    return pattern == AllFilesPattern;
}

/// Both in the same case. Goes back only to the last "*", so it is never slower than the product of the lengths.
bool FitsWildcard(QStringView text, QStringView wildcard)
{
    qsizetype at = 0;
    qsizetype in = 0;
    qsizetype star = -1;
    qsizetype resume = 0;
    while (at < text.size()) {
        if (in < wildcard.size() && wildcard[in] == u'*') {
            star = in++;
            resume = at;
        } else if (in < wildcard.size() && (wildcard[in] == u'?' || wildcard[in] == text[at])) {
            ++in;
            ++at;
        } else if (star >= 0) {
            in = star + 1;
            at = ++resume;
        } else {
            return false;
        }
    }
    while (in < wildcard.size() && wildcard[in] == u'*')
        ++in;
    return in == wildcard.size();
}

/// A pattern made ready for many names.
class NameFilter
{
public:
    explicit NameFilter(const QString &pattern)
    {
        for (const QString &part : pattern.toLower().split(u';', Qt::SkipEmptyParts)) {
            m_all = m_all || IsAllFiles(part);
            if (!m_wildcards.contains(part))
                m_wildcards.append(part);
        }
    }
    bool Fits(QStringView lowerName) const
    {
        return m_all || std::any_of(m_wildcards.begin(), m_wildcards.end(),
                                    [&](const QString &wildcard) { return FitsWildcard(lowerName, wildcard); });
    }
    /// What a name has before its first dot makes no difference.
    bool LooksOnlyAtEnds() const
    {
        return std::all_of(m_wildcards.begin(), m_wildcards.end(),
                           [](const QString &wildcard) { return wildcard.startsWith("*."_L1); });
    }

private:
    QStringList m_wildcards;
    bool m_all = false;
};

FileIcon IconOfLower(const QString &lowerName, const QStringList &extensions)
{
    if (lowerName.contains(".pdf"_L1))
        return FileIcon::Pdf;
    if (lowerName.contains(".doc"_L1))
        return FileIcon::Document;
    for (int entry = 0; entry < extensions.size(); ++entry) {
        if (lowerName.contains(extensions.at(entry)))
            return entry < PageExtensions ? FileIcon::Page : FileIcon::Text;
    }
    return FileIcon::Other;
}

/// Those that end at a comma.
QStringList ExtensionsIn(const QString &list)
{
    QStringList extensions = list.split(u',');
    extensions.removeLast();
    return extensions;
}

bool IsPreviewCopyLower(QStringView lowerName)
{
    return lowerName.contains(u'_') && lowerName.contains(u"_inklm_temp.htm");
}

/// Says of each name whether it shows, and how. What lies behind the first dot decides that for nearly all patterns,
/// and most files of a folder have the same there, so it is looked at once.
class NameJudge
{
public:
    struct Verdict
    {
        bool Shows = false;
        FileIcon Icon = FileIcon::Page;
    };

    explicit NameJudge(const FileRules &rules)
        : m_filter(rules.Pattern),
          m_all(IsAllFiles(rules.Pattern)),
          m_extensions(ExtensionsIn(rules.TextFileExtensions))
    {
        const auto dotted = [](const QString &extension) { return extension.startsWith(u'.'); };
        m_endDecides = m_filter.LooksOnlyAtEnds() && std::all_of(m_extensions.begin(), m_extensions.end(), dotted);
    }

    Verdict Judge(const QString &lowerName)
    {
        const qsizetype dot = lowerName.indexOf(u'.');
        Verdict verdict;
        if (!m_endDecides || dot < 0) {
            verdict = Look(lowerName);
        } else {
            const QStringView end = QStringView(lowerName).sliced(dot);
            if (end != m_lastEnd) {
                m_lastEnd = end.toString();
                const auto known = m_known.constFind(m_lastEnd);
                m_last = known != m_known.constEnd() ? *known : *m_known.insert(m_lastEnd, Look(lowerName));
            }
            verdict = m_last;
        }
        verdict.Shows = verdict.Shows && !IsPreviewCopyLower(lowerName);
        return verdict;
    }

private:
    Verdict Look(const QString &lowerName) const
    {
        return {m_filter.Fits(lowerName), m_all ? IconOfLower(lowerName, m_extensions) : FileIcon::Page};
    }

    NameFilter m_filter;
    bool m_all;
    bool m_endDecides;
    QStringList m_extensions;
    QHash<QString, Verdict> m_known; ///< by ends
    QString m_lastEnd;
    Verdict m_last;
};

/// A row on its way to its place.
struct Found
{
    const QString *Name;
    QString Key;
    FileIcon Icon;
};

/// The start of a key as a number: most names are told apart without a look at them, which makes the difference in a
/// folder of many thousands.
using KeyStart = std::array<quint64, 2>;

KeyStart StartOf(const QString &key)
{
    constexpr qsizetype BytesInWord = 8;
    KeyStart start = {};
    const qsizetype most = qMin(key.size(), qsizetype(start.size()) * BytesInWord);
    for (qsizetype at = 0; at < most; ++at) {
        const quint64 unit = qMin(quint64(key[at].unicode()), quint64(0xff));
        start[size_t(at / BytesInWord)] |= unit << 8 * (BytesInWord - 1 - at % BytesInWord);
        if (unit == 0xff)
            break; // more than a byte: what follows such a letter must decide nothing
    }
    return start;
}

QList<FileRow> InOrder(const std::vector<Found> &found)
{
    std::vector<std::pair<KeyStart, const Found *>> order;
    order.reserve(found.size());
    for (const Found &entry : found)
        order.emplace_back(StartOf(entry.Key), &entry);
    std::sort(order.begin(), order.end(), [](const auto &left, const auto &right) {
        if (left.first != right.first)
            return left.first < right.first;
        const int byKey = left.second->Key.compare(right.second->Key);
        return byKey < 0 || (byKey == 0 && *left.second->Name < *right.second->Name);
    });
    QList<FileRow> rows;
    rows.reserve(qsizetype(order.size()));
    for (const auto &[start, entry] : order)
        rows.append({*entry->Name, entry->Icon});
    return rows;
}

void SortByLanguage(QList<FileRow> &rows)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, FileRow>> keyed;
    keyed.reserve(size_t(rows.size()));
    for (const FileRow &row : rows)
        keyed.emplace_back(collator.sortKey(row.Name), row);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto &left, const auto &right) { return left.first.compare(right.first) < 0; });
    std::transform(keyed.begin(), keyed.end(), rows.begin(), [](const auto &entry) { return entry.second; });
}

} // namespace

bool MatchesPattern(const QString &name, const QString &pattern)
{
    return NameFilter(pattern).Fits(name.toLower());
}

FileIcon IconOf(const QString &name, const FileRules &rules)
{
    if (!IsAllFiles(rules.Pattern))
        return FileIcon::Page;
    return IconOfLower(name.toLower(), ExtensionsIn(rules.TextFileExtensions));
}

bool IsPreviewCopy(const QString &name)
{
    return IsPreviewCopyLower(name.toLower());
}

QList<FileRow> RowsOf(const QStringList &names, const FileRules &rules)
{
    NameJudge judge(rules);
    std::vector<Found> found;
    found.reserve(size_t(names.size()));
    for (const QString &name : names) {
        QString lower = name.toLower();
        const NameJudge::Verdict verdict = judge.Judge(lower);
        if (verdict.Shows)
            found.push_back({&name, std::move(lower), verdict.Icon});
    }
    QList<FileRow> rows = InOrder(found);
    if (rules.SortedAsRead)
        SortByLanguage(rows);
    return rows;
}

void SortNames(QStringList &names)
{
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        const int order = left.compare(right, Qt::CaseInsensitive);
        return order < 0 || (order == 0 && left < right);
    });
}

QString PathIn(const QString &folder, const QString &name)
{
    const QChar separator = QDir::separator();
    return folder.endsWith(separator) ? folder + name : folder + separator + name;
}

QString PathToOpen(const QString &path)
{
    return path.section(u'#', 0, 0);
}

QString ShownName(const QString &name)
{
    QString shown = name;
    for (QChar &c : shown) {
        if (c.category() == QChar::Other_Control)
            c = c == u'\n' ? QChar(0x2424) : QChar(0xfffd);
    }
    return shown;
}
