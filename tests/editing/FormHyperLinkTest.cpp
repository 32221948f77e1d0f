#include "editing/FormHyperLink.h"
#include "platform/PreviewView.h"
#include "support/EditorRig.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

using namespace Qt::StringLiterals;

/// The dialog for links on real pages: what they show, and what the page is after OK. In the bodies "["
/// and "]" stand around the selection and "|" is the caret.
class FormHyperLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_rig.reset(); }
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support )"_s)); }
    void cleanup();
    void links_data();
    void links();
    void nothingSelected_data();
    void nothingSelected();
    void cancelLeavesThePage();
    void removesLinks_data();
    void removesLinks();
    void navigationStyleIsOneStep_data();
    void navigationStyleIsOneStep();
    void pageWithoutAName();
    void listsFiles();
    void firstArrowKeyChoosesTheFirstRow();
    void bookmarksOfTheChosenPage();
    void previewShowsTheTarget();

private:
    template <class T>
    T *Find(QDialog &form, const QString &name)
    {
        return form.findChild<T *>(name);
    }
    void Click(QDialog &form, const QString &button) { Find<QAbstractButton>(form, button)->click(); }
    void Open(const QString &body);
    QString Body();
    QString Shown(FormHyperLink &form);
    int Row(FormHyperLink &form, const QString &name);
    void Change(FormHyperLink &form, const QString &changes);

    std::unique_ptr<EditorRig> m_rig;
    QString m_page; ///< the file
};

void FormHyperLinkTest::initTestCase()
{
    EditorRig::StartEngine();
    m_rig = std::make_unique<EditorRig>();
    m_rig->Put(u"b.htm"_s, "<title>Second &amp; last</title><a name=top></a><a\nname=\"end\">");
    m_rig->Put(u"über uns.htm"_s, "no title");
    m_rig->Put(u"c.pdf"_s, "<title>no page</title>");
    m_rig->Put(u"d.php"_s, "<title>d</title>");
    m_rig->Put(u"a_inklm_temp.htm"_s, "copy");
}

void FormHyperLinkTest::cleanup()
{
    m_rig->Boxes.Verify();
    m_rig->Boxes.Boxes.clear();
    m_rig->Surface.MarkClean();
    m_rig->Page.HtmlDirty = false;
}

void FormHyperLinkTest::Open(const QString &body)
{
    m_page = m_rig->OpenMarked(u"<html><head><title>t</title></head>\n<body>"_s + body + u"</body></html>\n"_s);
}

QString FormHyperLinkTest::Body()
{
    const QString html = m_rig->Surface.DocumentHTML();
    const qsizetype start = html.indexOf("<BODY>"_L1) + 6;
    return html.sliced(start, html.indexOf("</BODY>"_L1, start, Qt::CaseInsensitive) - start);
}

/// "local b.htm #top >_blank white remove"
QString FormHyperLinkTest::Shown(FormHyperLink &form)
{
    QStringList shown;
    const QModelIndexList rows = Find<QTreeView>(form, u"ListTopics"_s)->selectionModel()->selectedRows(1);
    if (Find<QRadioButton>(form, u"Option1"_s)->isChecked())
        shown = {u"local"_s, rows.isEmpty() ? u"-"_s : QFileInfo(rows.first().data().toString()).fileName()};
    else
        shown = {u"external"_s, Find<QLineEdit>(form, u"EditExtURL"_s)->text()};
    const QString bookmark = Find<QComboBox>(form, u"ComboBookmark"_s)->currentText();
    const QString target = Find<QComboBox>(form, u"ComboTarget"_s)->currentText();
    if (!bookmark.isEmpty())
        shown += u'#' + bookmark;
    if (!target.isEmpty())
        shown += u'>' + target;
    if (Find<QCheckBox>(form, u"ChkNavWhite"_s)->isChecked())
        shown += u"white"_s;
    if (Find<QCheckBox>(form, u"ChkNavBlack"_s)->isChecked())
        shown += u"black"_s;
    if (Find<QPushButton>(form, u"CommandRemoveLink"_s)->isEnabled())
        shown += u"remove"_s;
    return shown.join(u' ');
}

