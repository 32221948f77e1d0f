#include "document/Editor.h"
#include "platform/PreviewView.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SharedActions.h"
#include "shell/commands/TabStates.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

CommandState StateOf(Editor &editor, const QString &key)
{
    const PageState &page = editor.Page();
    const bool nowhereToGo = key == "GoBack"_L1 && page.ActiveTab == ViewTab::Normal && page.BackHistory.isEmpty();
    const bool on = IsButtonOn(key, page.ActiveTab) && !page.ToolbarsOff && !nowhereToGo;
    return on ? CommandState::Enabled : CommandState::Disabled;
}

Command Button(Editor &editor, const QString &key, const QString &tip, const QString &icon, std::function<void()> run)
{
    return {.Name = key, .Text = tip, .Icon = icon, .Tip = tip, .Run = std::move(run), .State = [&editor, key] {
                return StateOf(editor, key);
            }};
}

/// A button for a command of a menu. Where that changes the page, it does so in the design view alone.
enum class Reach { AnyView, DesignView };
Command Same(Editor &editor, CommandTable &table, const QString &key, const QString &tip, const QString &icon,
             const QString &command, Reach reach = Reach::AnyView)
{
    Command button = Button(editor, key, tip, icon, [&editor, &table, command, reach] {
        if (reach == Reach::AnyView || editor.Page().ActiveTab == ViewTab::Normal)
            table.Run(command);
    });
    button.Later = table.IsLater(command);
    if (button.Later)
        button.Tip = tip + u'\n' + MainForm::tr("Not available yet");
    return button;
}

/// Plainly, as the keys do: only the menu's Cut knows of image maps.
Command Clip(Editor &editor, const QString &key, const QString &tip, const QString &icon, Decmd onSurface,
             void (SourceEditor::*onSource)())
{
    return Button(editor, key, tip, icon, [&editor, onSurface, onSource] {
        if (editor.Page().ActiveTab == ViewTab::Normal)
            editor.Surface().ExecCommand(onSurface);
        else
            (editor.Source().*onSource)();
    });
}

Command ShowHide(Editor &editor)
{
    Command button = Button(editor, u"showhide"_s, MainForm::tr("Show/Hide Details"), u"visibility"_s, [&editor] {
        DesignSurface &surface = editor.Surface();
        const bool show = !surface.ShowDetails();
        surface.SetShowDetails(show);
        surface.SetShowBorders(show);
    });
    button.CanTick = true;
    button.State = [&editor] {
        const CommandState state = StateOf(editor, u"showhide"_s);
        return state == CommandState::Enabled && editor.Surface().ShowDetails() ? CommandState::Ticked : state;
    };
    return button;
}

CommandState StateOfFormats(Editor &editor)
{
    const bool on = AreFormatsOn(editor.Page().ActiveTab) && !editor.Page().ToolbarsOff;
    return on ? CommandState::Enabled : CommandState::Disabled;
}

Command FormatButton(Editor &editor, const QString &key, const QString &tip, const QString &icon, Decmd command)
{
    return {.Name = key,
            .Text = tip,
            .Icon = icon,
            .Tip = tip,
            .Run = [&editor, command] { editor.Surface().ExecCommand(command); },
            .State = [&editor] { return StateOfFormats(editor); }};
}

/// Pressed while it holds for the whole selection. That is as the page told last: asking the page at every move of the
/// caret would hold up the keys.
Command FormatSwitch(Editor &editor, const QString &key, const QString &tip, const QString &icon, Decmd command)
{
    Command button = FormatButton(editor, key, tip, icon, command);
    button.CanTick = true;
    button.State = [&editor, command] {
        const CommandState state = StateOfFormats(editor);
        const bool pressed = state == CommandState::Enabled && editor.Surface().ShownStatus(command) == DECMDF_LATCHED;
        return pressed ? CommandState::Ticked : state;
    };
    return button;
}

} // namespace

