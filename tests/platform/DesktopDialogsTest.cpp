#include "platform/DesktopFileDialogs.h"
#include "platform/DesktopMessageBoxes.h"
#include "platform/Processes.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeMessageBoxes.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

using Answer = MessageBoxes::Answer;
using Buttons = MessageBoxes::Buttons;

/// Runs `act` once a modal dialog of this kind is up and has the keyboard: before, Alt+letter goes nowhere.
template <typename Dialog, typename Act>
void WhenShown(Act act)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, act] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isActiveWindow())
            return;
        timer->stop();
        timer->deleteLater();
        act(dialog);
    });
    timer->start(1);
}

void Write(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

/// Types a name into the file dialog and presses Enter, as one who knows it does.
void TypeName(QFileDialog *dialog, const QString &name)
{
    auto *edit = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
    edit->selectAll();
    QTest::keyClicks(edit, name);
    QTest::keyClick(edit, Qt::Key_Return);
}

} // namespace

class DesktopDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        QGuiApplication::setApplicationDisplayName(u"Page Maker"_s);
    }
    void init()
    {
        // Showing a window without a screen warns of that alone.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }
    void MessageBox_IsAnswered_data();
    void MessageBox_IsAnswered();
    void MessageBox_ShowsPlainText();
    void MessageBox_OutlivesItsParent();
    void Filter_IsTranslated_data();
    void Filter_IsTranslated();
    void Open_GivesTheFileAndRemembersTheFolder();
    void Save_AsksBeforeOverwriting();
    void Save_AddsTheDefaultExtension();
    void Color_IsChosenOrNot();
    void FakeMessageBoxes_TellFaults();
    void FakeFileDialogs_TellFaults();
    void Process_LivesOnItsOwn();
};

void DesktopDialogsTest::MessageBox_IsAnswered_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("key"); // pressed in the box; 0: it is closed by the window's button
    QTest::addColumn<Answer>("answer");
    QTest::newRow("OK, Enter") << Buttons::Ok << int{Qt::Key_Return} << Answer::Ok;
    QTest::newRow("OK, Escape") << Buttons::Ok << int{Qt::Key_Escape} << Answer::Ok;
    QTest::newRow("OK, closed") << Buttons::Ok << 0 << Answer::Ok;
    QTest::newRow("yes or no, Enter") << Buttons::YesNo << int{Qt::Key_Return} << Answer::Yes;
    QTest::newRow("yes or no, Escape") << Buttons::YesNo << int{Qt::Key_Escape} << Answer::No;
    QTest::newRow("yes or no, closed") << Buttons::YesNo << 0 << Answer::No;
    QTest::newRow("OK or cancel, Escape") << Buttons::OkCancel << int{Qt::Key_Escape} << Answer::Cancel;
    QTest::newRow("OK or cancel, Enter") << Buttons::OkCancel << int{Qt::Key_Return} << Answer::Ok;
    QTest::newRow("cancel too, Enter") << Buttons::YesNoCancel << int{Qt::Key_Return} << Answer::Yes;
    QTest::newRow("cancel too, N") << Buttons::YesNoCancel << int{Qt::Key_N} << Answer::No;
    QTest::newRow("cancel too, Escape") << Buttons::YesNoCancel << int{Qt::Key_Escape} << Answer::Cancel;
    QTest::newRow("cancel too, closed") << Buttons::YesNoCancel << 0 << Answer::Cancel;
}

void DesktopDialogsTest::MessageBox_IsAnswered()
{
    QFETCH(Buttons, buttons);
    QFETCH(int, key);
    QFETCH(Answer, answer);
    WhenShown<QMessageBox>([key](QMessageBox *box) {
        if (key == 0)
            box->close();
        else
            QTest::keyClick(box, Qt::Key(key), key == Qt::Key_N ? Qt::AltModifier : Qt::NoModifier);
    });
    QCOMPARE(DesktopMessageBoxes().Ask(nullptr, u"Save changes?"_s, buttons, MessageBoxes::Icon::None), answer);

    // The fake must not offer answers, or close with one, that the real box has not.
    FakeMessageBoxes fake;
    fake.Expect(answer);
    QCOMPARE(fake.Ask(nullptr, u"Save changes?"_s, buttons, MessageBoxes::Icon::None), answer);
    if (key == 0)
        QCOMPARE(FakeMessageBoxes::ClosingAnswer(buttons), answer);
}