int FormHyperLinkTest::Row(FormHyperLink &form, const QString &name)
{
    const QAbstractItemModel *files = Find<QTreeView>(form, u"ListTopics"_s)->model();
    for (int row = 0; row < files->rowCount(); ++row)
        if (files->index(row, 1).data().toString() == m_rig->Path(name))
            return row;
    return -1;
}

void FormHyperLinkTest::Change(FormHyperLink &form, const QString &changes)
{
    for (const QString &change : changes.split(u';', Qt::SkipEmptyParts)) {
        const QString what = change.section(u'=', 0, 0);
        const QString value = change.section(u'=', 1);
        auto *files = Find<QTreeView>(form, u"ListTopics"_s);
        auto *url = Find<QLineEdit>(form, u"EditExtURL"_s);
        if (what == u"row"_s) {
            files->setCurrentIndex(files->model()->index(Row(form, value), 0));
        } else if (what == u"url"_s) {
            url->selectAll();
            QTest::keyClick(url, Qt::Key_Delete);
            url->insert(value);
        } else if (what == u"bookmark"_s) {
            Find<QComboBox>(form, u"ComboBookmark"_s)->setEditText(value);
        } else if (what == u"target"_s) {
            Find<QComboBox>(form, u"ComboTarget"_s)->setEditText(value);
        } else {
            Click(form, what);
        }
    }
}

