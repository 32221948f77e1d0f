#include "shell/HelpKey.h"

#include "platform/Help.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

HelpKey::HelpKey(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier)
        return false;
    const auto *control = static_cast<QWidget *>(watched);
    if (HelpPage(control).isEmpty())
        return false;
    ShowHelp(control);
    return true;
}
