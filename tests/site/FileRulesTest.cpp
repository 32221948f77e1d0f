#include "site/FileRules.h"

#include "document/PageTitle.h"
#include "document/PathText.h"
#include "platform/FolderListing.h"
#include "site/Places.h"
#include "state/AppState.h"
#include "support/Files.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class FileRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void Patterns_data();
    void Patterns();
    void Icons_data();
    void Icons();
    void Rows();
    void Titles_data();
    void Titles();
    void TitlesOfFiles();
    void Links_data();
    void Links();
    void Volumes();
    void WhereAFolderLies_data();
    void WhereAFolderLies();
    void ListsAFolder();
};

void FileRulesTest::Patterns_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("fits");
    const auto row = [](const char *title, const QString &name, const QString &pattern, bool fits) {
        QTest::newRow(title) << name << pattern << fits;
    };
    row("page", u"a.htm"_s, PagesPattern, true);
    row("anything behind .htm", u"notes.html.bak"_s, PagesPattern, true);
    row("capitals", u"INDEX.HTML"_s, PagesPattern, true);
    row("umlauts and a line break", u"Gr\u00F6\u00DFe\nzwei.PHP3"_s, PagesPattern, true);
    row("nothing before the dot", u".htm"_s, PagesPattern, true);
    row("no page", u"a.css"_s, PagesPattern, false);
    row("a hidden file of the server", u".htaccess"_s, PagesPattern, false);
    row("the same, all files", u".htaccess"_s, AllFilesPattern, true);
    row("no dot, all files", u"README"_s, AllFilesPattern, true);
    row("extension of the settings", u"a.jsp"_s, PagesPattern + u";*.jsp"_s, true);
    row("the end is the end", u"a.shtml2"_s, u"*.shtml"_s, false);
    row("one character", u"a1.htm"_s, u"a?.htm"_s, true);
    row("not none", u"a.htm"_s, u"a?.htm"_s, false);
    row("the second of two", u"a.x.b.x.c"_s, u"*.x.c"_s, true);
    row("brackets are no wildcards", u"[a].htm"_s, u"[a].htm"_s, true);
    row("many stars end soon", QString(250, u'a'), u"*a*a*a*a*a*a*a*a*a*a*b"_s, false);
}

void FileRulesTest::Patterns()
{
    QFETCH(QString, name);
    QFETCH(QString, pattern);
    QFETCH(bool, fits);
    QCOMPARE(MatchesPattern(name, pattern), fits);
}

void FileRulesTest::Icons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("all");
    for (const auto &[name, number] : std::initializer_list<std::pair<const char *, int>>{{"a.htm", 3},
                                                                                          {"A.HTML", 3},
                                                                                          {"a.shtml", 3},
                                                                                          {"a.php", 3},
                                                                                          {"a.asp", 3},
                                                                                          {"notes.html.bak", 3},
                                                                                          {"a.xml", 5},
                                                                                          {"a.css", 5},
                                                                                          {"read.txt.gz", 5},
                                                                                          {"a.xhtm", 5},
                                                                                          {"run.pl", 5},
                                                                                          {"a.json", 5},
                                                                                          {".htaccess", 6},
                                                                                          {"a.png", 6},
                                                                                          {"README", 6},
                                                                                          {"report.doc.txt", 7},
                                                                                          {"a.docx", 7},
                                                                                          {"archive.html.pdf", 8},
                                                                                          {"A.PDF.DOC", 8}})
        QTest::newRow(name) << QString::fromLatin1(name) << number;
}

void FileRulesTest::Icons()
{
    QFETCH(QString, name);
    QFETCH(int, all);
    const QString extensions = AppState().TextFileExtensions;
    QCOMPARE(int(IconOf(name, {AllFilesPattern, extensions})), all);
    QCOMPARE(int(IconOf(name, {PagesPattern, extensions})), 3);
    QCOMPARE(RowsOf({name}, {AllFilesPattern, extensions}).value(0).Icon, IconOf(name, {AllFilesPattern, extensions}));
}

void FileRulesTest::Rows()
{
    const QStringList names = {u"b.htm"_s,      u"a.txt"_s, u"C.htm"_s, u"_inklm_temp.htm"_s, u"my_INKLM_temp.html"_s,
                               u"\u00E4.htm"_s, u"a.htm"_s, u"A.htm"_s, u"10.htm"_s};
    const auto shown = [&](const FileRules &rules) {
        QStringList rows;
        for (const FileRow &row : RowsOf(names, rules))
            rows.append(row.Name);
        return rows.join(u' ');
    };
    QCOMPARE(shown({PagesPattern, {}}), u"10.htm A.htm a.htm b.htm C.htm \u00E4.htm"_s);
    QCOMPARE(shown({AllFilesPattern, u".htm,"_s}), u"10.htm A.htm a.htm a.txt b.htm C.htm \u00E4.htm"_s);
    // Where the names differ late, or behind letters of every kind.
    const QStringList ordered = {u"a long name of many letters 1.htm"_s,
                                 u"a long name of many letters 10.htm"_s,
                                 u"a long name of many letters 2.htm"_s,
                                 u"abcdefgh.htm"_s,
                                 u"abcdefgh\u00FF1.htm"_s,
                                 u"abcdefgh\u0101.htm"_s,
                                 u"abcdefgh\u01011.htm"_s,
                                 u"abcdefgh\u0103.htm"_s};
    QStringList reversed(ordered.rbegin(), ordered.rend());
    QStringList sorted;
    for (const FileRow &row : RowsOf(reversed, {}))
        sorted.append(row.Name);
    QCOMPARE(sorted, ordered);
    QLocale::setDefault(QLocale(QLocale::German));
    QCOMPARE(shown({PagesPattern, {}, true}).last(17), u"\u00E4.htm b.htm C.htm"_s);
    QLocale::setDefault(QLocale::c());
}

