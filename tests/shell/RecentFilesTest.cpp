#include "shell/RecentFiles.h"
#include "platform/Settings.h"
#include "state/AppState.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class RecentFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void AddMovesAndDrops();
    void OneFileIsNotTakenForAnother();
    void Captions_data();
    void Captions();
    void OnlyFiveAreShown();
    void ReadsUpToTheFirstEmptyKey();
    void WritesTwoEmptyKeysBehind();
};

void RecentFilesTest::AddMovesAndDrops()
{
    AppState app;
    for (int i = 1; i <= 25; ++i)
        RecentFiles::Add(app, u"/%1.htm"_s.arg(i));
    QCOMPARE(app.RecentList.size(), 25);
    QCOMPARE(app.RecentList.constFirst(), u"/25.htm| "_s);
    QCOMPARE(app.RecentList.constLast(), u"/1.htm| "_s);

    RecentFiles::Add(app, u"/1.htm"_s);
    QCOMPARE(app.RecentList.size(), 25);
    QCOMPARE(app.RecentList.mid(0, 2), (QStringList{u"/1.htm| "_s, u"/25.htm| "_s}));
    QCOMPARE(app.RecentList.constLast(), u"/2.htm| "_s);

    RecentFiles::Add(app, u"/26.htm"_s);
    QCOMPARE(app.RecentList.size(), 25);
    QCOMPARE(app.RecentList.constFirst(), u"/26.htm| "_s);
    QCOMPARE(app.RecentList.constLast(), u"/3.htm| "_s);
}

void RecentFilesTest::OneFileIsNotTakenForAnother()
{
    AppState app;
    RecentFiles::Add(app, u"/home/a.htm"_s);
    RecentFiles::Add(app, u"/a.htm"_s); // stands at the end of the other path
    RecentFiles::Add(app, u"/A.htm"_s); // differs by case only
    QCOMPARE(app.RecentList, (QStringList{u"/A.htm| "_s, u"/a.htm| "_s, u"/home/a.htm| "_s}));
    QCOMPARE(RecentFiles::Path(app, 1), u"/a.htm"_s);
    QCOMPARE(RecentFiles::Path(app, 3), QString());
}

void RecentFilesTest::Captions_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("caption");
    QTest::newRow("short") << u"/home/ann/a.htm"_s << u"&0  /home/ann/a.htm"_s;
    QTest::newRow("30 characters") << u"/home/ann/sites/club/index.htm"_s << u"&0  /home/ann/sites/club/index.htm"_s;
    QTest::newRow("31: the separator at position 1 counts")
        << u"/home/anna/sites/club/index.htm"_s << u"&0  .../home/anna/sites/club/index.htm"_s;
    QTest::newRow("32: the first separator at position 2 or later")
        << u"/homes/anna/sites/club/index.htm"_s << u"&0  .../anna/sites/club/index.htm"_s;
    QTest::newRow("separator exactly there")
        << u"/x/home/anna/sites/club/index.htm"_s << u"&0  .../home/anna/sites/club/index.htm"_s;
    QTest::newRow("no separator so far behind") << u"/home/a-file-name-that-is-longer-than-thirty.htm"_s
                                                << u"&0  /home/a-file-name-that-is-longer-than-thirty.htm"_s;
    QTest::newRow("ampersand") << u"/r&d.htm"_s << u"&0  /r&&d.htm"_s;
}

void RecentFilesTest::Captions()
{
    QFETCH(QString, path);
    AppState app;
    RecentFiles::Add(app, path);
    QTEST(RecentFiles::Captions(app).value(0), "caption");
}

void RecentFilesTest::OnlyFiveAreShown()
{
    AppState app;
    for (int i = 1; i <= 7; ++i)
        RecentFiles::Add(app, u"/%1"_s.arg(i));
    QCOMPARE(RecentFiles::Captions(app),
             (QStringList{u"&0  /7"_s, u"&1  /6"_s, u"&2  /5"_s, u"&3  /4"_s, u"&4  /3"_s}));
}

void RecentFilesTest::ReadsUpToTheFirstEmptyKey()
{
    const QTemporaryDir folder;
    const QStringList files{folder.filePath(u"a.htm"_s), folder.filePath(u"b c.htm"_s), folder.filePath(u"d.htm"_s)};
    for (const QString &file : files)
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    Settings ini(folder.path(), QString());
    const QStringList rows{files[0] + u"| "_s,
                           folder.filePath(u"gone.htm"_s) + u"| "_s,
                           folder.path() + u"| "_s,
                           files[1] + u"| "_s,
                           QString(),
                           files[2] + u"| "_s};
    for (int i = 0; i < rows.size(); ++i)
        ini.SetIni(u"Recent Projects"_s, QString::number(i), rows[i]);

    AppState app;
    app.RecentList = {u"/old| "_s};
    RecentFiles::Read(app, ini);
    QCOMPARE(app.RecentList.size(), 2); // neither the file that is gone, nor the folder, nor what stands behind the gap
    QCOMPARE(RecentFiles::Path(app, 0), files[0]);
    QCOMPARE(RecentFiles::Path(app, 1), files[1]);
}

void RecentFilesTest::WritesTwoEmptyKeysBehind()
{
    const QTemporaryDir folder;
    Settings ini(folder.path(), QString());
    for (int i = 0; i < 6; ++i)
        ini.SetIni(u"Recent Projects"_s, QString::number(i), u"/old"_s);
    AppState app;
    RecentFiles::Add(app, u"/b.htm"_s);
    RecentFiles::Add(app, u"/a.htm"_s);
    RecentFiles::Write(app, ini);
    QStringList rows;
    for (int i = 0; i < 6; ++i)
        rows.append(ini.GetIni(u"Recent Projects"_s, QString::number(i), u"none"_s).trimmed());
    QCOMPARE(rows, (QStringList{u"/a.htm|"_s, u"/b.htm|"_s, QString(), QString(), u"/old"_s, u"/old"_s}));
}

QTEST_GUILESS_MAIN(RecentFilesTest)
#include "RecentFilesTest.moc"
