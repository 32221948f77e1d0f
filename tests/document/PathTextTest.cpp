#include "document/PathText.h"
#include "document/ColorText.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class PathTextTest : public QObject
{
    Q_OBJECT

private:
    /// A path with "\" is for drive letters, one with "/" for this kind of system.
    static void Columns(const char *second)
    {
        QTest::addColumn<bool>("windows");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>(second);
        QTest::addColumn<QString>("expected");
    }

    static void Row(const char *title, bool windows, const char *path, const char *base, const char *expected)
    {
        QTest::addRow("%s %s", windows ? "win" : "posix", title)
            << windows << QString::fromUtf8(path) << QString::fromUtf8(base) << QString::fromUtf8(expected);
    }

    static PathStyle Style(bool windows) { return windows ? PathStyle::Windows() : PathStyle::Posix(); }

private slots:
    void GetRelativePath_data()
    {
        Columns("currentFile");
        Row("below", true, "C:\\web\\img\\a.gif", "C:\\web\\b.htm", "img\\a.gif");
        Row("elsewhere", true, "D:\\a.gif", "C:\\web\\b.htm", "D:\\a.gif");
        Row("with case", true, "C:\\WEB\\a.gif", "C:\\web\\b.htm", "C:\\WEB\\a.gif");
        Row("no page", true, "C:\\web\\a.gif", "", "");
        Row("page without folder", true, "a.gif", "b.htm", "a.gif");
        Row("file address", false, "file:///home/ann/img/a.gif", "/home/ann/b.htm", "img/a.gif");
        Row("elsewhere", false, "/srv/a.gif", "/home/ann/b.htm", "/srv/a.gif");
    }

    void GetRelativePath()
    {
        QFETCH(bool, windows);
        QFETCH(QString, path);
        QFETCH(QString, currentFile);
        QTEST(::GetRelativePath(path, currentFile, Style(windows)), "expected");
    }

    void MakeFullPath_data()
    {
        Columns("folder");
        Row("relative", true, "img/a.gif", "C:\\web", "C:\\web\\img\\a.gif");
        Row("folder with separator", true, "a.gif", "C:\\web\\", "C:\\web\\a.gif");
        Row("absolute", true, "D:/a.gif", "C:\\web", "D:\\a.gif");
        Row("empty", true, "", "C:\\web", "");
        Row("share keeps its pair", true, "/a.gif", "\\\\host\\web", "\\\\host\\web\\a.gif");
        Row("no project", true, "a.gif", "", "\\a.gif");
        Row("relative", false, "img/a.gif", "/home/ann", "/home/ann/img/a.gif");
        Row("absolute", false, "/srv/a.gif", "/home/ann", "/srv/a.gif");
        Row("no project is not the root", false, "a.gif", "", "a.gif");
    }

    void MakeFullPath()
    {
        QFETCH(bool, windows);
        QFETCH(QString, path);
        QFETCH(QString, folder);
        QTEST(::MakeFullPath(path, folder, Style(windows)), "expected");
    }

    void MakeFullPathRel_data()
    {
        Columns("base");
        Row("beside", true, "a.gif", "C:\\web\\b.htm", "C:\\web\\a.gif");
        Row("up one", true, "../a.gif", "C:\\web\\x\\b.htm", "C:\\web\\a.gif");
        Row("up two", true, "../../a.gif", "C:\\web\\x\\b.htm", "C:\\a.gif");
        Row("up too far", true, "../../../a.gif", "C:\\web\\b.htm", "C:\\a.gif");
        Row("up in the middle", true, "x\\..\\a.gif", "C:\\web\\b.htm", "C:\\x\\a.gif");
        Row("three dots", true, "...\\a.gif", "C:\\web\\b.htm", "C:\\.a.gif");
        Row("leading slash", true, "/a.gif", "C:\\web\\b.htm", "C:\\web\\a.gif");
        Row("doubled", true, "x//a.gif", "C:\\web\\b.htm", "C:\\web\\x\\a.gif");
        Row("three of them, once", true, "x///a.gif", "C:\\web\\b.htm", "C:\\web\\x\\\\a.gif");
        Row("absolute", true, "D:/x/../a.gif", "C:\\web\\b.htm", "D:\\x\\..\\a.gif");
        Row("base without separator", true, "a.gif", "web", "web\\a.gif");
        Row("share", true, "../a.gif", "\\\\host\\web\\x\\b.htm", "\\\\host\\web\\a.gif");
        Row("empty", true, "", "C:\\web\\b.htm", "");
        Row("beside", false, "img/a.gif", "/home/ann/b.htm", "/home/ann/img/a.gif");
        Row("up", false, "../a.gif", "/home/ann/b.htm", "/home/a.gif");
        Row("up to the root", false, "../../../a.gif", "/home/ann/b.htm", "/a.gif");
        Row("up that forms by a removal", false, "...././a.gif", "/x/y/z/b.htm", "/x/.a.gif");
        Row("absolute", false, "/srv/a.gif", "/home/ann/b.htm", "/srv/a.gif");
        Row("other address", false, "http://host/a.gif", "/home/ann/b.htm", "http://host/a.gif");
        Row("no page is not the root", false, "a.gif", "", "a.gif");
    }

    void MakeFullPathRel()
    {
        QFETCH(bool, windows);
        QFETCH(QString, path);
        QFETCH(QString, base);
        QTEST(::MakeFullPathRel(path, base, Style(windows)), "expected");
    }

    void MakeRelPathRel_data()
    {
        Columns("base");
        Row("beside", true, "C:\\web\\a.htm", "C:\\web\\b.htm", "a.htm");
        Row("below", true, "C:/web/x/a.htm", "C:\\web\\b.htm", "x\\a.htm");
        Row("ignoring case", true, "c:\\WEB\\a.htm", "C:\\web\\b.htm", "a.htm");
        Row("up one", true, "C:\\a.htm", "C:\\web\\b.htm", "..\\a.htm");
        Row("over to a neighbour", true, "C:\\web\\y\\a.htm", "C:\\web\\x\\b.htm", "..\\y\\a.htm");
        Row("name that starts alike", true, "C:\\website\\a.htm", "C:\\web\\b.htm", "..\\website\\a.htm");
        Row("other drive", true, "D:\\a.htm", "C:\\web\\b.htm", "D:\\a.htm");
        Row("something in front", true, "\\C:\\web\\a.htm", "C:\\web\\b.htm", "a.htm");
        Row("base without folder", true, "x/a.htm", "b.htm", "x\\a.htm");
        Row("no base", true, "x/a.htm", "", "x\\a.htm");
        Row("empty", true, "", "C:\\web\\b.htm", "");
        Row("share", true, "\\\\host\\web\\a.htm", "\\\\host\\web\\x\\b.htm", "..\\a.htm");
        Row("share and drive", true, "D:\\a.htm", "\\\\host\\web\\b.htm", "D:\\a.htm");
        Row("beside", false, "/home/ann/a.htm", "/home/ann/b.htm", "a.htm");
        Row("up", false, "/home/bob/a.htm", "/home/ann/b.htm", "../bob/a.htm");
        Row("root in common", false, "/srv/a.htm", "/home/ann/b.htm", "../../srv/a.htm");
        Row("page in the root", false, "/srv/a.htm", "/b.htm", "srv/a.htm");
        Row("with case", false, "/home/Ann/a.htm", "/home/ann/b.htm", "../Ann/a.htm");
        Row("folder in the middle", false, "/mnt/home/ann/a.htm", "/home/ann/b.htm", "../../mnt/home/ann/a.htm");
        Row("relative already", false, "x/a.htm", "/home/ann/b.htm", "x/a.htm");
        Row("other address", false, "http://host/a.gif", "/home/ann/b.htm", "http://host/a.gif");
        Row("no base", false, "/home/a.htm", "", "/home/a.htm");
    }

    void MakeRelPathRel()
    {
        QFETCH(bool, windows);
        QFETCH(QString, path);
        QFETCH(QString, base);
        QTEST(::MakeRelPathRel(path, base, Style(windows)), "expected");
    }

    void PathFromPageText_data()
    {
        Columns("base");
        Row("relative", true, "x/a.htm", "C:\\web\\b.htm", "C:\\web\\x\\a.htm");
        Row("file, bar for colon", true, "file:///C|/x/a.htm", "C:\\web\\b.htm", "C:\\x\\a.htm");
        Row("file, colon", true, "FILE:///C:/x/a%20b.htm", "C:\\web\\b.htm", "C:\\x\\a b.htm");
        Row("file, two slashes and a drive", true, "file://C:\\x\\a.htm", "C:\\web\\b.htm", "C:\\x\\a.htm");
        Row("file, localhost", true, "file://localhost/C|/a.htm", "C:\\web\\b.htm", "C:\\a.htm");
        Row("file, host", true, "file://host/web/a.htm", "C:\\web\\b.htm", "\\\\host\\web\\a.htm");
        Row("leading slash", true, "/a.htm", "C:\\web\\b.htm", "C:\\web\\a.htm");
        Row("file", false, "file:///srv/a.htm", "/home/ann/b.htm", "/srv/a.htm");
        Row("file, localhost", false, "file://localhost/srv/a.htm", "/home/ann/b.htm", "/srv/a.htm");
        Row("file, one slash", false, "file:/srv/a.htm", "/home/ann/b.htm", "/srv/a.htm");
        Row("leading slash is not the root", false, "/etc/a.htm", "/home/ann/b.htm", "/home/ann/etc/a.htm");
        Row("up", false, "../a.htm", "/home/ann/b.htm", "/home/a.htm");
        Row("broken %", false, "a%zz%.htm", "/home/ann/b.htm", "/home/ann/a%zz%.htm");
        Row("Latin-1 bytes", false, "caf%E9.htm", "/home/ann/b.htm", "/home/ann/caf\xC3\xA9.htm");
        Row("UTF-8 bytes", false, "caf%C3%A9.htm", "/home/ann/b.htm", "/home/ann/caf\xC3\xA9.htm");
        Row("no NUL", false, "a%00b", "/home/ann/b.htm", "/home/ann/a%00b");
        Row("other address", false, "mailto:ann%40host", "/home/ann/b.htm", "mailto:ann%40host");
        Row("empty", false, "", "/home/ann/b.htm", "");
        Row("only the scheme", false, "file://", "/home/ann/b.htm", "");
    }

    void PathFromPageText()
    {
        QFETCH(bool, windows);
        QFETCH(QString, path);
        QFETCH(QString, base);
        QTEST(::PathFromPageText(path, base, Style(windows)), "expected");
    }

    void PercentStaysWhenTheFileIsCalledSo()
    {
        const QTemporaryDir folder;
        const QString page = folder.filePath(u"page.htm"_s);
        QCOMPARE(::PathFromPageText(u"50%25.htm"_s, page), folder.filePath(u"50%.htm"_s));
        QFile named(folder.filePath(u"50%25.htm"_s));
        QVERIFY(named.open(QIODevice::WriteOnly));
        QCOMPARE(::PathFromPageText(u"50%25.htm"_s, page), named.fileName());
    }

    void Colours()
    {
        QCOMPARE(FormatRGBString(255), u"#FF0000"_s);
        QCOMPARE(FormatRGBString(0), u"#000000"_s);
        QCOMPARE(FormatRGBString(0xABCDEF), u"#EFCDAB"_s);
        QCOMPARE(FormatRGBString(0x80000005), u"#050080"_s);
        QCOMPARE(RevFormatRGBString(u"#FF0000"_s), 255);
        QCOMPARE(RevFormatRGBString(u"#FFFF00"_s), 65535);
        QCOMPARE(RevFormatRGBString(u"abcdef"_s), 0xEFCDAB);
        QCOMPARE(RevFormatRGBString(u"red"_s), 0xEDD);
        QCOMPARE(RevFormatRGBString(u"#F"_s), 0xFF);
        QCOMPARE(RevFormatRGBString(u"window"_s), 0);
        QCOMPARE(RevFormatRGBString({}), 0);
        for (const quint32 colour : {0x0u, 0x1u, 0x102030u, 0xFFFFFFu})
            QCOMPARE(quint32(RevFormatRGBString(FormatRGBString(colour))), colour);
    }
};

QTEST_GUILESS_MAIN(PathTextTest)
#include "PathTextTest.moc"
