#include "platform/surface/DesignSurface.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

constexpr int Patience = 10000; // milliseconds

QString Page(const QString &body)
{
    return u"<!DOCTYPE html>\n<html><head><title>A  page</title></head><body>%1</body></html>\n"_s.arg(body);
}

} // namespace

/// The real engine, real keys.
class DesignSurfaceTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void textComesBackInEngineForm_data();
    void textComesBackInEngineForm();
    void typedWordsAreInTheTextAtOnce();
    void undoTakesBackWhatAPersonDid_data();
    void undoTakesBackWhatAPersonDid();
    void undoAllAndRedoAllOfALongSession();
    void dirtyFollowsTheSavedState();
    void replacedPageIsOneUndoStep();
    void aNewDoctypeOrBaseIsFollowed();
    void keysAfterAnotherWindow();
    void clipboardKeepsMarkup();
    void commandsAnswerTruly();
    void lastLoadWins();
    void rendererMayDie_data();
    void rendererMayDie();
    void formFieldThatWantsTheFocusDoesNotGetIt();

private:
    void Load(const QString &text, const QString &path = u"/nowhere/page.htm"_s);
    void Type(const QString &text);
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    QString Body();

    std::unique_ptr<DesignSurface> m_surface;
};

void DesignSurfaceTest::initTestCase()
{
    // The engine's own start speaks of graphics that an offscreen platform does not have.
    DesignSurface first;
    first.LoadText({}, {});
    QVERIFY(first.WaitWhileBusy(Patience));
}

void DesignSurfaceTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_surface = std::make_unique<DesignSurface>();
    m_surface->resize(800, 600);
    m_surface->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_surface.get()));
}

void DesignSurfaceTest::cleanup()
{
    m_surface.reset();
}

void DesignSurfaceTest::Load(const QString &text, const QString &path)
{
    m_surface->LoadText(text, path);
    QVERIFY(m_surface->Busy());
    QVERIFY(m_surface->WaitWhileBusy(Patience));
    m_surface->InputWidget()->setFocus();
    m_surface->CaretToPageStart();
}

void DesignSurfaceTest::Type(const QString &text)
{
    for (const QChar c : text)
        QTest::keyClick(m_surface->InputWidget(), c.toLatin1());
}

void DesignSurfaceTest::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_surface->InputWidget(), key, modifiers);
}

QString DesignSurfaceTest::Body()
{
    const QString html = m_surface->DocumentHTML();
    const qsizetype from = html.indexOf(u'>', html.indexOf("<BODY"_L1)) + 1;
    return html.sliced(from, html.lastIndexOf("</body>"_L1, -1, Qt::CaseInsensitive) - from);
}

void DesignSurfaceTest::textComesBackInEngineForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("head and tail as written")
        << u"<!-- top -->\n<!DOCTYPE HTML>\n<html><body><p>x</p></body>\n</html>\n<!-- end -->\n"_s
        << u"<!-- top -->\n<!DOCTYPE HTML>\n<HTML><HEAD></HEAD><BODY><P>x</P></body>\n</html>\n<!-- end -->\n"_s;
    QTest::newRow("white space behind an open paragraph is the paragraph's")
        << u"<body><p>x</body>\n</html>\n<!-- end -->"_s
        << u"<HTML><HEAD></HEAD><BODY><P>x\n\n</P></body></html><!-- end -->"_s;
    QTest::newRow("open script swallows the end")
        << u"<body><p>x</p><script>a</body></html>\n"_s
        << u"<HTML><HEAD></HEAD><BODY><P>x</P><SCRIPT>a</body></html>\n</SCRIPT></BODY></HTML>"_s;
    QTest::newRow("fragment") << u"<p align=center>x"_s
                              << u"<HTML><HEAD></HEAD><BODY><P align=center>x</P></BODY></HTML>"_s;
    QTest::newRow("empty") << u""_s << u"<HTML><HEAD></HEAD><BODY></BODY></HTML>"_s;
    QTest::newRow("carriage returns") << u"<html><head></head><body><p>a\r\nb</p></body></html>\r\n"_s
                                      << u"<HTML><HEAD></HEAD><BODY><P>a\r\nb</P></body></html>\r\n"_s;
    QTest::newRow("server code everywhere")
        << u"<?php top(); ?>\n<html><head><title><?= $t ?></title></head><body <? b ?>><p title=\"<?= \"q>\" ?>\"><% x %></p></body></html>\n<?php end(); ?>"_s
        << u"<?php top(); ?>\n<HTML><HEAD><TITLE><?= $t ?></TITLE></HEAD><BODY <? b ?>><P title=\"<?= \"q>\" ?>\"><% x %></P></body></html>\n<?php end(); ?>"_s;
    QTest::newRow("only server code") << u"<?php\necho 1;\n"_s << u"<?php\necho 1;\n"_s;
    QTest::newRow("unclosed server code at the end") << u"<html><body><p>x</p><?php include 'end.php';"_s
                                                     << u"<HTML><HEAD></HEAD><BODY><P>x</P><?php include 'end.php';"_s;
}