void FileRulesTest::Titles_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    const auto row = [](const char *what, const QString &text, const QString &title) {
        QTest::newRow(what) << text << title;
    };
    row("on one line", u"<html><head><title>My page</title></head><body>"_s, u"My page"_s);
    row("markup as it stands", u"<TITLE>a &amp; b</TITLE>"_s, u"a &amp; b"_s);
    row("leading blanks", u"<title>  x </title>"_s, u"x "_s);
    row("lines are joined", u"<head>\r\n<title>\r\nMy\r\npage</title>\r\n<body>"_s, u"Mypage"_s);
    row("fourth line", u"<title>a\nb\nc\nd</title>"_s, u"abcd"_s);
    row("fifth line", u"<title>a\nb\nc\nd\n</title>"_s, QString());
    row("file ends early", u"<title>a\n</title>"_s, u"a"_s);
    row("never ends", u"<title>a"_s, QString());
    row("in the body", u"<body>\n<title>a</title>"_s, QString());
    row("behind the body on its line", u"<body><title>a</title>"_s, u"a"_s);
    row("attributes", u"<title lang=en>a</title>"_s, QString());
    row("letters that grow in upper case", u"<p>\u00DF\u0149<title>Stra\u00DFe</title>"_s, u"Stra\u00DFe"_s);
    row("nothing", QString(), QString());
}

void FileRulesTest::Titles()
{
    QFETCH(QString, text);
    QFETCH(QString, title);
    QCOMPARE(TitleOfPage(text), title);
}

void FileRulesTest::TitlesOfFiles()
{
    QTemporaryDir folder;
    const auto title = [&](const QByteArray &bytes) {
        PutBytes(folder.filePath(u"a.htm"_s), bytes);
        return TitleOfFile(folder.filePath(u"a.htm"_s));
    };
    QCOMPARE(title("<meta charset=iso-8859-1><title>Gr\xFC\xDF"
                   "e</title>"),
             u"Gr\u00FC\u00DFe"_s);
    QCOMPARE(title("<title>Gr\xC3\xBC\xC3\x9F"
                   "e</title>"),
             u"Gr\u00FC\u00DFe"_s);
    QCOMPARE(title(QByteArray("<title>a</title>\0\0", 18)), QString()); // no text
    QCOMPARE(TitleOfFile(folder.filePath(u"none.htm"_s)), QString());
    QCOMPARE(TitleOfFile(folder.path()), QString());
    QCOMPARE(::mkfifo(folder.filePath(u"pipe.htm"_s).toUtf8(), 0600), 0);
    QCOMPARE(TitleOfFile(folder.filePath(u"pipe.htm"_s)), QString());
}

void FileRulesTest::Links_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("markup");
    const auto row = [](const char *what, const char *path, const char *page, const char *title, const char *markup) {
        QTest::newRow(what) << QString::fromUtf8(path) << QString::fromUtf8(page) << QString::fromUtf8(title)
                            << QString::fromUtf8(markup);
    };
    row("same folder", "/s/page.htm", "/s/a.htm", "My page", " <a href=page.htm >My page</a> ");
    row("other folder", "/s/x/page.htm", "/s/y/a.htm", "P", " <a href=../x/page.htm >P</a> ");
    row("no title", "/s/a&b.htm", "/s/a.htm", "", " <a href=a%26b.htm >a&amp;b.htm</a> ");
    row("blanks and umlauts", "/s/my \xC3\xA4.htm", "/s/a.htm", "P", " <a href=my%20%C3%A4.htm >P</a> ");
    row("what ends a value", "/s/a\">'b.htm", "/s/a.htm", "P", " <a href=a%22%3E%27b.htm >P</a> ");
    row("what an address gives a meaning", "/s/x:1?2%20#3.htm", "/s/a.htm", "P",
        " <a href=x%3A1%3F2%2520%233.htm >P</a> ");
    row("line break", "/s/a\nb.htm", "/s/a.htm", "P", " <a href=a%0Ab.htm >P</a> ");
    row("no page", "/s/my page.htm", "", "P", " <a href=file:///s/my%20page.htm >P</a> ");
    row("page without a name", "/s/p.htm", "NEW PAGE", "P", " <a href=file:///s/p.htm >P</a> ");
}

