#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QStringList>
#include <QTest>
#include <QWidget>

/// Looks at a window as somebody without eyes or without a mouse meets it. Each answers a list of faults, empty when
/// all is well.
namespace AccessibleWalk {

inline QString NameOf(const QWidget *widget)
{
    return QLatin1StringView(widget->metaObject()->className()) + QLatin1Char('/') + widget->objectName();
}

/// Controls of `root` that take the keyboard and can be seen now.
inline QList<QWidget *> Controls(const QWidget *root)
{
    QList<QWidget *> controls;
    for (QWidget *widget : root->findChildren<QWidget *>()) {
        // A part of a control, such as the field of a spin box, hands the keyboard on or is named qt_...
        const bool part = widget->focusProxy() || widget->objectName().startsWith(QStringLiteral("qt_"));
        if (widget->isVisible() && widget->isEnabled() && widget->window() == root->window() && !part &&
            (widget->focusPolicy() & Qt::TabFocus))
            controls += widget;
    }
    return controls;
}

/// A screen reader would say nothing but the kind of control.
inline QStringList Nameless(const QWidget *root)
{
    QStringList faults;
    for (QWidget *widget : Controls(root)) {
        const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
        if (!face || face->text(QAccessible::Name).isEmpty())
            faults += NameOf(widget) + QStringLiteral(" has no name");
    }
    return faults;
}

inline void TakeMnemonic(const QString &text, QHash<QString, QString> &taken, QStringList &faults)
{
    const QKeySequence key = QKeySequence::mnemonic(text);
    if (key.isEmpty())
        return;
    QString &first = taken[key.toString()];
    if (!first.isEmpty())
        faults += QStringLiteral("%1: \"%2\" and \"%3\"").arg(key.toString(), first, text);
    first = text;
}

/// Two things that the same key with Alt means, of menu titles, buttons and labels that can be seen together. (Within a
/// menu such a key goes from one to the other.)
inline QStringList DoubledMnemonics(const QWidget *root)
{
    QStringList faults;
    QHash<QString, QString> taken;
    for (const QWidget *widget : root->findChildren<QWidget *>()) {
        if (const auto *bar = qobject_cast<const QMenuBar *>(widget)) {
            for (const QAction *menu : bar->actions())
                TakeMnemonic(menu->text(), taken, faults);
        }
        if (!widget->isVisible() || widget->window() != root->window())
            continue;
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            TakeMnemonic(button->text(), taken, faults);
        else if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->buddy())
            TakeMnemonic(label->text(), taken, faults);
    }
    return faults;
}

/// Controls that the Tab key does not come by, starting at the first. Of radio buttons it comes by the chosen one
/// alone.
inline QStringList NotReachedByTab(QWidget *root)
{
    const QList<QWidget *> controls = Controls(root);
    QSet<QWidget *> reached;
    if (!controls.isEmpty())
        controls.first()->setFocus(Qt::TabFocusReason);
    for (qsizetype i = 0; i < controls.size() * 2; ++i) {
        QWidget *focus = root->window()->focusWidget();
        if (!focus)
            break;
        reached += focus;
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    QStringList faults;
    for (QWidget *widget : controls) {
        const auto *radio = qobject_cast<QRadioButton *>(widget);
        bool here = reached.contains(widget) || (radio && !radio->isChecked());
        for (const QWidget *part : reached)
            here = here || widget->isAncestorOf(part);
        if (!here)
            faults += NameOf(widget) + QStringLiteral(" is not reached by Tab");
    }
    return faults;
}

/// Controls that look the same with the keyboard and without.
inline QStringList FocusUnseen(QWidget *root)
{
    QStringList faults;
    QWidget *window = root->window();
    QApplication::setActiveWindow(window); // an offscreen platform leaves that to chance
    const QList<QWidget *> controls = Controls(root);
    if (!controls.isEmpty())
        QTest::keyClick(controls.first(), Qt::Key_Tab); // from now on the window is used with keys
    for (QWidget *widget : controls) {
        if (const auto *button = qobject_cast<QPushButton *>(widget); button && button->isDefault())
            continue; // has the mark of the keyboard as long as no other button takes it
        if (QWidget *other = window->focusWidget())
            other->clearFocus();
        const QImage without = window->grab(QRect(widget->mapTo(window, QPoint()), widget->size())).toImage();
        widget->setFocus(Qt::TabFocusReason);
        if (window->grab(QRect(widget->mapTo(window, QPoint()), widget->size())).toImage() == without)
            faults += NameOf(widget) + QStringLiteral(" does not show that it has the keyboard");
    }
    return faults;
}

} // namespace AccessibleWalk
