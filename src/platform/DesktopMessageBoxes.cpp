#include "platform/DesktopMessageBoxes.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QSpacerItem>

using namespace Qt::StringLiterals;

namespace {

/// Pixels that keep a short question from standing in a box narrower than its title.
constexpr int LeastWidth = 320;

QMessageBox::Icon IconOf(MessageBoxes::Icon icon)
{
    switch (icon) {
    case MessageBoxes::Icon::Information:
        return QMessageBox::Information;
    case MessageBoxes::Icon::Exclamation:
        return QMessageBox::Warning;
    case MessageBoxes::Icon::Stop:
        return QMessageBox::Critical;
    case MessageBoxes::Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

struct ButtonSet
{
    QMessageBox::StandardButtons Offered;
    QMessageBox::StandardButton Default;
    QMessageBox::StandardButton Closing;
};

ButtonSet ButtonsOf(MessageBoxes::Buttons buttons)
{
    switch (buttons) {
    case MessageBoxes::Buttons::OkCancel:
        return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel};
    case MessageBoxes::Buttons::YesNo:
        return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
    case MessageBoxes::Buttons::YesNoCancel:
        return {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes, QMessageBox::Cancel};
    case MessageBoxes::Buttons::Ok:
        break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
}

MessageBoxes::Answer AnswerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return MessageBoxes::Answer::Yes;
    case QMessageBox::No:
        return MessageBoxes::Answer::No;
    case QMessageBox::Cancel:
        return MessageBoxes::Answer::Cancel;
    default:
        return MessageBoxes::Answer::Ok;
    }
}

} // namespace

DesktopMessageBoxes::DesktopMessageBoxes(QString title) : m_title(std::move(title)) {}

MessageBoxes::Answer DesktopMessageBoxes::Ask(QWidget *parent, const QString &text, Buttons buttons, Icon icon)
{
    const ButtonSet set = ButtonsOf(buttons);
    // On the heap: the parent may go, and take the box with it, while the box waits.
    const QPointer<QMessageBox> box = new QMessageBox(parent);
    box->setObjectName("MessageBox"_L1);
    box->setWindowTitle(m_title);
    box->setIcon(IconOf(icon));
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    box->setStandardButtons(set.Offered);
    box->setDefaultButton(set.Default);
    box->setEscapeButton(set.Closing);
    if (auto *grid = qobject_cast<QGridLayout *>(box->layout()))
        grid->addItem(new QSpacerItem(LeastWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
    const int button = box->exec();
    if (!box)
        return AnswerOf(set.Closing);
    delete box;
    return AnswerOf(button);
}