void FormHyperLinkTest::links_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, const QString &shown, const QString &change,
                        const QString &after) { QTest::newRow(name) << before << shown << change << after; };
    row("new", u"<p>a [b] c</p>"_s, u"local -"_s, u"row=b.htm"_s, u"<P>a <A href=b.htm>b</A> c</P>"_s);
    row("nothing chosen", u"<p>a [b] c</p>"_s, u"local -"_s, u""_s, u"<P>a b c</P>"_s);
    row("trailing blank stays outside", u"<p>a [b ]c</p>"_s, u"local -"_s, u"row=b.htm"_s,
        u"<P>a <A href=b.htm>b</A> c</P>"_s);
    row("blank and umlaut", u"<p>[b]</p>"_s, u"local -"_s, u"row=über uns.htm;bookmark=top"_s,
        u"<P><A href=%C3%BCber%20uns.htm#top>b</A></P>"_s);
    row("new with target", u"<p>[b]</p>"_s, u"local -"_s, u"url=http://x.org/?a=1&b;target=_blank"_s,
        u"<P><A href=\"http://x.org/?a=1&amp;b\" target=_blank>b</A></P>"_s);
    row("across formats", u"<p>a [b <b>c</b> <i>d]e</i></p>"_s, u"local -"_s, u"row=b.htm"_s,
        u"<P>a <A href=b.htm>b <B>c</B></A> <I><A href=b.htm>d</A>e</I></P>"_s);
    row("this page", u"<p>[b]</p>"_s, u"local -"_s, u"row=a.htm;bookmark=x"_s, u"<P><A href=#x>b</A></P>"_s);
    row("picture", u"<p>a[<img src=\"i.gif\">]b</p>"_s, u"local -"_s, u"row=b.htm;target=_top"_s,
        u"<P>a<A href=b.htm target=_top><IMG src=i.gif></A>b</P>"_s);
    row("words and a picture", u"<p>[a <img src=\"i.gif\">]b</p>"_s, u"local -"_s, u"row=b.htm"_s,
        u"<P><A href=b.htm>a <IMG src=i.gif></A>b</P>"_s);
    row("anchor becomes a link", u"<p><a name=k>[b]</a></p>"_s, u"local -"_s, u"row=b.htm"_s,
        u"<P><A name=k href=b.htm>b</A></P>"_s);

    row("odd order, unchanged", u"<p><a TARGET=side CLASS='x y' HREF='B.HTM#end' id=k>a[b]c</a></p>"_s,
        u"local b.htm #end >side remove"_s, u""_s,
        u"<P><A target=side class=\"x y\" href=B.HTM#end id=k>abc</A></P>"_s);
    row("long way round, unchanged", u"<p><a href=\"./../%2E/b.htm\">a[b]c</a></p>"_s,
        u"external ./.././b.htm remove"_s, u""_s, u"<P><A href=./../%2E/b.htm>abc</A></P>"_s);
    row("encoded", u"<p><a href=\"%c3%bcber%20uns.htm\">a|c</a></p>"_s, u"local über uns.htm remove"_s, u"bookmark=x"_s,
        u"<P><A href=%C3%BCber%20uns.htm#x>ac</A></P>"_s);
    row("new address for the caret's link", u"<p><a href=\"http://x.org/a%20b#k\"><b>a|c</b></a></p>"_s,
        u"external http://x.org/a b #k remove"_s, u"row=c.pdf;bookmark="_s, u"<P><A href=c.pdf><B>ac</B></A></P>"_s);
    row("caret at the link's end", u"<p><a href=b.htm>ac|</a></p>"_s, u"local b.htm remove"_s, u"target=_self"_s,
        u"<P><A href=b.htm target=_self>ac</A></P>"_s);
    row("caret before the link", u"<p>x|<a href=b.htm>ac</a></p>"_s, u"local b.htm remove"_s, u"row=c.pdf"_s,
        u"<P>x<A href=c.pdf>ac</A></P>"_s);
    row("target removed, class stays", u"<p><a class=c href=b.htm target=_blank>a[b]</a></p>"_s,
        u"local b.htm >_blank remove"_s, u"target="_s, u"<P><A class=c href=b.htm>ab</A></P>"_s);
    row("bookmark of this page", u"<p><a href=\"#k\">a[b]</a></p>"_s, u"local a.htm #k remove"_s, u"target=x y"_s,
        u"<P><A href=#k target=\"x y\">ab</A></P>"_s);
    row("around a picture", u"<p>x<a href=b.htm>[<img src=\"i.gif\">]</a></p>"_s, u"local b.htm remove"_s,
        u"url=mailto:a@b.c?subject=x y"_s, u"<P>x<A href=\"mailto:a@b.c?subject=x%20y\"><IMG src=i.gif></A></P>"_s);
    row("more than the link", u"<p>[<a href=b.htm target=t>a</a> b] c</p>"_s, u"local b.htm >t remove"_s,
        u"row=c.pdf"_s, u"<P><A href=c.pdf target=t>a b</A> c</P>"_s);
    row("type that is not listed", u"<p><a href=d.php>a[b]</a></p>"_s, u"external d.php remove"_s,
        u"CheckShowAllTypes;row=d.php;bookmark=k"_s, u"<P><A href=d.php#k>ab</A></P>"_s);
    row("target in front removed", u"<p><A target=side CLASS='x' HREF='b.htm' id=k>a[b]c</A></p>"_s,
        u"local b.htm >side remove"_s, u"target="_s, u"<P><A class=x href=b.htm id=k>abc</A></P>"_s);
    row("bare and in capitals, unchanged", u"<P><A TARGET=_TOP HREF=B.HTM TITLE=\"a > 'b'\">a[b]c</A></P>"_s,
        u"local b.htm >_TOP remove"_s, u""_s, u"<P><A target=_TOP href=B.HTM title=\"a &gt; 'b'\">abc</A></P>"_s);
    row("formats in the link", u"<li><a href=b.htm>a<b>b<i>[c]</i></b></a></li>"_s, u"local b.htm remove"_s,
        u"bookmark=end"_s, u"<LI><A href=b.htm#end>a<B>b<I>c</I></B></A></LI>"_s);
    row("link in formats of a cell", u"<table><tr><td><b>x<a href=b.htm>[a]</a></b></table>"_s, u"local b.htm remove"_s,
        u"target=_top"_s, u"<TABLE><TBODY><TR><TD><B>x<A href=b.htm target=_top>a</A></B></TD></TR></TBODY></TABLE>"_s);
    row("linked picture, unchanged", u"<h2><a href=b.htm><B>[<IMG SRC='i.gif' ALT=\"a>b\">]</B></a></h2>"_s,
        u"local b.htm remove"_s, u""_s, u"<H2><A href=b.htm><B><IMG src=i.gif alt=\"a&gt;b\"></B></A></H2>"_s);
    row("server code around", u"<p><a <?=$a?> href=\"b.htm\" title='<?=\">\"?>'>a[b]</a></p>"_s,
        u"local b.htm remove"_s, u"target=_top"_s,
        u"<P><A <?=$a?> href=b.htm title=\"<?=\">\"?>\" target=_top>ab</A></P>"_s);
    row("server code as the address", u"<p><a href=\"<?=$u?>\">a[b]</a></p>"_s, u"external <?=$u?> remove"_s,
        u"url=<?=$u?>?x=1#y;target=_top"_s, u"<P><A href=\"<?=$u?>?x=1#y\" target=_top>ab</A></P>"_s);
    row("script", u"<p><a href=\"javascript:f('a b\\n')\">a[b]</a></p>"_s, u"external javascript:f('a b\\n') remove"_s,
        u"target=_top"_s, u"<P><A href=\"javascript:f('a b\\n')\" target=_top>ab</A></P>"_s);
}

