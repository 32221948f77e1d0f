#include "platform/SourceEditor.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMainWindow>
#include <Qsci/qsciscintilla.h>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Sci = QsciScintilla;

namespace {

Sci *ControlOf(const QWidget &editor)
{
    return editor.findChild<Sci *>();
}

QString Selected(const QWidget &editor)
{
    const Sci *control = ControlOf(editor);
    QByteArray text(control->SendScintilla(Sci::SCI_GETSELTEXT), 0); // the answer counts the NUL behind it
    control->SendScintilla(Sci::SCI_GETSELTEXT, text.data());
    return QString::fromUtf8(text.constData());
}

QString BigPage()
{
    const QString line = u"<p class=\"x\">Ein größerer Text 😀 steht hier</p>\r\n"_s;
    return line.repeated(5 * 1024 * 1024 / line.size());
}

const QString mixedPage = u"<html>\r\n<head>\n<style>\nbody { color: red }\n</style>\r"
                          "<script>var a = \"s\"; // note\n</script></head>\r\n"
                          "<body><?php echo 'x'; $y = 1; ?>\n<p class=\"k\">Grüße &amp; 😀</p>\r\n</body></html>\n\n"_s;

} // namespace

class SourceEditorTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        // Showing a window without a screen warns of that alone.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }
    void Text_ComesBackExactly_data();
    void Text_ComesBackExactly();
    void BigPage_IsSetQuickly();
    void Modified_FollowsTypingAndUndo();
    void SetText_IsNoEdit();
    void Typing_EndsLinesAsTheTextDoes_data();
    void Typing_EndsLinesAsTheTextDoes();
    void Typing_IndentsAsTheTextDoes();
    void Positions_AreUtf16Units_data();
    void Positions_AreUtf16Units();
    void Select_ScrollsAndOpensFolds();
    void Shortcuts_BelongToTheWindow_data();
    void Shortcuts_BelongToTheWindow();
    void EditingKeys_BelongToTheEditor();
    void Clipboard_AndReadOnly();
    void LineNumbers_HaveRoom();
};

void SourceEditorTest::Text_ComesBackExactly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto same = [](const char *name, const QString &text) { QTest::newRow(name) << text << text; };
    same("empty", u""_s);
    same("LF", u"a\nb\n"_s);
    same("CR LF, no end", u"a\r\nb"_s);
    same("CR", u"a\rb\r\r"_s);
    same("mixed, accents, emoji, PHP", mixedPage);
    same("LF before CR", u"a\n\rb"_s);
    same("byte order mark inside, odd spaces", u"a\uFEFFb\u2028c\u0085d\t \u00A0"_s);
    QTest::newRow("NUL") << u"a"_s + QChar::Null + u"b\r\n"_s + QChar::Null << u"a\uFFFDb\r\n\uFFFD"_s;
    QTest::newRow("lone surrogates") << u"x"_s + QChar(0xD83D) + u"y😀"_s + QChar(0xDE00) << u"x\uFFFDy😀\uFFFD"_s;
    same("5 MB", BigPage());
}

void SourceEditorTest::Text_ComesBackExactly()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    SourceEditor editor;
    editor.SetText(u"something before"_s);
    editor.SetText(text);
    QVERIFY(editor.Text() == expected); // QCOMPARE would print 5 MB
}

void SourceEditorTest::BigPage_IsSetQuickly()
{
    const QString text = BigPage();
    SourceEditor editor;
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QElapsedTimer timer;
    timer.start();
    editor.SetText(text);
    // Measured 40 ms; the bound leaves room for a busy machine and still catches anything that is not linear.
    QVERIFY2(timer.elapsed() < 600, qPrintable(QString::number(timer.elapsed())));
    timer.start();
    editor.Select(text.size() - 100, 50);
    QCOMPARE(editor.CaretPosition(), text.size() - 50);
    QVERIFY2(timer.elapsed() < 600, qPrintable(QString::number(timer.elapsed())));
}

