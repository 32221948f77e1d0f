#include "editing/FindTools.h"
#include "support/EditorRig.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>

using namespace Qt::StringLiterals;
using Answer = MessageBoxes::Answer;

/// The dialog with real keys and clicks, on a real page and its source.
class FormReplaceTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { EditorRig::StartEngine(); }
    void init()
    {
        m_rig = std::make_unique<EditorRig>();
        m_find = std::make_unique<FindTools>(*m_rig->Edit, [] { return QStringList(); });
    }
    void cleanup()
    {
        m_find.reset();
        m_rig.reset();
    }
    void Finds_data();
    void Finds();
    void FindNextOfTheMenu();
    void ReplacesOne();
    void ReplacesAll_data();
    void ReplacesAll();
    void InTheSource();
    void FromFindToReplace();
    void StaysClearOfWhatItFound_data();
    void StaysClearOfWhatItFound();

private:
    void Open(const QString &body)
    {
        m_rig->Load(m_rig->Put(u"a.htm"_s,
                               (u"<html><head><title>t</title></head><body>"_s + body + u"</body></html>"_s).toUtf8()));
        m_rig->Surface.CaretToPageStart();
    }
    QDialog *Dialog() const { return m_rig->Window.findChild<QDialog *>(u"FormReplace"_s); }
    template <class T>
    T *Control(const QString &name) const
    {
        return Dialog()->findChild<T *>(name);
    }
    void Enter(const QString &box, const QString &text) const
    {
        Control<QLineEdit>(box)->clear();
        QTest::keyClicks(Control<QLineEdit>(box), text);
    }
    void Press(const QString &button) const
    {
        QVERIFY2(Control<QPushButton>(button)->isEnabled(), qPrintable(button));
        QTest::mouseClick(Control<QPushButton>(button), Qt::LeftButton);
    }
    void Tick(const QString &box) const { QTest::keyClick(Control<QWidget>(box), Qt::Key_Space); }
    /// Words before the selection, and the selection.
    QString Selected()
    {
        const DomTextRange range = m_rig->Surface.DOM().SelectionTextRange();
        DomTextRange before = range.duplicate();
        before.collapse();
        before.moveStart(u"character"_s, -99999);
        return before.Text() + u'[' + range.Text() + u']';
    }
    QString Body()
    {
        QString html = m_rig->Surface.DOM().body().innerHTML();
        return html.remove(u"\r\n"_s).trimmed();
    }

    std::unique_ptr<EditorRig> m_rig;
    std::unique_ptr<FindTools> m_find;
};

void FormReplaceTest::Finds_data()
{
    QTest::addColumn<QString>("boxes"); // ticked, or chosen
    QTest::addColumn<QStringList>("places");
    QTest::newRow("down") << QString()
                          << QStringList{u"[Rose]"_s, u"Rose [rose]"_s, u"Rose rose prim[rose]"_s,
                                         u"Rose rose primrose [ROSE]"_s};
    QTest::newRow("case") << u"CheckCase"_s << QStringList{u"Rose [rose]"_s, u"Rose rose prim[rose]"_s};
    QTest::newRow("words") << u"CheckWholeWords"_s
                           << QStringList{u"[Rose]"_s, u"Rose [rose]"_s, u"Rose rose primrose [ROSE]"_s};
    QTest::newRow("both: words are lost")
        << u"CheckWholeWords CheckCase"_s << QStringList{u"Rose [rose]"_s, u"Rose rose prim[rose]"_s};
}

void FormReplaceTest::Finds()
{
    QFETCH(QString, boxes);
    QFETCH(QStringList, places);
    Open(u"<p>Rose rose prim<b>rose</b> ROSE</p>"_s);
    m_find->Find();
    QVERIFY(!Control<QPushButton>(u"OKButton"_s)->isEnabled());
    QVERIFY(!Control<QWidget>(u"CheckPattern"_s)->isVisible());
    Enter(u"EditFind"_s, u"rose"_s);
    for (const QString &box : boxes.split(u' ', Qt::SkipEmptyParts))
        Tick(box);
    for (const QString &place : places) {
        QTest::keyClick(Control<QLineEdit>(u"EditFind"_s), Qt::Key_Return);
        QCOMPARE(Selected(), place);
    }
    for (int i = 0; i < 2; ++i) { // never around the end, however often
        m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s);
        QTest::keyClick(Control<QLineEdit>(u"EditFind"_s), Qt::Key_Return);
        QCOMPARE(Selected(), places.last());
    }
    Tick(u"Option1"_s);
    places.removeLast();
    while (!places.isEmpty()) {
        Press(u"OKButton"_s);
        QCOMPARE(Selected(), places.takeLast());
    }
    m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s);
    Press(u"OKButton"_s);
}