void FormHyperLinkTest::links()
{
    QFETCH(QString, before);
    QFETCH(QString, change);
    Open(before);
    const QString untouched = Body();
    FormHyperLink form(*m_rig->Edit);
    QVERIFY(form.HasSomethingToLink());
    QTEST(Shown(form), "shown");
    Change(form, change);
    Click(form, u"OkCmd"_s);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QTEST(Body(), "after");
    const bool changed = Body() != untouched;
    QCOMPARE(m_rig->Edit->HasUnsavedChanges(), changed);
    QCOMPARE(m_rig->UndoAll(), changed ? 1 : 0);
    QCOMPARE(Body(), untouched);
    QCOMPARE(m_rig->SavedAsWritten(), m_page.toUtf8());
}

void FormHyperLinkTest::nothingSelected_data()
{
    QTest::addColumn<QString>("body");
    QTest::newRow("caret") << u"<p>a|b</p>"_s;
    QTest::newRow("only a blank") << u"<p>a[ ]b</p>"_s;
    QTest::newRow("in an anchor that is no link") << u"<p><a name=k>a|b</a></p>"_s;
}

void FormHyperLinkTest::nothingSelected()
{
    QFETCH(QString, body);
    Open(body);
    m_rig->Boxes.Expect(MessageBoxes::Answer::Ok);
    OpenHyperlink(*m_rig->Edit);
    QCOMPARE(m_rig->Boxes.Boxes.value(0).Text, u"You must select some text to make into a link"_s);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
}

void FormHyperLinkTest::cancelLeavesThePage()
{
    Open(u"<p>[b ]c</p>"_s);
    const QString before = Body();
    bool opened = false;
    QTimer look; // opening waits for the page meanwhile
    connect(&look, &QTimer::timeout, this, [&] {
        auto *form = qobject_cast<FormHyperLink *>(QApplication::activeModalWidget());
        if (!form)
            return;
        opened = true;
        Change(*form, u"row=b.htm;target=_top;ChkNavWhite"_s);
        QTest::keyClick(form, Qt::Key_Escape);
    });
    look.start(10);
    OpenHyperlink(*m_rig->Edit);
    QVERIFY(opened);
    QCOMPARE(Body(), before);
    QVERIFY(!m_rig->Edit->HasUnsavedChanges());
    QCOMPARE(m_rig->Window.focusWidget(), m_rig->Surface.InputWidget());
}

