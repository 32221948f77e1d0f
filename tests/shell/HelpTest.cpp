#include "platform/Help.h"
#include "shell/AboutBox.h"
#include "shell/HelpWindow.h"
#include "support/Files.h"
#include "support/Program.h"

#include <QDirIterator>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

const QString Manual = QStringLiteral(INKLOOM_SOURCE_DIR "/help");

QStringList Matches(const QString &text, const QString &pattern)
{
    QStringList found;
    for (const auto &match : QRegularExpression(pattern).globalMatch(text))
        found += match.captured(1);
    return found;
}

QString TextOf(const QString &page)
{
    return QString::fromUtf8(BytesOf(Manual + u'/' + page));
}

HelpWindow *ShownManual()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *manual = qobject_cast<HelpWindow *>(window); manual && manual->isVisible())
            return manual;
    }
    return nullptr;
}

/// Name of the page that the manual shows; "" while it is not there.
QString ShownPage()
{
    const HelpWindow *manual = ShownManual();
    return manual ? manual->findChild<QTextBrowser *>()->source().fileName() : QString();
}

/// As the mouse does it: through the window system, which keeps clicks from windows behind a dialog.
void ClickButton(HelpWindow *manual, const QString &name)
{
    const QWidget *button = manual->findChild<QToolBar *>()->widgetForAction(manual->findChild<QAction *>(name));
    QTest::mouseClick(manual->windowHandle(), Qt::LeftButton, {}, button->mapTo(manual, button->rect().center()));
}

} // namespace

/// The manual: that it is whole, and that F1 and Help buttons open it on the right page.
class HelpTest : public ProgramTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void everyDialogHasItsPage();
    void everyLinkLeadsSomewhere();
    void keyInEachView_data();
    void keyInEachView();
    void keyAndButtonInADialog();
    void backForwardAndClose();
    void missingManualIsTold();
    void aboutBox();

private:
    /// What a person does while the dialog of a command is open.
    void InDialog(const QString &command, const std::function<void(QWidget *dialog)> &act);

    std::unique_ptr<Program> m_program;
};

void HelpTest::initTestCase()
{
    StartEngine();
}

void HelpTest::init()
{
    UsePrivateState();
    m_program = std::make_unique<Program>();
    QVERIFY(QFile::link(Manual, m_program->Path(u"data/help"_s)));
}

void HelpTest::cleanup()
{
    if (m_program->Window)
        m_program->Window->close();
    QVERIFY(!ShownManual()); // it goes with the main window
    m_program.reset();
}

void HelpTest::InDialog(const QString &command, const std::function<void(QWidget *)> &act)
{
    bool done = false;
    QTimer::singleShot(0, m_program->Window.get(), [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog)
            return;
        act(dialog);
        done = true;
        dialog->close();
    });
    m_program->Menu(command);
    QVERIFY(done);
}

