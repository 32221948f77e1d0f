#include "support/SurfaceRig.h"

#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include <memory>

using namespace Qt::StringLiterals;

/// Copy, cut and paste with the keys and the clipboard of the desktop.
class ClipboardTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }
    void init() { QGuiApplication::clipboard()->clear(); }

    void Copy_data();
    void Copy();
    void CutIsOneStep();
    void KeysBehindAPasteWait();
    void PasteBetweenPages_data();
    void PasteBetweenPages();
    void PasteForeign_data();
    void PasteForeign();
    void PasteText_data();
    void PasteText();
    void PictureBecomesAFile();
    void PictureThatCanNotBeWritten();
    void PicturesInsideMarkupBecomeFiles();
    void LinkedFiles();
    void Status();
    void LargePaste();

private:
    static const QMimeData *Held() { return QGuiApplication::clipboard()->mimeData(); }
    static void Hold(const QString &html, const QString &text = {})
    {
        auto *data = new QMimeData;
        if (!html.isEmpty())
            data->setHtml(html);
        if (!text.isEmpty())
            data->setText(text);
        QGuiApplication::clipboard()->setMimeData(data);
    }
    void CopyKey() { m_rig->Key(Qt::Key_C, Qt::ControlModifier); }
    void PasteKey() { m_rig->Key(Qt::Key_V, Qt::ControlModifier); }
    QStringList FilesBesidePage() const
    {
        return QDir(m_rig->Path(u"."_s)).entryList({u"picture*"_s}, QDir::Files, QDir::Name);
    }

    std::unique_ptr<SurfaceRig> m_rig;
};

void ClipboardTest::Copy_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QString &page, const QString &html, const QString &text) {
        QTest::newRow(name) << page << html << text;
    };
    row("bold word", u"<p id=\"i\">a <b id=\"k\">[word]</b> c</p>"_s, u"<b>word</b>"_s, u"word"_s);
    row("across formats", u"<p>a[b <i>c</i> d]e</p>"_s, u"b <i>c</i> d"_s, u"b c d"_s);
    row("part of a link", u"<p><a href=\"http://h.example/\" class=\"k\">a[b]c</a></p>"_s,
        u"<a href=\"http://h.example/\" class=\"k\">b</a>"_s, u"b"_s);
    row("paragraphs", u"<p align=\"center\">a[b</p><p>c]d</p>"_s, u"<p align=\"center\">b</p><p>c</p>"_s, u"b\n\nc"_s);
    row("up to the start of the next", u"<h2>[a</h2><p>]b</p>"_s, u"<h2>a</h2>"_s, u"a"_s);
    row("items", u"<ol type=\"a\"><li>a[b</li><li>c]</li><li>d</li></ol>"_s,
        u"<ol type=\"a\"><li>b</li><li>c</li></ol>"_s, u"b\nc"_s);
    row("cells", u"<table border=\"1\"><tbody><tr><td>[a</td><td>b]</td></tr></tbody></table>"_s,
        u"<table border=\"1\"><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s, u"a\tb"_s);
    row("handlers and comments", u"<p>[<b onclick=\"x()\">a</b><!-- c --><input type=\"hidden\" name=\"h\">b]</p>"_s,
        u"<b onclick=\"x()\">a</b><!-- c --><input type=\"hidden\" name=\"h\">b"_s, u"ab"_s);
    row("lines of preformatted text", u"<pre>a[b\n  c]d</pre>"_s, u"<pre>b\n  c</pre>"_s, u"b\n  c"_s);
    row("server code", u"<p>[a <?php echo \"1\" ?><b class=\"<%= k %>\">b</b>]</p>"_s,
        u"a <?php echo \"1\" ?><b class=\"<%= k %>\">b</b>"_s, u"a b"_s);
}

void ClipboardTest::Copy()
{
    QFETCH(QString, page);
    QFETCH(QString, html);
    QFETCH(QString, text);
    m_rig->SetBody(page);
    const QString before = m_rig->PlainBody();
    CopyKey();
    QCOMPARE(Held()->html(), html);
    QCOMPARE(Held()->text(), text);
    QCOMPARE(m_rig->PlainBody(), before);
    QVERIFY(!m_rig->Surface.IsDirty());
    // What was copied is what comes back.
    m_rig->SetBody(u"<div>x|y</div>"_s);
    PasteKey();
    QVERIFY2(m_rig->Surface.DocumentHTML().contains(u"PHP"_s) || m_rig->ParsesBack(), qPrintable(m_rig->PlainBody()));
    if (!html.contains(u"<?"_s))
        QCOMPARE(m_rig->PlainBody(), "<div>x"_L1 + html + "y</div>"_L1);
    else
        QVERIFY2(m_rig->Surface.DocumentHTML().contains(u"xa <?php echo \"1\" ?><B class=\"<%= k %>\">b</B>y"_s),
                 qPrintable(m_rig->Surface.DocumentHTML()));
}