void FormHyperLinkTest::removesLinks_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("caret") << u"<p>x <a href=b.htm><i>a|b</i></a></p>"_s << u"<P>x <I>ab</I></P>"_s;
    QTest::newRow("caret before") << u"<p>x|<a href=b.htm>ab</a></p>"_s << u"<P>xab</P>"_s;
    QTest::newRow("picture") << u"<p>x<a href=b.htm>[<img src=\"i.gif\">]</a></p>"_s << u"<P>x<IMG src=i.gif></P>"_s;
    QTest::newRow("named") << u"<p><a href=b.htm name=k>[ab]</a></p>"_s << u"<P><A name=k>ab</A></P>"_s;
}

void FormHyperLinkTest::removesLinks()
{
    QFETCH(QString, before);
    Open(before);
    const QString untouched = Body();
    FormHyperLink form(*m_rig->Edit);
    Click(form, u"CommandRemoveLink"_s);
    QTEST(Body(), "after");
    QCOMPARE(m_rig->UndoAll(), 1);
    QCOMPARE(Body(), untouched);
    QCOMPARE(m_rig->SavedAsWritten(), m_page.toUtf8());
}

void FormHyperLinkTest::navigationStyleIsOneStep_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("clicks");
    QTest::addColumn<bool>("wanted"); // by the settings
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("block");
    const QString black = u"<P><A href=b.htm class=navblack>b</A></P>"_s;
    QTest::newRow("new") << u"<p>[b]</p>"_s << u"row=b.htm;ChkNavWhite;ChkNavBlack"_s << true
                         << u"<P><A href=b.htm class=navblack>b</A></P>"_s << true;
    QTest::newRow("no styles wanted") << u"<p>[b]</p>"_s << u"row=b.htm;ChkNavBlack"_s << false << black << false;
    QTest::newRow("other colour") << u"<p><a href=b.htm class=navblack>[b]</a></p>"_s << u"ChkNavWhite"_s << true
                                  << u"<P><A href=b.htm class=navwhite>b</A></P>"_s << true;
    QTest::newRow("none any more") << u"<p><a href=b.htm class=navblack>[b]</a></p>"_s << u"ChkNavBlack"_s << true
                                   << u"<P><A href=b.htm>b</A></P>"_s << false;
    QTest::newRow("unchanged") << u"<p><a href=b.htm class=navblack>[b]</a></p>"_s << u""_s << true << black << false;
}

void FormHyperLinkTest::navigationStyleIsOneStep()
{
    QFETCH(QString, body);
    QFETCH(QString, clicks);
    QFETCH(bool, wanted);
    Open(body);
    const QString before = m_rig->Surface.DocumentHTML();
    m_rig->App.AutoLinkStyles = wanted;
    FormHyperLink form(*m_rig->Edit);
    Change(form, clicks);
    Click(form, u"OkCmd"_s);
    QTEST(Body(), "after");
    QTEST(m_rig->Surface.DocumentHTML().contains(u"a.navwhite:hover"_s), "block");
    QCOMPARE(m_rig->Edit->HasUnsavedChanges(), !clicks.isEmpty());
    QCOMPARE(m_rig->UndoAll(), clicks.isEmpty() ? 0 : 1);
    QCOMPARE(m_rig->Surface.DocumentHTML(), before);
}

void FormHyperLinkTest::pageWithoutAName()
{
    m_rig->Page.CurrentFilePath.clear();
    m_rig->Surface.LoadText(u"<html><body><p>word</p></body></html>"_s, {});
    QVERIFY(m_rig->Surface.WaitWhileBusy());
    QVERIFY(m_rig->Surface.SelectText(u"word"_s));
    FormHyperLink form(*m_rig->Edit);
    Change(form, u"row=über uns.htm"_s);
    Click(form, u"OkCmd"_s);
    const QString address = QUrl::fromLocalFile(m_rig->Path(u"über uns.htm"_s)).toString(QUrl::FullyEncoded);
    QCOMPARE(Body(), u"<P><A href=\"%1\">word</A></P>"_s.arg(address));
}

