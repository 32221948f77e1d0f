#pragma once

#include <QString>

class QWidget;

/// Every question to the user goes through here: the program shows a real box, a test writes down what was asked.
/// All boxes carry the application's name as their title.
class MessageBoxes
{
public:
    enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
    enum class Icon { None, Information, Exclamation, Stop };
    enum class Answer { Ok, Yes, No, Cancel };

    virtual ~MessageBoxes() = default;

    /// Blocks until answered. Closing the box answers Cancel where that is offered, else No, else Ok.
    virtual Answer Ask(QWidget *parent, const QString &text, Buttons buttons, Icon icon) = 0;

    /// A plain message with an OK button.
    void Tell(QWidget *parent, const QString &text, Icon icon = Icon::Information)
    {
        Ask(parent, text, Buttons::Ok, icon);
    }
};
