#include "editing/LinkText.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// What the dialogs on links read from text and write into it.
class LinkTextTest : public QObject
{
    Q_OBJECT

private slots:
    void readsAndWritesTags_data();
    void readsAndWritesTags();
    void addresses_data();
    void addresses();
    void typedAddresses_data();
    void typedAddresses();
    void bookmarks_data();
    void bookmarks();
    void workingCopyIsReadFirst();
    void longTagIsReadOnce();
};

void LinkTextTest::readsAndWritesTags_data()
{
    QTest::addColumn<QString>("markup");
    QTest::addColumn<QString>("read");    // address|target|class
    QTest::addColumn<QString>("written"); // with target "_top" and no class
    QTest::newRow("plain") << u"<A href=b.htm>x</A>"_s << u"b.htm||"_s << u"<A href=b.htm TARGET=\"_top\">x</A>"_s;
    QTest::newRow("odd order and quotes")
        << u"<a CLASS='nav white' title=\"a>b\" TARGET=side Href = \"b c.htm\" id=k>x</a>"_s
        << u"b c.htm|side|nav white"_s << u"<a  title=\"a>b\" TARGET=\"_top\" Href = \"b c.htm\" id=k>x</a>"_s;
    QTest::newRow("other names that hold the words")
        << u"<A data-target=1 hrefx=2 xclass=3 href=b.htm>x</A>"_s << u"b.htm||"_s
        << u"<A data-target=1 hrefx=2 xclass=3 href=b.htm TARGET=\"_top\">x</A>"_s;
    QTest::newRow("character references")
        << u"<A href=\"a?b=&quot;1&quot;&amp;amp;c\">x</A>"_s << u"a?b=\"1\"&amp;c||"_s
        << u"<A href=\"a?b=&quot;1&quot;&amp;amp;c\" TARGET=\"_top\">x</A>"_s;
    QTest::newRow("references in and beside server code")
        << u"<A href=\"<?=&quot;a&quot;?>&eacute;&amp;\">x</A>"_s << u"<?=&quot;a&quot;?>é&||"_s
        << u"<A href=\"<?=&quot;a&quot;?>&eacute;&amp;\" TARGET=\"_top\">x</A>"_s;
    QTest::newRow("server code") << u"<A <?=$a?'>':\"\"?> href=\"<?php echo \"a>b\" ?>\" class=c>x</A>"_s
                                 << u"<?php echo \"a>b\" ?>||c"_s
                                 << u"<A <?=$a?'>':\"\"?> href=\"<?php echo \"a>b\" ?>\"  TARGET=\"_top\">x</A>"_s;
}

void LinkTextTest::readsAndWritesTags()
{
    QFETCH(QString, markup);
    const LinkAttributes link = ReadLink(markup);
    QTEST(QStringList({link.Address, link.Target, link.Class}).join(u'|'), "read");
    QCOMPARE(WriteLink(markup, link, link), markup);
    LinkAttributes changed = link;
    changed.Target = u"_top"_s;
    changed.Class.clear();
    QTEST(WriteLink(markup, link, changed), "written");
}

void LinkTextTest::addresses_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("shown");
    QTest::newRow("blank and umlaut") << u"%C3%BCber%20uns.htm"_s << u"über uns.htm"_s;
    QTest::newRow("beyond the first plane") << u"%F0%9F%98%80.htm"_s << u"\U0001F600.htm"_s;
    QTest::newRow("what means something stays") << u"a%23b%2Fc%25d.htm?x=%26y"_s << u"a%23b%2Fc%25d.htm?x=%26y"_s;
    QTest::newRow("no UTF-8 stays") << u"%FCber.htm"_s << u"%FCber.htm"_s;
    QTest::newRow("lone percent") << u"100%.htm"_s << u"100%.htm"_s;
    QTest::newRow("host keeps its letters") << u"http://müller.de/a%20%C3%BC"_s << u"http://müller.de/a ü"_s;
    QTest::newRow("script") << u"javascript:f('a b')"_s << u"javascript:f('a b')"_s;
    QTest::newRow("server code") << u"<?= $a . 'ü' ?>.htm"_s << u"<?= $a . 'ü' ?>.htm"_s;
}

void LinkTextTest::addresses()
{
    QFETCH(QString, written);
    QFETCH(QString, shown);
    QCOMPARE(ShownAddress(written), shown);
    QCOMPARE(WrittenAddress(shown), written);
}

void LinkTextTest::typedAddresses_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("address");
    const QString page = u"/home/u/site/sub/a.htm"_s;
    QTest::newRow("network") << u"http://x.org/a b"_s << page << u"http://x.org/a%20b"_s;
    QTest::newRow("mail") << u"mailto:a@b.c?subject=Grüße"_s << page << u"mailto:a@b.c?subject=Gr%C3%BC%C3%9Fe"_s;
    QTest::newRow("path beside") << u"/home/u/site/sub/c d.htm"_s << page << u"c%20d.htm"_s;
    QTest::newRow("path above") << u"/home/u/site/b.htm"_s << page << u"../b.htm"_s;
    QTest::newRow("another disk") << u"/mnt/usb/b.htm"_s << page << u"../../../../mnt/usb/b.htm"_s;
    QTest::newRow("drive of another system") << u"D:\\web\\b.htm"_s << page << u"D:/web/b.htm"_s;
    QTest::newRow("backslashes") << u"..\\b.htm"_s << page << u"../b.htm"_s;
    QTest::newRow("page without a name") << u"b.htm"_s << QString() << u"b.htm"_s;
}

void LinkTextTest::typedAddresses()
{
    QFETCH(QString, typed);
    QFETCH(QString, page);
    QTEST(AddressTyped(typed, page), "address");
}

void LinkTextTest::bookmarks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("names");
    QTest::newRow("in order, any case, no empty ones")
        << u"<a name=\"one\">x</a><A NAME=Two><a name=''></a><a name=\"a &amp; b\">"_s << u"one|Two|a & b"_s;
    QTest::newRow("only where the name comes first") << u"<a href=x name=no><a id=no><area name=no>"_s << QString();
    QTest::newRow("lines of one tag are joined") << u"<p><a\r\nname=one\nid=k>\n<a   name=two\n\n>"_s << u"one"_s;
    QTest::newRow("double blank") << u"<a  name=one>"_s << u"one"_s;
    QTest::newRow("tag that never ends") << u"<a name=one>\n<a name=two\n\n\n"_s << u"one"_s;
}

void LinkTextTest::bookmarks()
{
    QFETCH(QString, text);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"b.htm"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
    file.close();
    QTEST(BookmarksInFile(file.fileName()).join(u'|'), "names");
}

void LinkTextTest::workingCopyIsReadFirst()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"b.htm"_s);
    QVERIFY(BookmarksInFile(path).isEmpty());
    for (const QString &name : {path, QString(path + u".tmp.htm"_s)}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(name == path ? "<a name=file>" : "<a name=copy>");
        file.close();
        QCOMPARE(BookmarksInFile(path), QStringList{name == path ? u"file"_s : u"copy"_s});
    }
}

/// Joining many lines takes no longer than reading them.
void LinkTextTest::longTagIsReadOnce()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"b.htm"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<p " + QByteArray("x\n").repeated(500000) + "><a name=end>");
    file.close();
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(BookmarksInFile(file.fileName()), QStringList{u"end"_s});
    QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
}

QTEST_GUILESS_MAIN(LinkTextTest)
#include "LinkTextTest.moc"