void SourceEditorTest::Modified_FollowsTypingAndUndo()
{
    SourceEditor editor;
    QSignalSpy changes(&editor, &SourceEditor::ModifiedChanged);
    QSignalSpy edits(&editor, &SourceEditor::TextEdited);
    editor.SetText(u"<p>"_s);
    QVERIFY(!editor.IsModified() && !editor.CanUndo());

    editor.Select(4, 0);
    QTest::keyClicks(ControlOf(editor), u"one"_s);
    QCOMPARE(editor.Text(), u"<p>one"_s);
    QCOMPARE(edits.count(), 3);
    QVERIFY(editor.IsModified());
    while (editor.CanUndo())
        editor.Undo();
    QVERIFY(!editor.IsModified() && editor.CanRedo());
    QCOMPARE(editor.Text(), u"<p>"_s);

    editor.Redo();
    QVERIFY(editor.IsModified());
    editor.ResetModified();
    QVERIFY(!editor.IsModified());
    editor.Undo();
    QVERIFY(editor.IsModified()); // back before the reset is a change too

    QCOMPARE(changes.count(), 5);
    for (int i = 0; i < changes.count(); ++i)
        QCOMPARE(changes[i][0].toBool(), i % 2 == 0);
    editor.SetText(u"<p>"_s);
    QCOMPARE(changes.count(), 6);
    QCOMPARE(changes.last()[0].toBool(), false);
}

void SourceEditorTest::SetText_IsNoEdit()
{
    SourceEditor editor;
    editor.SetText(u"first\nsecond"_s);
    QTest::keyClicks(ControlOf(editor), u"x"_s);
    QSignalSpy edits(&editor, &SourceEditor::TextEdited);
    editor.SetText(u"third"_s);
    QCOMPARE(edits.count(), 0);
    QVERIFY(!editor.IsModified() && !editor.CanUndo() && !editor.CanRedo());
    QCOMPARE(editor.CaretPosition(), 1);
    QTest::keyClick(ControlOf(editor), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(editor.Text(), u"third"_s);
}

void SourceEditorTest::Typing_EndsLinesAsTheTextDoes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("end");
    QTest::newRow("LF") << u"a\nb"_s << u"\n"_s;
    QTest::newRow("CR LF") << u"a\r\nb"_s << u"\r\n"_s;
    QTest::newRow("CR") << u"a\rb"_s << u"\r"_s;
    QTest::newRow("mostly CR LF") << u"a\r\nb\nc\r\nd"_s << u"\r\n"_s;
    QTest::newRow("none") << u"a"_s << u"\n"_s;
}

void SourceEditorTest::Typing_EndsLinesAsTheTextDoes()
{
    QFETCH(QString, text);
    QFETCH(QString, end);
    SourceEditor editor;
    editor.SetText(u"other\r\nends\r\n"_s);
    editor.SetText(text);
    QTest::keyClicks(ControlOf(editor), u"x"_s);
    QTest::keyClick(ControlOf(editor), Qt::Key_Return);
    QTest::keyClicks(ControlOf(editor), u"y"_s);
    QCOMPARE(editor.Text(), u"x"_s + end + u"y"_s + text);

    QGuiApplication::clipboard()->setText(u"1\n2"_s);
    editor.SetText(text);
    editor.Paste();
    QCOMPARE(editor.Text(), u"1"_s + end + u"2"_s + text);
}

void SourceEditorTest::Typing_IndentsAsTheTextDoes()
{
    for (const QString &indent : {u"\t"_s, u"    "_s}) {
        SourceEditor editor;
        editor.SetText(u"<ul>\n"_s + indent + u"<li>\n</ul>"_s);
        editor.Select(6 + indent.size() + 4, 0);
        QTest::keyClick(ControlOf(editor), Qt::Key_Return);
        QTest::keyClicks(ControlOf(editor), u"y"_s);
        QTest::keyClick(ControlOf(editor), Qt::Key_Return);
        QTest::keyClick(ControlOf(editor), Qt::Key_Tab);
        QCOMPARE(editor.Text(), u"<ul>\n%1<li>\n%1y\n%1%1\n</ul>"_s.arg(indent));
    }
}