void ClipboardTest::CutIsOneStep()
{
    m_rig->SetBody(u"<p>a [b <i>c</i>] d</p>"_s);
    const QString before = m_rig->Body();
    m_rig->Key(Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(Held()->html(), u"b <i>c</i>"_s);
    QCOMPARE(m_rig->PlainBody().replace(u"&nbsp;"_s, u" "_s), u"<p>a  d</p>"_s);
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), before);
}

void ClipboardTest::KeysBehindAPasteWait()
{
    m_rig->SetBody(u"<p>0|</p>"_s);
    Hold(u"<?php a() ?><b>x</b>"_s.repeated(50));
    for (const char key : {'1', '2', '3'})
        QTest::keyClick(m_rig->Surface.InputWidget(), key);
    QTest::keyClick(m_rig->Surface.InputWidget(), Qt::Key_V, Qt::ControlModifier);
    for (const char key : {'4', '5'})
        QTest::keyClick(m_rig->Surface.InputWidget(), key);
    const QString text = m_rig->Surface.DocumentHTML();
    QVERIFY2(text.contains("<P>0123"_L1 + u"<?php a() ?><B>x</B>"_s.repeated(50) + "45</P>"_L1), qPrintable(text));
}

void ClipboardTest::PasteBetweenPages_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("pasted");
    QTest::newRow("same folder") << u"."_s
                                 << u"<img src=\"img/a b.gif\"><a href=\"../x.htm#y\">l</a><a href=\"#z\">m</a>"_s;
    QTest::newRow("below") << u"sub"_s
                           << u"<img src=\"../img/a b.gif\"><a href=\"../../x.htm#y\">l</a><a href=\"#z\">m</a>"_s;
    QTest::newRow("beside its target") << u"img"_s
                                       << u"<img src=\"a b.gif\"><a href=\"../../x.htm#y\">l</a><a href=\"#z\">m</a>"_s;
}

void ClipboardTest::PasteBetweenPages()
{
    QFETCH(QString, folder);
    QFETCH(QString, pasted);
    m_rig->SetBody(u"<p>[<img src=\"img/a b.gif\"><a href=\"../x.htm#y\">l</a><a href=\"#z\">m</a>]</p>"_s);
    CopyKey();
    // Other programs do not know where the page lies.
    QVERIFY(Held()->html().contains("src=\""_L1 +
                                    QUrl::fromLocalFile(m_rig->Path(u"img/a b.gif"_s)).toString(QUrl::FullyEncoded)));
    DesignSurface other;
    other.resize(400, 300);
    other.show();
    other.LoadText(u"<html><body><p></p></body></html>"_s, QDir::cleanPath(m_rig->Path(folder + "/other.htm"_L1)));
    QVERIFY(other.WaitWhileBusy());
    other.ExecCommand(DECMD_PASTE);
    const QString expected = u"<P>"_s + pasted + u"</P>"_s;
    QString text = other.DocumentHTML().replace("<IMG"_L1, "<img"_L1).replace("<A "_L1, "<a "_L1);
    text.replace("</A>"_L1, "</a>"_L1).remove(u'"');
    QVERIFY2(text.contains(QString(expected).remove(u'"')), qPrintable(text));
    m_rig->Surface.activateWindow();
    m_rig->Surface.setFocus();
}