void FileRulesTest::Links()
{
    QFETCH(QString, path);
    QFETCH(QString, page);
    QFETCH(QString, title);
    QFETCH(QString, markup);
    QCOMPARE(LinkMarkup(path, page, title), markup);
    const QString address = markup.section(u'=', 1).section(u' ', 0, 0);
    if (!page.isEmpty() && !path.contains(u'%')) // the way back that a click on the link takes
        QCOMPARE(PathFromPageText(address, page), path);
}

void FileRulesTest::Volumes()
{
    const QByteArray table = "22 28 0:20 / /sys rw - sysfs sysfs rw\n"
                             "28 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
                             "90 28 8:3 / /boot/efi rw shared:2 - vfat /dev/sda1 rw\n"
                             "95 28 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
                             "99 28 8:17 / /media/ann/MY\\040STICK\\134 rw shared:3 master:1 - vfat /dev/sdb1 rw\n"
                             "99 28 8:17 / /run/media/ann/MY\\040STICK\\134 rw - vfat /dev/sdb1 rw\n"
                             "120 28 0:50 / /srv/club rw - nfs4 host:/club rw\n"
                             "121 120 0:50 / /srv/club rw - nfs4 host:/club rw\n"
                             "130 28 0:51 / /home/ann/host rw - fuse.sshfs ann@host: rw\n"
                             "131 28 0:52 / /run/user/1000 rw - tmpfs tmpfs rw\n"
                             "short line\n";
    const QList<MountedVolume> volumes = VolumesIn(table);
    QCOMPARE(volumes, (QList<MountedVolume>{{u"MY STICK\\"_s, u"/media/ann/MY STICK\\"_s},
                                            {u"MY STICK\\"_s, u"/run/media/ann/MY STICK\\"_s},
                                            {u"club"_s, u"/srv/club"_s},
                                            {u"host"_s, u"/home/ann/host"_s}}));
    const QList<Place> places = PlacesOf(u"/home/ann"_s, volumes);
    QStringList names;
    for (const Place &place : places)
        names.append(place.Name);
    QCOMPARE(names, QStringList({u"File System"_s, u"Home"_s, u"MY STICK\\ (/media/ann/MY STICK\\)"_s,
                                 u"MY STICK\\ (/run/media/ann/MY STICK\\)"_s, u"club"_s, u"host"_s}));
}

void FileRulesTest::WhereAFolderLies_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("place");
    QTest::addColumn<QStringList>("down");
    QTest::newRow("root") << u"/"_s << 0 << QStringList{u"/"_s};
    QTest::newRow("below the root") << u"/usr/lib"_s << 0 << QStringList{u"/"_s, u"/usr"_s, u"/usr/lib"_s};
    QTest::newRow("home") << u"/home/ann"_s << 1 << QStringList{u"/home/ann"_s};
    QTest::newRow("in it") << u"/home/ann/a b"_s << 1 << QStringList{u"/home/ann"_s, u"/home/ann/a b"_s};
    QTest::newRow("another's") << u"/home/anna"_s << 0 << QStringList{u"/"_s, u"/home"_s, u"/home/anna"_s};
    QTest::newRow("volume in the home") << u"/home/ann/host/x"_s << 2
                                        << QStringList{u"/home/ann/host"_s, u"/home/ann/host/x"_s};
}

void FileRulesTest::WhereAFolderLies()
{
    QFETCH(QString, folder);
    QFETCH(int, place);
    QFETCH(QStringList, down);
    const QList<Place> places = PlacesOf(u"/home/ann"_s, {{u"host"_s, u"/home/ann/host"_s}});
    QCOMPARE(PlaceOf(folder, places), place);
    QCOMPARE(FoldersDownTo(folder, places.at(place).Path), down);
}

void FileRulesTest::ListsAFolder()
{
    QTemporaryDir folder;
    const auto path = [&](const char *name) { return folder.filePath(QString::fromUtf8(name)); };
    const QStringList files = {u"-rf"_s, u" a "_s, u"new\nline.htm"_s, u"\u00E4.htm"_s, u".hidden"_s};
    for (const QString &name : files)
        QVERIFY(PutBytes(folder.filePath(name), "x"));
    QVERIFY(QDir(folder.path()).mkdir(u"sub"_s));
    QVERIFY(QFile::link(path("sub"), path("to folder")));
    QVERIFY(QFile::link(path("-rf"), path("to file")));
    QVERIFY(QFile::link(path("nowhere"), path("to nothing")));
    QCOMPARE(::mkfifo(path("pipe").toUtf8(), 0600), 0);
    FolderListing listing = ListFolder(folder.path());
    QStringList expected = files + QStringList{u"to file"_s, u"to nothing"_s};
    listing.Files.sort();
    expected.sort();
    listing.Folders.sort();
    QCOMPARE(listing.Files, expected);
    QCOMPARE(listing.Folders, QStringList({u"sub"_s, u"to folder"_s}));
    QCOMPARE(ListFolder(path("none")).Error, FileError::PathNotFound);
    QCOMPARE(ListFolder(path("-rf")).Error, FileError::PathNotFound);
}

QTEST_GUILESS_MAIN(FileRulesTest)
#include "FileRulesTest.moc"