void FormReplaceTest::FindNextOfTheMenu()
{
    Open(u"<p>one two one <img src=x.gif> one</p>"_s);
    m_find->FindNext(); // nothing was looked for yet
    QCOMPARE(Selected(), u"[]"_s);
    m_find->Find();
    Enter(u"EditFind"_s, u"one"_s);
    Press(u"OKButton"_s);
    QTest::keyClick(Dialog(), Qt::Key_Escape);
    QVERIFY(!Dialog()->isVisible());
    m_find->FindNext();
    QCOMPARE(Selected(), u"one two [one]"_s);
    m_find->FindNext();
    QCOMPARE(Selected(), u"one two one   [one]"_s);
    m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s);
    m_find->FindNext();
    m_find->Replace();
    QCOMPARE(Control<QLineEdit>(u"EditFind"_s)->text(), u"one"_s);
}

void FormReplaceTest::ReplacesOne()
{
    Open(u"<p>a cat, a cat, a cat</p>"_s);
    m_find->Replace();
    Enter(u"EditFind"_s, u"cat"_s);
    Enter(u"EditReplace"_s, u"<i>cat</i>"_s);
    Press(u"Command2"_s); // finds first
    QCOMPARE(Body(), u"<P>a <I>cat</I>, a cat, a cat</P>"_s);
    QCOMPARE(Selected(), u"a cat, a [cat]"_s);
    Press(u"OKButton"_s);
    Press(u"Command2"_s);
    QCOMPARE(Body(), u"<P>a <I>cat</I>, a cat, a <I>cat</I></P>"_s);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Body(), u"<P>a <I>cat</I>, a cat, a cat</P>"_s);
}

void FormReplaceTest::ReplacesAll_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<bool>("up");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QString &body, const QString &find, const QString &replacement,
                        const QString &after, const QString &message, bool up = false) {
        QTest::newRow(name) << body << find << replacement << up << after << message;
    };
    row("words", u"<p>red, Red</p><p>bored red</p>"_s, u"red"_s, u"blue"_s, u"<P>blue, blue</P><P>boblue blue</P>"_s,
        u"4 replacements made."_s);
    row("holds the words", u"<p>aaa</p>"_s, u"a"_s, u"aa"_s, u"<P>aaaaaa</P>"_s, u"3 replacements made."_s);
    row("upwards", u"<p>aaa a</p>"_s, u"aa"_s, u"aab"_s, u"<P>aaab a</P>"_s, u"1 replacement made."_s, true);
    row("once", u"<p>a red one</p>"_s, u"red"_s, u"blue"_s, u"<P>a blue one</P>"_s, u"1 replacement made."_s);
    row("not there", u"<p>a red one</p>"_s, u"green"_s, u"blue"_s, u"<P>a red one</P>"_s, {});
    row("markup", u"<p>red red</p>"_s, u"red"_s, u"<b>x</b>"_s, u"<P><B>x</B> <B>x</B></P>"_s,
        u"2 replacements made."_s);
    row("text around markup", u"<p>red-red</p>"_s, u"red"_s, u"a<b>x</b>c"_s, u"<P>a<B>x</B>c-a<B>x</B>c</P>"_s,
        u"2 replacements made."_s);
    row("blocks", u"<p>a red b red c</p>"_s, u"red"_s, u"<hr>"_s, u"<P>a </P><HR><P> b </P><HR><P> c</P>"_s,
        u"2 replacements made."_s);
    row("across tags", u"<p>r<b>e</b>d and <b>red</b></p>"_s, u"red"_s, u"x"_s, u"<P>x and <B>x</B></P>"_s,
        u"2 replacements made."_s);
    row("nothing instead", u"<p>a red b red</p><p>red</p>"_s, u"red "_s, QString(), u"<P>a b red</P><P>red</P>"_s,
        u"1 replacement made."_s);
    row("server code", u"<p>red <?php x() ?> red</p>"_s, u"red"_s, u"<?= $y ?>z"_s,
        u"<P><?= $y ?>z <?php x() ?> <?= $y ?>z</P>"_s, u"2 replacements made."_s);
}