void DesignSurfaceTest::textComesBackInEngineForm()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    Load(text);
    QCOMPARE(m_surface->DocumentHTML(), expected);
    Load(expected); // what came out once comes out the same again
    QCOMPARE(m_surface->DocumentHTML(), expected);
}

void DesignSurfaceTest::typedWordsAreInTheTextAtOnce()
{
    Load(Page(u"<p>old</p>"_s));
    const QString words = u"the quick brown fox jumps over the lazy dog "_s.repeated(5);
    Type(words);
    // No event loop in between: the last keys are still on their way when the question is asked.
    QVERIFY(m_surface->IsDirty());
    QVERIFY2(Body().startsWith("<P>"_L1 + words.trimmed()), qPrintable(Body()));
}

void DesignSurfaceTest::undoTakesBackWhatAPersonDid_data()
{
    using Keys = QList<std::pair<int, int>>;
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<int>("steps");

    QTest::newRow("one word") << u"<p>abc</p>"_s << u"word"_s << Keys{} << 1;
    QTest::newRow("two words") << u"<p>abc</p>"_s << u"two words"_s << Keys{} << 2;
    QTest::newRow("word, then enter") << u"<p>abc</p>"_s << u"word"_s << Keys{{Qt::Key_Return, 0}} << 2;
    QTest::newRow("backspaces are one") << u"<p>abcdef</p>"_s << u""_s
                                        << Keys{{Qt::Key_End, 0}, {Qt::Key_Backspace, 0}, {Qt::Key_Backspace, 0}} << 1;
    QTest::newRow("joined blocks") << u"<h1>abc</h1><p>def</p>"_s << u""_s
                                   << Keys{{Qt::Key_Down, 0}, {Qt::Key_Home, 0}, {Qt::Key_Backspace, 0}} << 1;
    QTest::newRow("all deleted") << u"<p>abc</p><table><tr><td>x</td></tr></table><p>def</p>"_s << u""_s
                                 << Keys{{Qt::Key_A, Qt::ControlModifier}, {Qt::Key_Delete, 0}} << 1;
    QTest::newRow("all bold") << u"<p>abc</p><p>def</p>"_s << u""_s
                              << Keys{{Qt::Key_A, Qt::ControlModifier}, {Qt::Key_B, Qt::ControlModifier}} << 1;
    QTest::newRow("moved caret parts typing")
        << u"<p>abc</p>"_s << u"x"_s << Keys{{Qt::Key_Right, 0}, {Qt::Key_Y, 0}} << 2;
}

