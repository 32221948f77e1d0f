#pragma once

#include "platform/MessageBoxes.h"

#include <QGuiApplication>

/// Real boxes. The text is shown as it stands, never taken for rich text: it may hold a piece of the page. The answer
/// that agrees (OK, Yes) is the default. A box carries the object name "MessageBox".
class DesktopMessageBoxes : public MessageBoxes
{
public:
    explicit DesktopMessageBoxes(QString title = QGuiApplication::applicationDisplayName());

    Answer Ask(QWidget *parent, const QString &text, Buttons buttons, Icon icon) override;

private:
    QString m_title;
};
