#include "site/FileRules.h"

#include <QCollator>
#include <QDir>

#include <algorithm>

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
    return lowerName.contains(u"_inklm_temp.htm");
}

struct Keyed
{
    QString Key;
    FileRow Row;
};

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
    const NameFilter filter(rules.Pattern);
    const bool all = IsAllFiles(rules.Pattern);
    const QStringList extensions = ExtensionsIn(rules.TextFileExtensions);
    std::vector<Keyed> found;
    found.reserve(size_t(names.size()));
    for (const QString &name : names) {
        QString lower = name.toLower();
        if (!filter.Fits(lower) || IsPreviewCopyLower(lower))
            continue;
        const FileIcon icon = all ? IconOfLower(lower, extensions) : FileIcon::Page;
        found.push_back({std::move(lower), {name, icon}});
    }
    std::sort(found.begin(), found.end(), [](const Keyed &left, const Keyed &right) {
        const int order = left.Key.compare(right.Key);
        return order < 0 || (order == 0 && left.Row.Name < right.Row.Name);
    });
    QList<FileRow> rows;
    rows.reserve(qsizetype(found.size()));
    for (Keyed &entry : found)
        rows.append(std::move(entry.Row));
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