std::vector<Command> PageButtons(Editor &editor, PreviewView &preview, CommandTable &table)
{
    Command back = Button(editor, u"GoBack"_s, MainForm::tr("Go Back"), u"go-previous"_s, [&editor, &preview] {
        if (editor.Page().ActiveTab == ViewTab::Preview)
            preview.GoBack();
        else
            editor.GoBack();
    });
    back.Shortcuts = {Qt::ALT | Qt::Key_Left};
    Command refresh =
        Button(editor, u"Refresh"_s, MainForm::tr("Refresh"), u"view-refresh"_s, [&preview] { preview.Refresh(); });
    refresh.Shortcuts = {Qt::Key_F5};
    return {
        Same(editor, table, u"New"_s, MainForm::tr("New Page"), u"document-new"_s, u"filenew"_s),
        Same(editor, table, u"Open"_s, MainForm::tr("Open Page"), u"document-open"_s, u"fileopen"_s),
        Same(editor, table, u"Save"_s, MainForm::tr("Save Page"), u"document-save"_s, u"filesave"_s),
        Same(editor, table, u"Print"_s, MainForm::tr("Print"), u"document-print"_s, u"fileprint"_s),
        Clip(editor, u"Cut"_s, MainForm::tr("Cut"), u"edit-cut"_s, DECMD_CUT, &SourceEditor::Cut),
        Clip(editor, u"Copy"_s, MainForm::tr("Copy"), u"edit-copy"_s, DECMD_COPY, &SourceEditor::Copy),
        Clip(editor, u"Paste"_s, MainForm::tr("Paste"), u"edit-paste"_s, DECMD_PASTE, &SourceEditor::Paste),
        Same(editor, table, u"Find"_s, MainForm::tr("Find"), u"edit-find"_s, u"editfind"_s),
        Same(editor, table, u"Graphic"_s, MainForm::tr("Insert/Edit Graphic"), u"insert-image"_s, u"InsertSub(0)"_s,
             Reach::DesignView),
        Same(editor, table, u"Table"_s, MainForm::tr("Insert Table"), u"insert-table"_s, u"tablesub(0)"_s,
             Reach::DesignView),
        Same(editor, table, u"Link"_s, MainForm::tr("Insert/Edit Hyperlink"), u"insert-link"_s, u"InsertSub(1)"_s,
             Reach::DesignView),
        Same(editor, table, u"Bookmark"_s, MainForm::tr("Insert Bookmark"), u"bookmark-new"_s, u"insertboomkark"_s,
             Reach::DesignView),
        Same(editor, table, u"Spell"_s, MainForm::tr("Spelling Check"), u"tools-check-spelling"_s, u"spellck"_s,
             Reach::DesignView),
        back,
        refresh,
        Button(editor, u"Stop"_s, MainForm::tr("Stop"), u"process-stop"_s, [&preview] { preview.Stop(); }),
        Same(editor, table, u"help"_s, MainForm::tr("Inkloom Help"), u"help-contents"_s, u"helpcontents"_s),
        ShowHide(editor),
    };
}

std::vector<Command> FormatButtons(Editor &editor)
{
    Command color =
        FormatButton(editor, u"Color"_s, MainForm::tr("Text Color"), u"format-text-color"_s, DECMD_SETFORECOLOR);
    color.Run = [&editor] { ChooseTextColor(editor); };
    return {
        FormatSwitch(editor, u"Bold"_s, MainForm::tr("bold"), u"format-text-bold"_s, DECMD_BOLD),
        FormatSwitch(editor, u"Italic"_s, MainForm::tr("Italic"), u"format-text-italic"_s, DECMD_ITALIC),
        FormatSwitch(editor, u"Underline"_s, MainForm::tr("Underline"), u"format-text-underline"_s, DECMD_UNDERLINE),
        color,
        FormatSwitch(editor, u"LeftJustify"_s, MainForm::tr("Justify Left"), u"format-justify-left"_s,
                     DECMD_JUSTIFYLEFT),
        FormatSwitch(editor, u"Center"_s, MainForm::tr("Center"), u"format-justify-center"_s, DECMD_JUSTIFYCENTER),
        FormatSwitch(editor, u"RightJustify"_s, MainForm::tr("Justify Right"), u"format-justify-right"_s,
                     DECMD_JUSTIFYRIGHT),
        FormatSwitch(editor, u"Numbers"_s, MainForm::tr("Numbering"), u"format-list-ordered"_s, DECMD_ORDERLIST),
        FormatSwitch(editor, u"Bullets"_s, MainForm::tr("Bullet Points"), u"format-list-unordered"_s,
                     DECMD_UNORDERLIST),
        FormatButton(editor, u"Outdent"_s, MainForm::tr("Decrease Indent"), u"format-indent-less"_s, DECMD_OUTDENT),
        FormatButton(editor, u"Indent"_s, MainForm::tr("Increase Indent"), u"format-indent-more"_s, DECMD_INDENT),
    };
}