void SourceEditorTest::Positions_AreUtf16Units_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("position");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<qsizetype>("caret");
    const QString text = u"é\r\n😀x\r\n€end"_s; // é 1, CR LF 2-3, emoji 4-5, x 6, CR LF 7-8, € 9, end 10-12
    const auto row = [&](const char *name, qsizetype position, qsizetype length, const char16_t *selected,
                         qsizetype caret) {
        QTest::newRow(name) << text << position << length << QString::fromUtf16(selected) << caret;
    };
    row("start", 1, 0, u"", 1);
    row("two bytes", 1, 1, u"é", 2);
    row("line end", 2, 2, u"\r\n", 4);
    row("pair", 4, 2, u"😀", 6);
    row("behind pair", 6, 1, u"x", 7);
    row("over all", 3, 8, u"\n😀x\r\n€e", 11);
    row("inside a pair", 5, 2, u"😀x", 7);
    row("ends inside a pair", 3, 2, u"\n", 4);
    row("before the text", -5, 1, u"é", 2);
    row("behind the text", 99, 5, u"", 13);
    row("longer than the text", 10, std::numeric_limits<qsizetype>::max(), u"end", 13);
    row("negative length", 6, -3, u"", 6);
    QTest::newRow("empty text") << u""_s << qsizetype{3} << qsizetype{2} << u""_s << qsizetype{1};
}

void SourceEditorTest::Positions_AreUtf16Units()
{
    QFETCH(QString, text);
    QFETCH(qsizetype, position);
    QFETCH(qsizetype, length);
    QFETCH(QString, selected);
    QFETCH(qsizetype, caret);
    SourceEditor editor;
    editor.SetText(text);
    editor.Select(position, length);
    QCOMPARE(Selected(editor), selected);
    QCOMPARE(editor.CaretPosition(), caret);
}

void SourceEditorTest::Select_ScrollsAndOpensFolds()
{
    const QString text = u"<div>\n<p>text</p>\n</div>\n"_s.repeated(500);
    SourceEditor editor;
    editor.SetText(text);
    const qsizetype far = text.lastIndexOf(u"text") + 1;
    editor.Select(far, 4); // not shown yet: must be scrolled to all the same
    editor.resize(400, 300);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    Sci *control = ControlOf(editor);
    const auto inSight = [&] {
        const long caret = control->SendScintilla(Sci::SCI_GETCURRENTPOS);
        const long y = control->SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, caret);
        const long line = control->SendScintilla(Sci::SCI_LINEFROMPOSITION, caret);
        return control->SendScintilla(Sci::SCI_GETLINEVISIBLE, line) && y >= 0 &&
               y + control->textHeight(0) <= control->viewport()->height();
    };
    QTRY_VERIFY(inSight());

    control->clearFolds();
    control->SendScintilla(Sci::SCI_COLOURISE, 0UL, -1L);
    control->foldAll(true);
    editor.Select(1, 0);
    control->foldAll(true);
    const qsizetype middle = text.indexOf(u"text", text.size() / 2) + 1;
    editor.Select(middle, 4);
    QTRY_VERIFY(inSight());
    QCOMPARE(Selected(editor), u"text"_s);
}

void SourceEditorTest::Shortcuts_BelongToTheWindow_data()
{
    QTest::addColumn<QKeySequence>("keys");
    const QString editing = u"ACVXYZ"_s;
    for (char16_t key = u'A'; key <= u'Z'; ++key) {
        if (!editing.contains(key))
            QTest::addRow("Ctrl+%c", key) << QKeySequence(u"Ctrl+"_s + key);
        if (key != u'Z')
            QTest::addRow("Ctrl+Shift+%c", key) << QKeySequence(u"Ctrl+Shift+"_s + key);
    }
    for (const char *keys : {"F1", "F5", "F7", "F12", "Alt+Home", "Alt+Left", "Ctrl+F4", "Ctrl+Return", "Ctrl+/",
                             "Ctrl+\\", "Ctrl+[", "Ctrl+]", "Ctrl+1", "Ctrl+PgDown", "Esc"})
        QTest::newRow(keys) << QKeySequence(QString::fromLatin1(keys));
}