void FormReplaceTest::ReplacesAll()
{
    QFETCH(QString, body);
    QFETCH(QString, find);
    QFETCH(QString, replacement);
    QFETCH(bool, up);
    QFETCH(QString, message);
    Open(body);
    const QString before = Body();
    if (up) {
        DomTextRange end = m_rig->Surface.DOM().BodyTextRange();
        end.collapse(false);
        end.Select();
    }
    m_find->Replace();
    Enter(u"EditFind"_s, find);
    Enter(u"EditReplace"_s, replacement);
    if (up)
        Tick(u"Option1"_s);
    if (!message.isEmpty())
        m_rig->Boxes.Expect(Answer::Ok, message);
    Press(u"Command1"_s);
    QTEST(Body(), "after");
    if (message.isEmpty())
        return;
    QCOMPARE(m_rig->Boxes.Boxes.last().Text, message);
    m_rig->Surface.ExecCommand(DECMD_UNDO);
    QCOMPARE(Body(), before);
    QCOMPARE(m_rig->Surface.QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
}

void FormReplaceTest::InTheSource()
{
    Open(u"<p class=old>Old old_x</p>\r\n<h2>old</h2>"_s);
    m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    SourceEditor &source = m_rig->Source;
    const QString before = source.Text();
    source.Select(1, 0);
    m_find->Replace();
    QVERIFY(Control<QWidget>(u"CheckPattern"_s)->isVisible());
    Enter(u"EditFind"_s, u"<(h2)>(\\w+)"_s);
    m_rig->Boxes.Expect(Answer::Ok, u"Finished searching the document"_s); // no pattern yet
    Press(u"OKButton"_s);
    Tick(u"CheckPattern"_s);
    Press(u"OKButton"_s);
    QCOMPARE(source.Text().sliced(source.SelectionStart() - 1, source.SelectionLength()), u"<h2>old"_s);
    Enter(u"EditReplace"_s, u"<\\1 id=\\2>\\0\\\\"_s);
    Press(u"Command2"_s);
    QCOMPARE(source.Text(), QString(before).replace(u"<h2>old"_s, u"<h2 id=old><h2>old\\"_s));
    source.Undo();
    QCOMPARE(source.Text(), before);

    Enter(u"EditFind"_s, u"("_s);
    m_rig->Boxes.Expect(Answer::Ok, u"regular expression"_s);
    Press(u"Command1"_s);
    QCOMPARE(source.Text(), before);
    Tick(u"CheckPattern"_s);
    Tick(u"CheckWholeWords"_s);
    Enter(u"EditFind"_s, u"old"_s);
    Enter(u"EditReplace"_s, u"n\\1"_s);
    source.Select(1, 0);
    m_rig->Boxes.Expect(Answer::Ok, u"3 replacements made."_s);
    Press(u"Command1"_s);
    QString after = before;
    after.replace(u"old\">Old old_x"_s, u"n\\1\">n\\1 old_x"_s).replace(u"<h2>old"_s, u"<h2>n\\1"_s);
    QCOMPARE(source.Text(), after);
    source.Undo();
    QCOMPARE(source.Text(), before);
    m_rig->Edit->SelectTab(ViewTab::Normal);
    QVERIFY(!Control<QWidget>(u"CheckPattern"_s)->isVisible());
}

void FormReplaceTest::FromFindToReplace()
{
    Open(u"<p>one</p>"_s);
    m_find->Find();
    for (const QString &control : {u"LabelRep"_s, u"EditReplace"_s, u"Command1"_s})
        QVERIFY(!Control<QWidget>(control)->isVisible());
    Enter(u"EditFind"_s, u"one"_s);
    Press(u"Command2"_s);
    for (const QString &control : {u"LabelRep"_s, u"EditReplace"_s, u"Command1"_s})
        QVERIFY(Control<QWidget>(control)->isVisible());
    QCOMPARE(Body(), u"<P>one</P>"_s);
    QCOMPARE(Selected(), u"[]"_s);
    m_rig->Edit->SelectTab(ViewTab::PageProperties);
    QVERIFY(!Control<QPushButton>(u"Command2"_s)->isEnabled());
    m_rig->Edit->SelectTab(ViewTab::Normal);
    Enter(u"EditReplace"_s, u"two"_s);
    Press(u"CancelButton"_s);
    m_find->Replace();
    QCOMPARE(Control<QLineEdit>(u"EditReplace"_s)->text(), u"two"_s);
}

void FormReplaceTest::StaysClearOfWhatItFound_data()
{
    QTest::addColumn<bool>("source");
    QTest::addColumn<int>("top"); // of the word in the page
    QTest::newRow("room below") << false << 60;
    QTest::newRow("room above") << false << 540;
    QTest::newRow("source") << true << 60;
}

void FormReplaceTest::StaysClearOfWhatItFound()
{
    QFETCH(bool, source);
    QFETCH(int, top);
    Open(u"<p style=\"position:absolute; margin:0; left:300px; top:%1px\">needle</p>\n"_s.arg(top));
    if (source)
        m_rig->Edit->SelectTab(ViewTab::HtmlSource);
    QWidget &view = source ? static_cast<QWidget &>(m_rig->Source) : m_rig->Surface;
    view.setGeometry(m_rig->Window.rect());
    view.show();
    view.raise();
    m_find->Find();
    Enter(u"EditFind"_s, u"needle"_s);
    const auto found = [&] { return source ? m_rig->Source.SelectionOnScreen() : m_rig->Surface.SelectionOnScreen(); };
    QVERIFY(found().isEmpty());
    const QPoint word = view.mapToGlobal(QPoint(300, top)) + QPoint(4, 4);
    Dialog()->move(source ? view.mapToGlobal(QPoint(0, 0)) : word - QPoint(80, 60));
    Press(u"OKButton"_s);
    QVERIFY(view.rect().contains(QRect(view.mapFromGlobal(found().topLeft()), found().size())));
    QVERIFY(source || found().contains(word));
    QVERIFY(!found().isEmpty() && !Dialog()->frameGeometry().intersects(found()));
    QVERIFY(Dialog()->screen()->availableGeometry().contains(Dialog()->geometry()));
}

QTEST_MAIN(FormReplaceTest)
#include "FormReplaceTest.moc"