void HelpTest::everyDialogHasItsPage()
{
    for (const QString &topic : HelpTopics())
        QVERIFY2(QFile::exists(Manual + u'/' + HelpPage(topic)), qPrintable(topic));
    QDirIterator forms(QStringLiteral(INKLOOM_SOURCE_DIR "/src"), {u"*.ui"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (forms.hasNext()) {
        const QString form = QFileInfo(forms.next()).completeBaseName();
        QVERIFY2(!HelpPage(form).isEmpty(), qPrintable(form));
    }
}

void HelpTest::everyLinkLeadsSomewhere()
{
    QSet<QString> reached = {u"index.htm"_s};
    QStringList toRead = reached.values();
    while (!toRead.isEmpty()) {
        const QString page = toRead.takeFirst();
        const QString text = TextOf(page);
        QCOMPARE(Matches(text, u"<title>(.*)</title>"_s), Matches(text, u"<h1>(.*)</h1>"_s));
        for (const QString &link : Matches(text, u"href=\"([^\"]*)\""_s)) {
            const QStringList parts = link.split(u'#');
            const QString target = parts[0].isEmpty() ? page : parts[0];
            QVERIFY2(QFile::exists(Manual + u'/' + target), qPrintable(page + u": "_s + link));
            if (parts.size() > 1)
                QVERIFY2(Matches(TextOf(target), u"(?:name|id)=\"([^\"]*)\""_s).contains(parts[1]),
                         qPrintable(page + u": "_s + link));
            if (target.endsWith(".htm"_L1) && !reached.contains(target)) {
                reached.insert(target);
                toRead.append(target);
            }
        }
    }
    const QStringList pages = QDir(Manual).entryList({u"*.htm"_s});
    QCOMPARE(reached, QSet<QString>(pages.begin(), pages.end()));
}

void HelpTest::keyInEachView_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("page");
    QTest::newRow("Normal") << u"viewnormal"_s << u"normal-view.htm"_s;
    QTest::newRow("Page Properties") << u"viewproperties"_s << u"page-properties.htm"_s;
    QTest::newRow("HTML Source") << u"viewsource"_s << u"source-view.htm"_s;
    QTest::newRow("Publish") << u"viewpublish"_s << u"publish.htm"_s;
}

void HelpTest::keyInEachView()
{
    QFETCH(QString, view);
    QFETCH(QString, page);
    m_program->Open(u"a.htm"_s);
    m_program->Menu(view);
    QTRY_VERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
    QTRY_COMPARE(ShownPage(), page);
    m_program->Menu(u"helpcontents"_s);
    QCOMPARE(ShownPage(), u"index.htm"_s);
}

void HelpTest::keyAndButtonInADialog()
{
    m_program->Open(u"a.htm"_s);
    InDialog(u"settings"_s, [](QWidget *dialog) {
        QTest::keyClick(dialog->findChild<QLineEdit *>(u"EditExt"_s), Qt::Key_F1);
        QTRY_COMPARE(ShownPage(), u"settings.htm"_s);
        ClickButton(ShownManual(), u"HelpIndex"_s);
        QCOMPARE(ShownPage(), u"alphabetical.htm"_s); // a dialog does not keep the user from reading
    });
    QVERIFY(ShownManual()); // nor does it take the manual along
    InDialog(u"filenew"_s, [](QWidget *dialog) {
        QTest::mouseClick(dialog->findChild<QPushButton *>(u"CommandHelp"_s), Qt::LeftButton);
        QTRY_COMPARE(ShownPage(), u"new-page.htm"_s);
        ClickButton(ShownManual(), u"HelpBack"_s);
        QCOMPARE(ShownPage(), u"alphabetical.htm"_s);
    });
    ClickButton(ShownManual(), u"HelpHome"_s);
    QCOMPARE(ShownPage(), u"index.htm"_s);
}

void HelpTest::backForwardAndClose()
{
    m_program->Open(u"a.htm"_s);
    ShowHelp(u"FormSettings"_s);
    auto *text = ShownManual()->findChild<QTextBrowser *>();
    QVERIFY(text->toPlainText().startsWith("Contents"_L1));
    QTest::keyClick(text, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(ShownPage(), u"settings.htm"_s); // there is no page before
    QTest::keyClick(text, Qt::Key_Tab);       // to the first link, which leads to the contents
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(ShownPage(), u"index.htm"_s);
    QTest::keyClick(text, Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(ShownPage(), u"settings.htm"_s);
    QTest::keyClick(text, Qt::Key_Right, Qt::AltModifier);
    QCOMPARE(ShownPage(), u"index.htm"_s);
    QTest::keyClick(text, Qt::Key_Escape);
    QVERIFY(!ShownManual());
    ShowHelp(u"no such topic"_s);
    QCOMPARE(ShownPage(), u"index.htm"_s);
}

void HelpTest::missingManualIsTold()
{
    QVERIFY(QFile::remove(m_program->Path(u"data/help"_s)));
    m_program->Open(u"a.htm"_s);
    ShowHelp(u"FormSettings"_s);
    QVERIFY(ShownManual()->findChild<QTextBrowser *>()->toPlainText().contains(
        m_program->Path(u"data/help/settings.htm"_s)));
}

void HelpTest::aboutBox()
{
    m_program->Open(u"a.htm"_s);
    InDialog(u"helpabout"_s, [](QWidget *dialog) {
        const QString text = qobject_cast<QMessageBox *>(dialog)->text();
        QVERIFY(QRegularExpression(u"Inkloom \\d+\\.\\d+"_s).match(text).hasMatch());
        QVERIFY(text.contains("GNU General Public License"_L1));
    });
}

QTEST_MAIN(HelpTest)
#include "HelpTest.moc"