void ClipboardTest::PasteForeign_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &page, const QString &html, const QString &after) {
        QTest::newRow(name) << page << html << after;
    };
    row("whole page", u"<p>a|b</p>"_s,
        u"<html><head><meta "
        u"charset=utf-8><style>p{}</style></head><body>\n<!--StartFragment--><i>x</i><!--EndFragment-->\n"
        "</body></html>"_s,
        u"<p>a<i>x</i>|b</p>"_s);
    row("marks without a page", u"<p>a|b</p>"_s, u"<!--StartFragment-->x<!-- y --><!--EndFragment-->"_s,
        u"<p>ax|b</p>"_s);
    row("browser's computed styles", u"<p>a|b</p>"_s,
        u"<meta charset='utf-8'><span style=\"color: rgb(32, 33, 36); font-family: Arial; font-style: normal; orphans: "
        u"2; "
        "-webkit-text-stroke-width: 0px; display: inline !important; float: none;\">one<span> </span></span>"
        "<b style=\"color: rgb(32, 33, 36); orphans: 2;\">two</b><br class=\"Apple-interchange-newline\">"_s,
        u"<p>aone <b>two</b>|b</p>"_s);
    row("emphasis by style", u"<p>a|b</p>"_s,
        u"<span style=\"font-weight:700;font-style:italic\">x</span><span style=\"text-decoration:underline\">y</span>"_s,
        u"<p>a<b><i>x</i></b><u>y</u>|b</p>"_s);
    row("bold that is not", u"<p>a|</p>"_s,
        u"<b style=\"font-weight:normal\" id=\"docs-guid\"><p style=\"text-align:center\">x</p></b>"_s,
        u"<p>a</p><p align=\"center\">x|</p>"_s);
    row("a style that says something", u"<p>a|</p>"_s,
        u"<span class=\"k\" style=\"color: red; font-weight: normal\" onclick=\"x()\">x</span>"_s,
        u"<p>a<span style=\"color: red;\">x</span>|</p>"_s);
    row("part of a table", u"<p>a|</p>"_s,
        u"<html><body><table border=1>\n<!--StartFragment--><tr><td>x</td></tr><!--EndFragment-->\n</table></body></html>"_s,
        u"<p>a</p><table border=\"1\">\n<tbody><tr><td>x</td></tr>\n</tbody></table>|"_s);
    row("items into a list", u"<ul><li>a|b</li></ul>"_s, u"<ul><li>x</li><li>y</li></ul>"_s,
        u"<ul><li>a</li><li>x</li><li>y|</li><li>b</li></ul>"_s);
    row("scripts and handlers", u"<p>a|b</p>"_s,
        u"<b onclick=\"x()\">y</b><script>z()</script><a href=\"javascript:q()\">l</a><img src=\"i.gif\" onerror=\"e()\">"_s,
        u"<p>a<b>y</b><a>l</a><img src=\"i.gif\">|b</p>"_s);
}

void ClipboardTest::PasteForeign()
{
    QFETCH(QString, page);
    QFETCH(QString, html);
    QFETCH(QString, after);
    m_rig->SetBody(page);
    Hold(html, u"text"_s);
    PasteKey();
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), page);
}

void ClipboardTest::PasteText_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &page, const QString &text, const QString &after) {
        QTest::newRow(name) << page << text << after;
    };
    row("markup characters", u"<p>a|b</p>"_s, u"<i> & \"x\""_s, u"<p>a&lt;i&gt; &amp; \"x\"|b</p>"_s);
    row("lines", u"<p>a|b</p>"_s, u"1\r\n2\r\n"_s, u"<p>a1<br>2|b</p>"_s);
    row("paragraphs", u"<p align=\"right\" id=\"i\">a|b</p>"_s, u"1\n\n2\n3\n\n\n4"_s,
        u"<p align=\"right\" id=\"i\">a1</p><p align=\"right\">2<br>3</p><p align=\"right\">4|b</p>"_s);
    row("paragraphs in an empty one", u"<p>|<br></p>"_s, u"1\n\n2"_s, u"<p>1</p><p>2|</p>"_s);
    row("paragraphs at the end of a heading", u"<h1>a|</h1>"_s, u"1\n\n2"_s, u"<h1>a1</h1><p>2|</p>"_s);
    row("paragraphs in a cell", u"<table><tbody><tr><td>|</td></tr></tbody></table>"_s, u"1\n\n2"_s,
        u"<table><tbody><tr><td><p>1</p><p>2|</p></td></tr></tbody></table>"_s);
    row("paragraphs in one line", u"<dl><dt>a|</dt></dl>"_s, u"1\n\n2"_s, u"<dl><dt>a1<br>2|</dt></dl>"_s);
    row("preformatted", u"<pre>a|b</pre>"_s, u"1\n\n  2"_s, u"<pre>a1\n\n  2|b</pre>"_s);
    row("runs of blanks", u"<p>a|b</p>"_s, u"1   2"_s, u"<p>a1&nbsp;&nbsp; 2|b</p>"_s);
    row("over a selection", u"<p>a[b</p><p>c]d</p>"_s, u"1"_s, u"<p>a1|d</p>"_s);
}

void ClipboardTest::PasteText()
{
    QFETCH(QString, page);
    QFETCH(QString, text);
    QFETCH(QString, after);
    m_rig->SetBody(page);
    Hold(u"<b>other</b>"_s, text);
    m_rig->Key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_rig->Body(), after);
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), page);
}

