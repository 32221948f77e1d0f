#include "support/SurfaceRig.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

using namespace Qt::StringLiterals;

/// What word processors and spreadsheets put on the clipboard, pasted: the text and its structure, none of their
/// litter.
class OfficePasteTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rig = std::make_unique<SurfaceRig>(); }
    void cleanupTestCase() { m_rig.reset(); }

    void Paste_data();
    void Paste();

private:
    std::unique_ptr<SurfaceRig> m_rig;
};

namespace {

QString Office(const QString &body)
{
    return u"<html xmlns:o=\"urn:schemas-microsoft-com:office:office\" "
           u"xmlns:w=\"urn:schemas-microsoft-com:office:word\">\r\n"
           "<head><meta name=Generator content=\"x\"><!--[if gte mso 9]><xml><o:p>y</o:p></xml><![endif]-->\r\n"
           "<style><!-- /* Style Definitions */ p.MsoNormal {margin:0cm;} @list l0 {mso-list-id:1;} "
           "--></style></head>\r\n"
           "<body lang=EN-GB style='tab-interval:36.0pt'>\r\n<!--StartFragment-->"_s +
           body + u"<!--EndFragment-->\r\n</body></html>"_s;
}

QString Item(int level, const QString &marker, const QString &text)
{
    return u"<p class=MsoListParagraphCxSpMiddle style='text-indent:-18.0pt;mso-list:l0 level%1 lfo1'><![if "
           u"!supportLists]>"
           "<span style='font-family:Symbol'><span style='mso-list:Ignore'>%2<span style='font:7.0pt \"Times New "
           "Roman\"'>"
           "&nbsp;&nbsp; </span></span></span><![endif]>%3<o:p></o:p></p>\r\n\r\n"_s.arg(QString::number(level), marker,
                                                                                         text);
}

} // namespace

