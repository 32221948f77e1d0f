#pragma once

#include "platform/MessageBoxes.h"

/// Real boxes. The text is shown as it stands, never taken for rich text: it may hold a piece of the page. The answer
/// that agrees (OK, Yes) is the default. A box carries the object name "MessageBox".
class DesktopMessageBoxes : public MessageBoxes
{
public:
    /// `title` stands over every box; none: the name of the application. It is handed in because a display name makes
    /// Qt append itself to the title of every window, also to one that begins with it.
    explicit DesktopMessageBoxes(QString title = {});

    Answer Ask(QWidget *parent, const QString &text, Buttons buttons, Icon icon) override;

private:
    QString m_title;
};
