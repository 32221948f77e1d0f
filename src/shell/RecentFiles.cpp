#include "shell/RecentFiles.h"

#include "platform/Settings.h"
#include "state/AppState.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace RecentFiles {

namespace {

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity PathCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity PathCase = Qt::CaseSensitive;
#endif

const QString Section = u"Recent Projects"_s;
constexpr int LongestCaption = 30;

QString PathOfRow(const QString &row)
{
    return row.left(row.indexOf(u'|'));
}

} // namespace

void Read(AppState &app, const Settings &ini)
{
    app.RecentList.clear();
    for (int i = 0; i < MaximumRows; ++i) {
        const QString row = ini.GetIni(Section, QString::number(i), QString());
        if (row.isEmpty())
            break;
        if (QFileInfo(PathOfRow(row)).isFile())
            app.RecentList.append(row);
    }
}

void Write(const AppState &app, Settings &ini)
{
    const qsizetype count = app.RecentList.size();
    for (qsizetype i = 0; i < count; ++i)
        ini.SetIni(Section, QString::number(i), app.RecentList.at(i));
    ini.SetIni(Section, QString::number(count), QString());
    ini.SetIni(Section, QString::number(count + 1), QString());
}

void Add(AppState &app, const QString &path)
{
    app.RecentList.removeIf([&path](const QString &row) { return PathOfRow(row).compare(path, PathCase) == 0; });
    app.RecentList.prepend(path + u"| "_s);
    if (app.RecentList.size() > MaximumRows)
        app.RecentList.removeLast();
}

QString Path(const AppState &app, int row)
{
    return row < app.RecentList.size() ? PathOfRow(app.RecentList.at(row)) : QString();
}

QStringList Captions(const AppState &app)
{
    QStringList captions;
    for (int i = 0; i < VisibleRows && i < app.RecentList.size(); ++i) {
        QString text = Path(app, i);
        if (text.size() > LongestCaption) {
            const qsizetype separator = text.indexOf(QDir::separator(), text.size() - LongestCaption - 1);
            if (separator >= 0)
                text = u"..."_s + text.mid(separator);
        }
        text.replace(u'&', u"&&"_s); // a menu would take a lone one for a mnemonic
        captions.append(u"&%1  "_s.arg(i) + text);
    }
    return captions;
}

} // namespace RecentFiles