void FormHyperLinkTest::listsFiles()
{
    Open(u"<p>[b]</p>"_s);
    FormHyperLink form(*m_rig->Edit);
    const QAbstractItemModel *files = Find<QTreeView>(form, u"ListTopics"_s)->model();
    const auto titles = [files] {
        QStringList rows;
        for (int row = 0; row < files->rowCount(); ++row)
            rows.append(files->index(row, 0).data().toString());
        return rows.join(u'|');
    };
    QCOMPARE(titles(), u"t|Second & last|c.pdf|über uns.htm"_s);
    Change(form, u"row=c.pdf;CheckShowAllTypes"_s);
    QCOMPARE(titles(), u"t|Second & last|c.pdf|d|über uns.htm"_s); // not the editor's copies
    QCOMPARE(Shown(form), u"local c.pdf"_s);
}

void FormHyperLinkTest::firstArrowKeyChoosesTheFirstRow()
{
    Open(u"<p>[b]</p>"_s);
    FormHyperLink form(*m_rig->Edit);
    form.show();
    auto *files = Find<QTreeView>(form, u"ListTopics"_s);
    QTRY_VERIFY(files->hasFocus());
    QCOMPARE(Shown(form), u"local -"_s);
    for (const QString &shown : {u"local a.htm"_s, u"local b.htm"_s}) {
        QTest::keyClick(files, Qt::Key_Down);
        QCOMPARE(Shown(form), shown);
    }
}

void FormHyperLinkTest::bookmarksOfTheChosenPage()
{
    Open(u"<p><a name=here></a>[b]<a name=\"a &amp; b\">x</a></p>"_s);
    FormHyperLink form(*m_rig->Edit);
    form.show();
    auto *box = Find<QComboBox>(form, u"ComboBookmark"_s);
    const auto dropped = [&](const QString &row) {
        Change(form, row + u";bookmark=typed"_s);
        box->showPopup();
        box->hidePopup();
        QStringList names;
        for (int i = 0; i < box->count(); ++i)
            names.append(box->itemText(i));
        return names.join(u'|');
    };
    QCOMPARE(dropped(u"row=b.htm"_s), u"top|end"_s);
    QCOMPARE(box->currentText(), u"typed"_s);
    QCOMPARE(dropped(u"row=c.pdf"_s), QString());
    QCOMPARE(dropped(u"row=a.htm"_s), u"here|a & b"_s);
}

void FormHyperLinkTest::previewShowsTheTarget()
{
    Open(u"<p>[b]</p>"_s);
    FormHyperLink form(*m_rig->Edit);
    form.show();
    auto *preview = Find<PreviewView>(form, u"WebBrowser1"_s);
    auto *tabs = Find<QTabWidget>(form, u"TabStrip1"_s);
    QSignalSpy loaded(preview, &PreviewView::Loaded);
    Change(form, u"row=über uns.htm"_s);
    tabs->setCurrentIndex(1);
    QTRY_COMPARE(loaded.size(), 1);
    QCOMPARE(preview->Url().toLocalFile(), m_rig->Path(u"über uns.htm"_s));
    tabs->setCurrentIndex(0);
    QVERIFY(preview->Url().isEmpty());
    Change(form, u"url=b.htm;bookmark=end"_s);
    tabs->setCurrentIndex(1);
    QTRY_COMPARE(loaded.size(), 2);
    QCOMPARE(preview->Url(), QUrl(QUrl::fromLocalFile(m_rig->Path(u"b.htm"_s)).toString() + u"#end"_s));
    for (const QString &address : {u"javascript:alert(1)"_s, u"mailto:a@b.c"_s, u"http://"_s, u"gone.htm"_s}) {
        tabs->setCurrentIndex(0);
        Change(form, u"url="_s + address);
        tabs->setCurrentIndex(1);
        QVERIFY2(preview->Url().isEmpty(), qPrintable(address));
    }
}

QTEST_MAIN(FormHyperLinkTest)
#include "FormHyperLinkTest.moc"