void DesktopDialogsTest::MessageBox_ShowsPlainText()
{
    QWidget window;
    window.show();
    bool seen = false;
    WhenShown<QMessageBox>([&](QMessageBox *box) {
        seen = true;
        QCOMPARE(box->objectName(), u"MessageBox"_s);
        QCOMPARE(box->windowTitle(), u"Page Maker"_s);
        QCOMPARE(box->parentWidget(), &window);
        QCOMPARE(box->icon(), QMessageBox::Warning);
        QCOMPARE(box->findChild<QLabel *>(u"qt_msgbox_label"_s)->textFormat(), Qt::PlainText);
        QCOMPARE(box->text(), u"<b>bold</b> & <img src=x>"_s);
        QVERIFY(box->width() >= 320);
        QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
    });
    const Answer answer = DesktopMessageBoxes().Ask(&window, u"<b>bold</b> & <img src=x>"_s, Buttons::YesNo,
                                                    MessageBoxes::Icon::Exclamation);
    QCOMPARE(answer, Answer::No);
    QVERIFY(seen);
}

void DesktopDialogsTest::MessageBox_OutlivesItsParent()
{
    auto *window = new QWidget;
    window->show();
    WhenShown<QMessageBox>([window](QMessageBox *) { delete window; });
    const Answer answer =
        DesktopMessageBoxes().Ask(window, u"Save changes?"_s, Buttons::YesNoCancel, MessageBoxes::Icon::None);
    QCOMPARE(answer, Answer::Cancel);
}

void DesktopDialogsTest::Filter_IsTranslated_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *filter, const char *expected) {
        QTest::newRow(filter) << QString::fromLatin1(filter) << QString::fromLatin1(expected);
    };
    row("HTML Files (*.htm*)|*.htm*", "HTML Files (*.htm*)");
    row("Graphics Files |*.gif;*.jpg;*.pgn", "Graphics Files (*.gif *.jpg *.pgn)");
    row("GIF and JPEG (*.gif, *jpg, *.jpeg)|*.gif;*.jpg; *.jpeg|All Files (*.*)|*.*",
        "GIF and JPEG (*.gif *.jpg *.jpeg);;All Files (*)");
    row("Pages (old)|*.htm", "Pages (old) (*.htm)");
    row("Everything", "Everything (*)");
    row("", "");
}

void DesktopDialogsTest::Filter_IsTranslated()
{
    QFETCH(QString, filter);
    QTEST(QtNameFilter(filter), "expected");
}