void DesignSurfaceTest::undoTakesBackWhatAPersonDid()
{
    QFETCH(QString, body);
    QFETCH(QString, typed);
    using Keys = QList<std::pair<int, int>>;
    QFETCH(Keys, keys);
    QFETCH(int, steps);

    Load(Page(body));
    const QString before = m_surface->DocumentHTML();
    Type(typed);
    for (const auto &[key, modifiers] : keys)
        Press(Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    const QString after = m_surface->DocumentHTML();
    QVERIFY(after != before);
    QVERIFY2(!after.contains("<SPAN"_L1), qPrintable(after));

    for (int i = 0; i < steps; ++i) {
        QCOMPARE(m_surface->QueryStatus(DECMD_UNDO), DECMDF_ENABLED);
        Press(Qt::Key_Z, Qt::ControlModifier);
    }
    QCOMPARE(m_surface->DocumentHTML(), before);
    QCOMPARE(m_surface->QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    QVERIFY(!m_surface->IsDirty());
    for (int i = 0; i < steps; ++i)
        Press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(m_surface->DocumentHTML(), after);
    QCOMPARE(m_surface->QueryStatus(DECMD_REDO), DECMDF_DISABLED);
}

void DesignSurfaceTest::undoAllAndRedoAllOfALongSession()
{
    Load(Page(
        u"<h1>Title</h1><p>One <b>two</b> three</p><ul><li>a<li>b</ul><table border=1><tr><td>x<td>y</table><pre>\n\nkeep\n</pre>"_s));
    const QString start = m_surface->DocumentHTML();
    const QList<std::pair<Qt::Key, Qt::KeyboardModifiers>> moves{{Qt::Key_Right, {}},
                                                                 {Qt::Key_Down, {}},
                                                                 {Qt::Key_Return, {}},
                                                                 {Qt::Key_Backspace, {}},
                                                                 {Qt::Key_Delete, {}},
                                                                 {Qt::Key_End, {}},
                                                                 {Qt::Key_Left, Qt::ShiftModifier},
                                                                 {Qt::Key_B, Qt::ControlModifier},
                                                                 {Qt::Key_I, Qt::ControlModifier},
                                                                 {Qt::Key_Down, Qt::ShiftModifier},
                                                                 {Qt::Key_A, {}},
                                                                 {Qt::Key_Space, {}},
                                                                 {Qt::Key_Return, Qt::ShiftModifier},
                                                                 {Qt::Key_Z, Qt::ControlModifier}};
    quint32 seed = 20250117;
    for (int i = 0; i < 300; ++i) {
        seed = seed * 1664525u + 1013904223u;
        const auto &[key, modifiers] = moves[(seed >> 16) % moves.size()];
        Press(key, modifiers);
    }
    const QString end = m_surface->DocumentHTML();
    int undone = 0;
    for (; m_surface->QueryStatus(DECMD_UNDO) == DECMDF_ENABLED; ++undone)
        m_surface->ExecCommand(DECMD_UNDO);
    QVERIFY(undone > 20);
    QCOMPARE(m_surface->DocumentHTML(), start);
    for (int i = 0; i < undone; ++i)
        m_surface->ExecCommand(DECMD_REDO);
    QCOMPARE(m_surface->DocumentHTML(), end);
}

void DesignSurfaceTest::dirtyFollowsTheSavedState()
{
    Load(Page(u"<p>abc</p>"_s));
    QSignalSpy dirty(m_surface.get(), &DesignSurface::DirtyChanged);
    QVERIFY(!m_surface->IsDirty());
    Type(u"one"_s);
    QVERIFY(m_surface->IsDirty());
    m_surface->MarkClean();
    QVERIFY(!m_surface->IsDirty());
    Type(u"two"_s); // within the time in which letters join one word
    QVERIFY(m_surface->IsDirty());
    Press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!m_surface->IsDirty());
    QVERIFY(Body().startsWith("<P>oneabc"_L1));
    Press(Qt::Key_Z, Qt::ControlModifier); // behind the saved state there is more to undo
    QVERIFY(m_surface->IsDirty());
    QTRY_VERIFY(dirty.count() >= 1);
}

void DesignSurfaceTest::replacedPageIsOneUndoStep()
{
    Load(Page(u"<p><?php a ?>abc</p>"_s));
    Type(u"x"_s);
    const QString before = m_surface->DocumentHTML();
    m_surface->SetDocumentHTML(Page(u"<p>other <?php b ?></p>"_s));
    QVERIFY(m_surface->WaitWhileBusy(Patience));
    QVERIFY(Body().startsWith("<P>other <?php b ?>"_L1));
    QVERIFY(!m_surface->IsDirty()); // whoever sets it says whether it is to be saved
    Type(u"y"_s);
    Press(Qt::Key_Z, Qt::ControlModifier);
    m_surface->ExecCommand(DECMD_UNDO);
    QCOMPARE(m_surface->DocumentHTML(), before); // with the server code of the text it was made from
    m_surface->ExecCommand(DECMD_REDO);
    QVERIFY(Body().startsWith("<P>other <?php b ?>"_L1));
}

void DesignSurfaceTest::aNewDoctypeOrBaseIsFollowed()
{
    QTemporaryDir folder;
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(folder.filePath(u"a.png"_s)));
    Load(u"<html><body style='margin:0'><img src=a.png></body></html>"_s, folder.filePath(u"page.htm"_s));
    QTRY_COMPARE(m_surface->grab().toImage().pixelColor(20, 15), QColor(Qt::red)); // found beside the page
    QCOMPARE(m_surface->BaseURL(), QUrl::fromLocalFile(folder.filePath(u"page.htm"_s)).toString());

    m_surface->SetDocumentHTML(u"<!DOCTYPE html>\n<html><body><p>strict</body></html>"_s);
    QVERIFY(m_surface->WaitWhileBusy(Patience));
    QVERIFY(m_surface->DocumentHTML().startsWith("<!DOCTYPE html>\n<HTML>"_L1));
    QCOMPARE(m_surface->CurrentDocumentPath(), folder.filePath(u"page.htm"_s));
}

