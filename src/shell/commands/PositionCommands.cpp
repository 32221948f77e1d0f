#include "document/Editor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

std::vector<Command> PositionCommands(Editor &editor)
{
    const auto row = [&editor](int index, Decmd command, const QString &text, const QString &tip,
                               const QString &icon = {}) {
        return SurfaceRow(editor, command,
                          {.Name = u"D2DSub(%1)"_s.arg(index), .Text = text, .Icon = icon, .Tip = tip});
    };
    Command absolute = row(0, DECMD_MAKE_ABSOLUTE, MainForm::tr("Set Position Attribute To Absolute"),
                           MainForm::tr("Place the element anywhere on the page, or put it back into the text"));
    absolute.Caption = [&editor] {
        const bool positioned = StateOnSurface(editor, DECMD_MAKE_ABSOLUTE) == CommandState::Ticked;
        return positioned ? MainForm::tr("Set Position Attribute To 1D")
                          : MainForm::tr("Set Position Attribute To Absolute");
    };
    Command lock = row(8, DECMD_LOCK_ELEMENT, MainForm::tr("Lock Element"),
                       MainForm::tr("Keep the element from being moved and resized"), u"object-locked"_s);
    lock.CanTick = true;
    return {
        absolute,
        row(1, DECMD_BRING_TO_FRONT, MainForm::tr("Bring To Front"), MainForm::tr("Show the element above all others"),
            u"object-order-front"_s),
        row(2, DECMD_SEND_TO_BACK, MainForm::tr("Send To Back"), MainForm::tr("Show the element below all others"),
            u"object-order-back"_s),
        row(3, DECMD_BRING_FORWARD, MainForm::tr("Bring Forward"), MainForm::tr("Move the element up by one"),
            u"object-order-raise"_s),
        row(4, DECMD_SEND_BACKWARD, MainForm::tr("Send Back"), MainForm::tr("Move the element down by one"),
            u"object-order-lower"_s),
        row(5, DECMD_BRING_ABOVE_TEXT, MainForm::tr("Bring Above Text"),
            MainForm::tr("Show the element in front of the text")),
        row(6, DECMD_SEND_BELOW_TEXT, MainForm::tr("Send Below Text"),
            MainForm::tr("Show the element behind the text")),
        CommandSeparator(),
        lock,
    };
}