void ClipboardTest::PictureBecomesAFile()
{
    m_rig->SetBody(u"<p>a|b</p>"_s);
    QFile taken(m_rig->Path(u"picture1.png"_s));
    QVERIFY(taken.open(QIODevice::WriteOnly));
    taken.write("mine");
    taken.close();
    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::red);
    auto *data = new QMimeData; // as a browser gives a picture
    data->setImageData(picture);
    data->setHtml(u"<meta charset=utf-8><img src=\"http://h.example/x.png\">"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    QSignalSpy notices(&m_rig->Surface, &DesignSurface::Notice);
    PasteKey();
    QCOMPARE(m_rig->Body(), u"<p>a<img src=\"picture2.png\" width=\"30\" height=\"20\">|b</p>"_s);
    QCOMPARE(QImage(m_rig->Path(u"picture2.png"_s)).pixelColor(3, 3), QColor(Qt::red));
    QCOMPARE(taken.size(), 4);
    QVERIFY(notices.value(0).value(0).toString().contains(u"picture2.png"_s));
}

void ClipboardTest::PictureThatCanNotBeWritten()
{
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QSignalSpy notices(&m_rig->Surface, &DesignSurface::Notice);
    for (const QString &path : {QString(), u"/proc/no such folder/page.htm"_s}) {
        m_rig->Surface.LoadText(u"<html><body><p>a</p></body></html>"_s, path);
        QVERIFY(m_rig->Surface.WaitWhileBusy());
        QGuiApplication::clipboard()->setImage(picture);
        m_rig->Surface.ExecCommand(DECMD_PASTE);
        QCOMPARE(m_rig->PlainBody(), u"<p>a</p>"_s);
        QVERIFY(!m_rig->Surface.IsDirty());
    }
    QCOMPARE(notices.size(), 2);
    QVERIFY(notices[0] != notices[1]);
}

void ClipboardTest::PicturesInsideMarkupBecomeFiles()
{
    m_rig->SetBody(u"<p>a|b</p>"_s);
    const QStringList before = FilesBesidePage();
    const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7");
    Hold("x<img alt=k src=\"data:image/gif;base64,"_L1 + QString::fromLatin1(gif.toBase64()) + "\">y"_L1);
    PasteKey();
    QStringList after = FilesBesidePage();
    for (const QString &name : before)
        after.removeOne(name);
    QCOMPARE(after.size(), 1);
    QCOMPARE(m_rig->Body(), u"<p>ax<img alt=\"k\" src=\"%1\">y|b</p>"_s.arg(after[0]));
    QFile file(m_rig->Path(after[0]));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), gif);
}

void ClipboardTest::LinkedFiles()
{
    m_rig->SetBody(u"<p>a|b</p>"_s);
    QVERIFY(QDir(m_rig->Path(u"."_s)).mkpath(u"sub dir"_s));
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(m_rig->Path(u"sub dir/one.png"_s)));
    const auto paste = [&](const QString &path) {
        auto *data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(path)});
        data->setText(path);
        QGuiApplication::clipboard()->setMimeData(data);
        PasteKey();
    };
    paste(m_rig->Path(u"sub dir/one.png"_s));
    paste(m_rig->Path(u"other.htm"_s));
    const QString after =
        u"<p>a<img src=\"sub%20dir/one.png\" width=\"3\" height=\"2\"><a href=\"other.htm\">other.htm</a>|b</p>"_s;
    QCOMPARE(m_rig->Body(), after);
    QSignalSpy notices(&m_rig->Surface, &DesignSurface::Notice);
    paste(u"/etc/hostname"_s);
    QCOMPARE(m_rig->Body(), after);
    QCOMPARE(notices.size(), 1);
}

void ClipboardTest::Status()
{
    m_rig->SetBody(u"<p>a|b</p>"_s);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_COPY), DECMDF_DISABLED);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_CUT), DECMDF_DISABLED);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_PASTE), DECMDF_DISABLED);
    QGuiApplication::clipboard()->setImage(QImage(3, 2, QImage::Format_RGB32));
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_PASTE), DECMDF_ENABLED);
    m_rig->SetBody(u"<p>[a]b</p>"_s);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_COPY), DECMDF_ENABLED);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_CUT), DECMDF_ENABLED);
}

void ClipboardTest::LargePaste()
{
    m_rig->SetBody(u"<p>a|b</p>"_s);
    const QString piece =
        u"<p class=k style=\"margin:0\"><span style=\"font-weight:bold\">bold</span> text <a href=x.htm>link</a></p>\n"_s;
    Hold(piece.repeated(1'000'000 / piece.size()));
    QElapsedTimer time;
    time.start();
    PasteKey();
    const qint64 taken = time.elapsed();
    QVERIFY(m_rig->PlainBody().size() > 500'000);
    QVERIFY2(taken < 15000, qPrintable(QString::number(taken)));
    m_rig->UndoAll();
    QCOMPARE(m_rig->PlainBody(), u"<p>ab</p>"_s);
}

QTEST_MAIN(ClipboardTest)
#include "ClipboardTest.moc"
