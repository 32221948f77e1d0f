#include "document/Editor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SharedActions.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

/// One that a selection has or has not.
Command Toggle(Editor &editor, Decmd command, const QString &name, const QString &text, const QString &icon,
               const QString &tip, const QList<QKeySequence> &keys = {})
{
    return SurfaceRow(
        editor, command,
        {.Name = name, .Text = text, .Shortcuts = keys, .Icon = icon, .Tip = tip, .CanTick = true, .Run = {}});
}

Command Step(Editor &editor, Decmd command, const QString &name, const QString &text, const QString &icon,
             const QString &tip)
{
    return SurfaceRow(editor, command, {.Name = name, .Text = text, .Icon = icon, .Tip = tip});
}

} // namespace

std::vector<Command> FormatCommands(Editor &editor)
{
    Command font = Step(editor, DECMD_FONT, u"formatfont"_s, MainForm::tr("&Font..."), u"preferences-desktop-font"_s,
                        MainForm::tr("Choose font, size, color and style"));
    font.Run = [&editor] { editor.Surface().ExecCommand(DECMD_FONT, ExecOption::PromptUser); };
    Command color = Step(editor, DECMD_SETFORECOLOR, u"formatcolor"_s, MainForm::tr("Te&xt Color..."),
                         u"format-text-color"_s, MainForm::tr("Choose the color of the text"));
    color.Run = [&editor] { ChooseTextColor(editor); };
    return {
        Toggle(editor, DECMD_BOLD, u"formatbold"_s, MainForm::tr("&Bold"), u"format-text-bold"_s,
               MainForm::tr("Make the selection bold, or not bold any more"), {Qt::CTRL | Qt::Key_B}),
        Toggle(editor, DECMD_ITALIC, u"formatitalic"_s, MainForm::tr("&Italic"), u"format-text-italic"_s,
               MainForm::tr("Make the selection italic, or upright again"), {Qt::CTRL | Qt::Key_I}),
        Toggle(editor, DECMD_UNDERLINE, u"formatunderline"_s, MainForm::tr("&Underline"), u"format-text-underline"_s,
               MainForm::tr("Underline the selection, or take the line away"), {Qt::CTRL | Qt::Key_U}),
        font,
        color,
        CommandSeparator(),
        Toggle(editor, DECMD_ORDERLIST, u"formatnumbers"_s, MainForm::tr("&Numbered List"), u"format-list-ordered"_s,
               MainForm::tr("Number the paragraphs of the selection")),
        Toggle(editor, DECMD_UNORDERLIST, u"formatbullets"_s, MainForm::tr("Bu&lleted List"),
               u"format-list-unordered"_s, MainForm::tr("Put bullets before the paragraphs of the selection")),
        Step(editor, DECMD_INDENT, u"formatindent"_s, MainForm::tr("In&dent"), u"format-indent-more"_s,
             MainForm::tr("Move the paragraphs in")),
        Step(editor, DECMD_OUTDENT, u"formatoutdent"_s, MainForm::tr("&Outdent"), u"format-indent-less"_s,
             MainForm::tr("Move the paragraphs out again")),
        CommandSeparator(),
        Toggle(editor, DECMD_JUSTIFYLEFT, u"formatleft"_s, MainForm::tr("Align L&eft"), u"format-justify-left"_s,
               MainForm::tr("Align the paragraphs at the left")),
        Toggle(editor, DECMD_JUSTIFYCENTER, u"formatcenter"_s, MainForm::tr("&Center"), u"format-justify-center"_s,
               MainForm::tr("Center the paragraphs")),
        Toggle(editor, DECMD_JUSTIFYRIGHT, u"formatright"_s, MainForm::tr("Align &Right"), u"format-justify-right"_s,
               MainForm::tr("Align the paragraphs at the right")),
        CommandSeparator(),
    };
}

std::vector<Command> BlockFormatCommands(Editor &editor)
{
    std::vector<Command> rows;
    const QStringList names = editor.Surface().ExecCommand(DECMD_GETBLOCKFMTNAMES).toStringList();
    for (const QString &name : names) {
        Command row{.Name = u"FormatSub(%1)"_s.arg(rows.size()),
                    .Text = name,
                    .Tip = MainForm::tr("Make the paragraphs of the selection of this kind"),
                    .CanTick = true};
        row.Run = [&editor, name] { editor.Surface().ExecCommand(DECMD_SETBLOCKFMT, ExecOption::DoDefault, name); };
        row.State = [&editor, name] {
            const CommandState state = StateOnSurface(editor, DECMD_SETBLOCKFMT);
            if (state == CommandState::Disabled)
                return state;
            const QVariant current = editor.Surface().ExecCommand(DECMD_GETBLOCKFMT, ExecOption::DontPromptUser);
            return current.toString() == name ? CommandState::Ticked : CommandState::Enabled;
        };
        rows.push_back(SurfaceRow(editor, DECMD_SETBLOCKFMT, row));
    }
    return rows;
}