void SourceEditorTest::Shortcuts_BelongToTheWindow()
{
    QFETCH(QKeySequence, keys);
    QMainWindow window;
    auto *editor = new SourceEditor(&window);
    window.setCentralWidget(editor);
    QAction action;
    action.setShortcut(keys);
    window.addAction(&action);
    QSignalSpy triggered(&action, &QAction::triggered);
    window.show();
    window.activateWindow();
    editor->SetText(u"<p>one</p>\n<p>two</p>\n"_s);
    editor->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(ControlOf(*editor)->hasFocus());

    const QKeyCombination key = keys[0];
    QTest::keyClick(ControlOf(*editor), key.key(), key.keyboardModifiers());
    QCOMPARE(triggered.count(), 1);
    QVERIFY(!editor->IsModified());
}

void SourceEditorTest::EditingKeys_BelongToTheEditor()
{
    QMainWindow window;
    auto *editor = new SourceEditor(&window);
    window.setCentralWidget(editor);
    QAction remove;
    remove.setShortcut(QKeySequence::Delete); // a menu's Delete is for the design view
    window.addAction(&remove);
    QSignalSpy triggered(&remove, &QAction::triggered);
    window.show();
    window.activateWindow();
    editor->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    Sci *control = ControlOf(*editor);

    editor->SetText(u"abc def\n"_s);
    QTest::keyClick(control, Qt::Key_Delete);
    QCOMPARE(editor->Text(), u"bc def\n"_s);
    QCOMPARE(triggered.count(), 0);
    QTest::keyClick(control, Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(Selected(*editor), u"bc "_s);
    QTest::keyClick(control, Qt::Key_X, Qt::ControlModifier);
    QTest::keyClick(control, Qt::Key_End);
    QTest::keyClick(control, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(editor->Text(), u"defbc \n"_s);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(control, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(editor->Text(), u"abc def\n"_s);
    QTest::keyClick(control, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(control, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(editor->Text(), u"def\n"_s);
    QTest::keyClick(control, Qt::Key_Tab);
    QCOMPARE(editor->Text(), u"\tdef\n"_s);
}

void SourceEditorTest::Clipboard_AndReadOnly()
{
    SourceEditor editor;
    editor.SetText(u"Grüße 😀\r\n"_s);
    editor.SelectAll();
    editor.Copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"Grüße 😀\r\n"_s);
    editor.Cut();
    QCOMPARE(editor.Text(), u""_s);
    editor.Paste();
    QCOMPARE(editor.Text(), u"Grüße 😀\r\n"_s);

    editor.SetReadOnly(true);
    QTest::keyClicks(ControlOf(editor), u"x"_s);
    QCOMPARE(editor.Text(), u"Grüße 😀\r\n"_s);
    editor.SetText(u"still"_s); // the program may
    QCOMPARE(editor.Text(), u"still"_s);
}

void SourceEditorTest::LineNumbers_HaveRoom()
{
    SourceEditor editor;
    const Sci *control = ControlOf(editor);
    const auto room = [&] { return control->marginWidth(0); };
    const auto width = [&](const char *digits) {
        return control->SendScintilla(Sci::SCI_TEXTWIDTH, int{Sci::STYLE_LINENUMBER}, digits);
    };
    editor.SetText(u"a"_s);
    QVERIFY(room() > width("1"));
    const int small = room();
    editor.SetText(u"\n"_s.repeated(123456));
    QVERIFY(room() > width("123457"));
    editor.SetText(u"a"_s);
    QCOMPARE(room(), small);
}

QTEST_MAIN(SourceEditorTest)
#include "SourceEditorTest.moc"