void OfficePasteTest::Paste_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &html, const QString &after) {
        QTest::newRow(name) << html << after;
    };
    row("paragraphs and runs",
        Office(
            u"<p class=MsoNormal align=center style='text-align:center;line-height:\r\n150%'><b "
            u"style='mso-bidi-font-weight:"
            "normal'><span "
            "lang=EN-US\r\nstyle='font-size:14.0pt;color:red'>Bo</span></b><b><span>ld</span></b><span\r\n"
            "style='mso-spacerun:yes'> </span><span style='font-style:italic'>and</span>\r\nmore<o:p></o:p></p>\r\n\r\n"
            "<p class=MsoNormal><o:p>&nbsp;</o:p></p>\r\n"_s),
        u"<p align=\"center\"><b>Bold</b> <i>and</i> more</p>\n<p>&nbsp;</p>"_s);
    row("headings, links, bookmarks",
        Office(u"<p class=MsoTitle>T<o:p></o:p></p><h2 style='mso-list:none'><a name=\"_Toc1\"></a><a "
               u"name=\"_Toc2\"><span "
               "style='mso-bookmark:_Toc1'>H</span></a></h2><p class=MsoNormal><a href=\"http://h.example/\"><span "
               "style='color:#0563C1'>l</span></a><a name=\"own\"></a></p>"_s),
        u"<h1>T</h1><h2>H</h2><p><a href=\"http://h.example/\">l</a><a name=\"own\"></a></p>"_s);
    row("bullets in levels",
        Office(Item(1, u"&middot;"_s, u"one"_s) + Item(2, u"o"_s, u"inner"_s) + Item(3, u"§"_s, u"deep"_s) +
               Item(1, u"&middot;"_s, u"<b>two</b>"_s)),
        u"<ul><li>one<ul><li>inner<ul><li>deep</li></ul></li></ul></li><li><b>two</b></li></ul>"_s);
    row("numbers of several kinds",
        Office(Item(1, u"3."_s, u"three"_s) + Item(2, u"a)"_s, u"first"_s) + Item(2, u"b)"_s, u"second"_s) +
               Item(1, u"4."_s, u"four"_s) + u"<p class=MsoNormal>between</p>"_s + Item(1, u"I."_s, u"roman"_s)),
        u"<ol start=\"3\"><li>three<ol type=\"a\"><li>first</li><li>second</li></ol></li><li>four</li></ol>\n"
        "<p>between</p><ol type=\"I\"><li>roman</li></ol>"_s);
    row("bullets without a style of their own",
        Office(
            u"<p class=MsoNormal style='mso-list:l1 level1 lfo2'><![if !supportLists]><span>&#8226;&nbsp;</span><![endif]>x</p>"_s),
        u"<ul><li>x</li></ul>"_s);
    row("table",
        Office(
            u"<table class=MsoTableGrid border=1 cellspacing=0 cellpadding=0 width=600 style='border-collapse:collapse;"
            "mso-yfti-tbllook:1184'>\r\n <tr style='mso-yfti-irow:0;height:12pt'>\r\n  <td width=301 colspan=2 "
            "valign=top "
            "style='width:225pt;mso-border-alt:solid'>\r\n  <p class=MsoNormal align=right "
            "style='text-align:right'>x</p>\r\n"
            "  </td>\r\n </tr>\r\n</table>"_s),
        u"<table border=\"1\" cellspacing=\"0\" cellpadding=\"0\"><tbody><tr><td colspan=\"2\" valign=\"top\" "
        "align=\"right\">x</td></tr></tbody></table>"_s);
    row("picture with its drawing",
        Office(u"<p class=MsoNormal><!--[if gte vml 1]><v:shape id=\"s\"><v:imagedata "
               u"src=\"file:///C:/t/i.png\"/></v:shape>"
               "<![endif]--><![if !vml]><img width=10 height=20 src=\"i.png\" v:shapes=\"s\"><![endif]></p>"_s),
        u"<p><img width=\"10\" height=\"20\" src=\"i.png\"></p>"_s);
    row("spreadsheet",
        u"<html xmlns:x=\"urn:schemas-microsoft-com:office:excel\"><body><table border=0 cellpadding=0 cellspacing=0 "
        u"width=128 "
        "style='border-collapse:collapse;width:96pt'><col width=64 span=2 style='width:48pt'><!--StartFragment--><tr "
        "height=20 "
        "style='height:15.0pt'><td height=20 class=xl65 align=right width=64 x:num>1</td><td class=xl66>b</td></tr>"
        "<!--EndFragment--></table></body></html>"_s,
        u"<table border=\"0\" cellpadding=\"0\" cellspacing=\"0\"><tbody><tr><td align=\"right\">1</td><td>b</td></tr></tbody></table>"_s);
    row("free word processor",
        u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\"><html><head><meta name=\"generator\" "
        "content=\"SomeOffice 7.4 (Linux)\"/><style type=\"text/css\">p { line-height: 115% }</style></head><body "
        "lang=\"de-DE\" "
        "dir=\"ltr\"><p style=\"margin-bottom: 0cm; line-height: 100%\"><font face=\"Liberation Serif\"><font "
        "size=\"3\">"
        "<b>x</b></font></font></p>\n<ul>\n\t<li><p style=\"margin-bottom: 0cm\">y</p></li>\n</ul>\n</body></html>"_s,
        u"<p><b>x</b></p>\n<ul><li>y</li></ul>"_s);
}

void OfficePasteTest::Paste()
{
    QFETCH(QString, html);
    QFETCH(QString, after);
    m_rig->SetBody(u"<p>|<br></p>"_s);
    auto *data = new QMimeData;
    data->setHtml(html);
    data->setText(u"plain"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    m_rig->Key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_rig->PlainBody(), after);
    QVERIFY(m_rig->ParsesBack());
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(m_rig->Body(), u"<p>|<br></p>"_s);
}

QTEST_MAIN(OfficePasteTest)
#include "OfficePasteTest.moc"