void DesktopDialogsTest::Open_GivesTheFileAndRemembersTheFolder()
{
    const QTemporaryDir root;
    const QDir dir(root.path());
    QVERIFY(dir.mkdir(u"pages"_s));
    Write(dir.filePath(u"pages/a b.htm"_s));
    DesktopFileDialogs dialogs;
    FileDialogs::Request request{
        u"Open HTML Page"_s, u"HTML Files (*.htm*)|*.htm*"_s, dir.filePath(u"pages"_s), {}, {}};
    WhenShown<QFileDialog>([](QFileDialog *dialog) {
        QCOMPARE(dialog->windowTitle(), u"Open HTML Page"_s);
        QCOMPARE(dialog->nameFilters(), QStringList{u"HTML Files (*.htm*)"_s});
        TypeName(dialog, u"a b.htm"_s);
    });
    QCOMPARE(dialogs.Open(nullptr, request), dir.filePath(u"pages/a b.htm"_s));

    for (const QString &folder : {QString(), dir.filePath(u"gone"_s)}) {
        request.Folder = folder;
        WhenShown<QFileDialog>([&](QFileDialog *dialog) {
            QCOMPARE(dialog->directory().absolutePath(), dir.filePath(u"pages"_s));
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QCOMPARE(dialogs.Open(nullptr, request), std::nullopt);
    }
}

void DesktopDialogsTest::Save_AsksBeforeOverwriting()
{
    const QTemporaryDir root;
    const QString old = root.filePath(u"old.htm"_s);
    Write(old);
    DesktopFileDialogs dialogs;
    const FileDialogs::Request request{u"Save As"_s, u"HTML Files (*.htm*)|*.htm*"_s, root.path(), u"old.htm"_s, {}};
    for (const auto &[key, chosen] : {std::pair{Qt::Key_N, false}, std::pair{Qt::Key_Y, true}}) {
        bool asked = false;
        WhenShown<QFileDialog>([&, button = key](QFileDialog *dialog) {
            QCOMPARE(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"old.htm"_s); // proposed
            WhenShown<QMessageBox>([&, dialog, button](QMessageBox *box) {
                asked = true;
                QTest::keyClick(box, button, Qt::AltModifier);
                if (button == Qt::Key_N)
                    QTimer::singleShot(0, dialog, &QDialog::reject);
            });
            QTest::keyClick(dialog->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        });
        QCOMPARE(dialogs.Save(nullptr, request), chosen ? std::optional(old) : std::nullopt);
        QVERIFY(asked);
    }
}

void DesktopDialogsTest::Save_AddsTheDefaultExtension()
{
    const QTemporaryDir root;
    DesktopFileDialogs dialogs;
    FileDialogs::Request request{u"Save As"_s, u"HTML Files (*.htm*)|*.htm*"_s, root.path(), {}, u"shtml"_s};
    WhenShown<QFileDialog>([](QFileDialog *dialog) { TypeName(dialog, u"new"_s); });
    QCOMPARE(dialogs.Save(nullptr, request), root.filePath(u"new.shtml"_s));
    WhenShown<QFileDialog>([](QFileDialog *dialog) { TypeName(dialog, u"new.php"_s); });
    QCOMPARE(dialogs.Save(nullptr, request), root.filePath(u"new.php"_s));
    request.DefaultExtension.clear();
    WhenShown<QFileDialog>([](QFileDialog *dialog) { TypeName(dialog, u"plain"_s); });
    QCOMPARE(dialogs.Save(nullptr, request), root.filePath(u"plain"_s));
}

void DesktopDialogsTest::Color_IsChosenOrNot()
{
    DesktopFileDialogs dialogs;
    WhenShown<QColorDialog>([](QColorDialog *dialog) {
        QCOMPARE(dialog->currentColor(), QColor(10, 20, 30));
        dialog->setCurrentColor(QColor(1, 2, 3));
        QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    });
    QCOMPARE(dialogs.Color(nullptr, QColor(10, 20, 30)), QColor(1, 2, 3));
    WhenShown<QColorDialog>([](QColorDialog *dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
    QCOMPARE(dialogs.Color(nullptr, QColor()), std::nullopt);
}

void DesktopDialogsTest::FakeMessageBoxes_TellFaults()
{
    QStringList faults;
    {
        FakeMessageBoxes boxes;
        boxes.OnFault = [&faults](const QString &fault) { faults += fault; };
        boxes.Expect(Answer::Yes, u"changes"_s);
        QCOMPARE(boxes.Ask(nullptr, u"Save changes?"_s, Buttons::YesNo, MessageBoxes::Icon::Stop), Answer::Yes);
        boxes.Expect(Answer::Ok);
        boxes.Tell(nullptr, u"Saved."_s);
        QCOMPARE(boxes.Boxes.size(), 2);
        QCOMPARE(boxes.Boxes[0].Sign, MessageBoxes::Icon::Stop);
        QCOMPARE(boxes.Boxes[1].Text, u"Saved."_s);
        QCOMPARE(faults, QStringList());

        QCOMPARE(boxes.Ask(nullptr, u"unannounced"_s, Buttons::YesNoCancel, {}), Answer::Cancel);
        QCOMPARE(faults.size(), 1);
        boxes.Expect(Answer::Ok, u"other words"_s);
        boxes.Tell(nullptr, u"text"_s);
        QCOMPARE(faults.size(), 2);
        boxes.Expect(Answer::Cancel);
        QCOMPARE(boxes.Ask(nullptr, u"no such button"_s, Buttons::YesNo, {}), Answer::No);
        QCOMPARE(faults.size(), 3);
        boxes.Expect(Answer::Ok, u"never"_s);
    }
    QCOMPARE(faults.size(), 4);
    QVERIFY(faults.last().contains(u"never"));
}

void DesktopDialogsTest::FakeFileDialogs_TellFaults()
{
    int faults = 0;
    {
        FakeFileDialogs dialogs;
        dialogs.OnFault = [&faults](const QString &) { ++faults; };
        dialogs.ExpectOpen(u"/a.htm"_s);
        dialogs.ExpectSave({});
        dialogs.ExpectColor(QColor(Qt::red));
        QCOMPARE(dialogs.Open(nullptr, {.Title = u"Open"_s}), u"/a.htm"_s);
        QCOMPARE(dialogs.Save(nullptr, {.Title = u"Save"_s}), std::nullopt);
        QCOMPARE(dialogs.Color(nullptr, Qt::blue), QColor(Qt::red));
        QCOMPARE(dialogs.Requests.size(), 2);
        QCOMPARE(dialogs.Requests[1].Title, u"Save"_s);
        QCOMPARE(dialogs.StartColors, QList<QColor>{Qt::blue});
        QCOMPARE(faults, 0);

        QCOMPARE(dialogs.Open(nullptr, {}), std::nullopt);
        QCOMPARE(faults, 1);
        dialogs.ExpectOpen(u"/a.htm"_s);
        QCOMPARE(dialogs.Save(nullptr, {}), std::nullopt);
        QCOMPARE(faults, 2);
        dialogs.ExpectOpen(u"/a.htm"_s);
    }
    QCOMPARE(faults, 3);
}

void DesktopDialogsTest::Process_LivesOnItsOwn()
{
    const QTemporaryDir root;
    const QString path = root.filePath(u"out $(x) 'y'.txt"_s);
    QVERIFY(StartDetached(u"/bin/sh"_s, {u"-c"_s, u"printf done > \"$1\""_s, u"sh"_s, path}));
    QTRY_COMPARE(QFileInfo(path).size(), 4);
    QVERIFY(!StartDetached(root.filePath(u"no such program"_s), {}));
    QVERIFY(!StartDetached({}, {}));
}

QTEST_MAIN(DesktopDialogsTest)
#include "DesktopDialogsTest.moc"
