#include "document/Editor.h"
#include "editing/FindTools.h"
#include "editing/ImageMapCut.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"

using namespace Qt::StringLiterals;

namespace {

/// What one command does in each of the two views that are edited.
struct TwoViews
{
    Decmd OnSurface;
    void (SourceEditor::*OnSource)();
    bool (SourceEditor::*Possible)() const = nullptr;
};

CommandState StateOf(Editor &editor, const TwoViews &views)
{
    if (editor.Page().ActiveTab == ViewTab::HtmlSource) {
        const bool possible = views.Possible == nullptr || (editor.Source().*views.Possible)();
        return possible ? CommandState::Enabled : CommandState::Disabled;
    }
    DesignSurface &surface = editor.Surface();
    if (editor.Page().ActiveTab != ViewTab::Normal || surface.Busy() ||
        surface.QueryStatus(views.OnSurface) < DECMDF_ENABLED)
        return CommandState::Disabled;
    return CommandState::Enabled;
}

void RunIn(Editor &editor, const TwoViews &views)
{
    if (editor.Page().ActiveTab == ViewTab::Normal && views.OnSurface == DECMD_CUT)
        DeleteImageMapTag(editor);
    else if (editor.Page().ActiveTab == ViewTab::Normal)
        editor.Surface().ExecCommand(views.OnSurface);
    else if (editor.Page().ActiveTab == ViewTab::HtmlSource)
        (editor.Source().*views.OnSource)();
}

Command Row(Editor &editor, const QString &name, const QString &text, const QList<QKeySequence> &keys,
            const QString &icon, const QString &tip, const TwoViews &views)
{
    return {.Name = name,
            .Text = text,
            .Shortcuts = keys,
            .Icon = icon,
            .Tip = tip,
            .StateOnDrop = true,
            .Run = [&editor, views] { RunIn(editor, views); },
            .State = [&editor, views] { return StateOf(editor, views); }};
}

/// On where the surface can look for text, and in the source.
Command Find(Editor &editor, FindTools &find, void (FindTools::*run)(), Command row)
{
    row.StateOnDrop = true;
    row.Run = [&find, run] { (find.*run)(); };
    row.State = [&editor] { return StateOf(editor, {DECMD_FINDTEXT, nullptr}); };
    return row;
}

} // namespace

std::vector<Command> EditCommands(Editor &editor, FindTools &find)
{
    return {
        Row(editor, u"editundo"_s, MainForm::tr("&Undo"), {Qt::CTRL | Qt::Key_Z}, u"edit-undo"_s,
            MainForm::tr("Take the last change back"), {DECMD_UNDO, &SourceEditor::Undo, &SourceEditor::CanUndo}),
        Row(editor, u"editredo"_s, MainForm::tr("&Redo"), {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
            u"edit-redo"_s, MainForm::tr("Make the change again that was taken back"),
            {DECMD_REDO, &SourceEditor::Redo, &SourceEditor::CanRedo}),
        CommandSeparator(),
        Row(editor, u"editcut"_s, MainForm::tr("Cu&t"), {Qt::CTRL | Qt::Key_X}, u"edit-cut"_s,
            MainForm::tr("Move the selection to the clipboard"), {DECMD_CUT, &SourceEditor::Cut}),
        Row(editor, u"editcopy"_s, MainForm::tr("&Copy"), {Qt::CTRL | Qt::Key_C}, u"edit-copy"_s,
            MainForm::tr("Copy the selection to the clipboard"), {DECMD_COPY, &SourceEditor::Copy}),
        Row(editor, u"editpaste"_s, MainForm::tr("&Paste"), {Qt::CTRL | Qt::Key_V}, u"edit-paste"_s,
            MainForm::tr("Insert what is on the clipboard"), {DECMD_PASTE, &SourceEditor::Paste}),
        Row(editor, u"editselectall"_s, MainForm::tr("Select &All"), {Qt::CTRL | Qt::Key_A}, u"edit-select-all"_s,
            MainForm::tr("Select the whole page"), {DECMD_SELECTALL, &SourceEditor::SelectAll}),
        CommandSeparator(),
        Find(editor, find, &FindTools::Find,
             {.Name = u"editfind"_s,
              .Text = MainForm::tr("&Find"),
              .Shortcuts = {Qt::CTRL | Qt::Key_F},
              .Icon = u"edit-find"_s,
              .Tip = MainForm::tr("Look for words in the page")}),
        Find(editor, find, &FindTools::FindNext,
             {.Name = u"editfindnext"_s,
              .Text = MainForm::tr("Find &Next"),
              .Shortcuts = {Qt::Key_F3},
              .Tip = MainForm::tr("Look for the same words again")}),
        Find(editor, find, &FindTools::Replace,
             {.Name = u"editreplace"_s,
              .Text = MainForm::tr("&Replace..."),
              .Shortcuts = {Qt::CTRL | Qt::Key_H},
              .Icon = u"edit-find-replace"_s,
              .Tip = MainForm::tr("Put other words in place of those found in the page")}),
        Find(editor, find, &FindTools::GlobalReplace,
             {.Name = u"editglobalreplace"_s,
              .Text = MainForm::tr("&Global Find/Replace..."),
              .Shortcuts = {Qt::CTRL | Qt::SHIFT | Qt::Key_F},
              .Tip = MainForm::tr("Look for words, or replace them, in all pages of the folder")}),
        CommandSeparator(),
        {.Name = u"snaptogrid"_s,
         .Text = MainForm::tr("&Snap To Grid"),
         .Tip = MainForm::tr("Move and resize positioned elements in steps of a grid"),
         .CanTick = true,
         .Run = [&surface = editor.Surface()] { surface.SetSnapToGrid(!surface.SnapToGrid()); },
         .State =
             [&surface = editor.Surface()] {
                 return surface.SnapToGrid() ? CommandState::Ticked : CommandState::Enabled;
             }},
    };
}