/// The caret was set while another window had the focus.
void DesignSurfaceTest::keysAfterAnotherWindow()
{
    QLineEdit other;
    other.show();
    other.activateWindow();
    other.setFocus();
    QTRY_VERIFY(other.hasFocus());
    Load(Page(u"<p>abc</p>"_s));
    m_surface->CaretToPageStart();
    m_surface->window()->activateWindow();
    m_surface->setFocus();
    QTRY_VERIFY(m_surface->InputWidget()->hasFocus());
    Press(Qt::Key_X);
    QTRY_VERIFY2(Body().contains("xabc"_L1), qPrintable(Body()));
}

void DesignSurfaceTest::clipboardKeepsMarkup()
{
    const QString markup = u"abc <b class=\"c\">def</b> <a href=\"x.htm\" name=\"n\">l</a>"_s;
    Load(Page("<p>"_L1 + markup + "</p><p>end</p>"_L1));
    const QString before = m_surface->DocumentHTML();
    QVERIFY(m_surface->SelectText(u"abc def l"_s));
    QCOMPARE(m_surface->SelectionType(), u"Text"_s);
    Press(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(!Body().contains("abc"_L1));
    // Other programs get whole addresses.
    QString whole = markup;
    whole.replace("\"x.htm\""_L1, "\"file:///nowhere/x.htm\""_L1);
    QTRY_VERIFY2(QGuiApplication::clipboard()->mimeData()->html().contains(whole),
                 qPrintable(QGuiApplication::clipboard()->mimeData()->html()));
    Press(Qt::Key_V, Qt::ControlModifier);
    QTRY_VERIFY2(Body().contains("abc <B class=c>def</B> <A href=x.htm name=n>l</A>"_L1), qPrintable(Body()));
    while (m_surface->QueryStatus(DECMD_UNDO) == DECMDF_ENABLED)
        m_surface->ExecCommand(DECMD_UNDO);
    QCOMPARE(m_surface->DocumentHTML(), before);

    auto *data = new QMimeData;
    data->setHtml(u"<html><body><!--StartFragment--><form action=a.php><input type=hidden name=h value=1></form>"
                  "<script>alert(1)</script><!--EndFragment--></body></html>"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    m_surface->CaretToPageStart();
    m_surface->ExecCommand(DECMD_PASTE);
    QTRY_VERIFY2(Body().contains("<FORM action=a.php><INPUT type=hidden name=h value=1></FORM>"_L1),
                 qPrintable(Body()));
    QVERIFY(!Body().contains("SCRIPT"_L1)); // nobody saw what it does when he copied
}

void DesignSurfaceTest::commandsAnswerTruly()
{
    Load(Page(u"<p>plain <b>bold</b></p>"_s));
    QCOMPARE(m_surface->QueryStatus(DECMD_UNDO), DECMDF_DISABLED);
    QCOMPARE(m_surface->QueryStatus(DECMD_CUT), DECMDF_DISABLED);
    QCOMPARE(m_surface->QueryStatus(DECMD_BOLD), DECMDF_ENABLED);
    QVERIFY(m_surface->SelectText(u"bold"_s));
    QCOMPARE(m_surface->QueryStatus(DECMD_BOLD), DECMDF_LATCHED);
    QCOMPARE(m_surface->QueryStatus(DECMD_CUT), DECMDF_ENABLED);
    m_surface->ExecCommand(DECMD_BOLD);
    QVERIFY(Body().contains("<P>plain bold</P>"_L1));
    m_surface->CollapseSelection();
    QCOMPARE(m_surface->SelectionType(), u"None"_s);
    QVERIFY(!m_surface->SelectText(u"not there"_s));
    QCOMPARE(m_surface->QueryStatus(Decmd(999)), DECMDF_NOTSUPPORTED);
    QCOMPARE(m_surface->DocumentTitle(), u"A page"_s);
}

void DesignSurfaceTest::lastLoadWins()
{
    QSignalSpy complete(m_surface.get(), &DesignSurface::DocumentComplete);
    for (int i = 0; i < 20; ++i)
        m_surface->LoadText(Page(u"<p>page %1</p>"_s.arg(i)), u"/nowhere/%1.htm"_s.arg(i));
    QVERIFY(m_surface->WaitWhileBusy(Patience));
    QVERIFY(Body().contains("page 19"_L1));
    QCOMPARE(complete.count(), 1);
}

void DesignSurfaceTest::rendererMayDie_data()
{
    QTest::addColumn<bool>("edited");
    QTest::newRow("without a change") << false;
    QTest::newRow("with unsaved words") << true;
}

void DesignSurfaceTest::rendererMayDie()
{
    QFETCH(bool, edited);
    Load(Page(u"<p>abc <?php code ?></p>"_s));
    const QString loaded = m_surface->DocumentHTML();
    if (edited) {
        QSignalSpy snapshot(m_surface.get(), &DesignSurface::SnapshotTaken);
        Type(u"unsaved words "_s);
        QVERIFY(snapshot.wait(1000)); // so much may be lost at the most
        QVERIFY(m_surface->LastSnapshot().contains("unsaved words"_L1));
    }
    QSignalSpy lost(m_surface.get(), &DesignSurface::RendererLost);
    QSignalSpy complete(m_surface.get(), &DesignSurface::DocumentComplete);
    QCOMPARE(::kill(pid_t(m_surface->RendererProcessId()), SIGKILL), 0);
    QVERIFY(lost.wait(Patience));
    if (complete.isEmpty())
        QVERIFY(complete.wait(Patience));
    QCOMPARE(m_surface->IsDirty(), edited);
    QCOMPARE(Body().contains("unsaved words"_L1), edited);
    QVERIFY(Body().contains("<?php code ?>"_L1));

    m_surface->InputWidget()->setFocus();
    m_surface->CaretToPageStart();
    Type(u"and more "_s); // the view takes keys again
    QVERIFY(Body().contains("and more"_L1));
    while (m_surface->QueryStatus(DECMD_UNDO) == DECMDF_ENABLED)
        m_surface->ExecCommand(DECMD_UNDO);
    QCOMPARE(m_surface->DocumentHTML(), loaded);
}

void DesignSurfaceTest::formFieldThatWantsTheFocusDoesNotGetIt()
{
    Load(Page(u"<p>abc</p><form><input type=text value=v autofocus></form>"_s));
    Type(u"typed "_s);
    QVERIFY2(Body().contains("<P>typed abc</P>"_L1), qPrintable(Body()));
}

QTEST_MAIN(DesignSurfaceTest)
#include "DesignSurfaceTest.moc"
