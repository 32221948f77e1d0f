#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/commands/SharedActions.h"
#include "shell/commands/SurfaceRows.h"
#include "shell/MainForm.h"
#include "shell/OpenPage.h"
#include "shell/RecentFiles.h"
#include "site/SaveTemplate.h"

using namespace Qt::StringLiterals;

namespace {

std::vector<Command> PageRows(Editor &editor, OpenPage &pages)
{
    return {
        {.Name = u"filenew"_s,
         .Text = MainForm::tr("&New Page..."),
         .Shortcuts = {Qt::CTRL | Qt::Key_N, Qt::Key_F2},
         .Icon = u"document-new"_s,
         .Tip = MainForm::tr("Make a new page from a template"),
         .Run = [&pages] { pages.FileNew_Click(); }},
        {.Name = u"fileopen"_s,
         .Text = MainForm::tr("&Open..."),
         .Shortcuts = {Qt::CTRL | Qt::Key_O},
         .Icon = u"document-open"_s,
         .Tip = MainForm::tr("Open a page in this window"),
         .Run = [&pages] { pages.OpenProject_Click(); }},
        {.Name = u"newwin"_s,
         .Text = MainForm::tr("Open in New Editor &Window..."),
         .Icon = u"window-new"_s,
         .Tip = MainForm::tr("Open a page in a second window"),
         .Run = [&pages] { pages.newwin_Click(); }},
        CommandSeparator(),
        {.Name = u"filesave"_s,
         .Text = MainForm::tr("&Save"),
         .Shortcuts = {Qt::CTRL | Qt::Key_S},
         .Icon = u"document-save"_s,
         .Tip = MainForm::tr("Save the page"),
         .Everywhere = true,
         .Run = [&editor] { editor.FileSave_Click(); }},
        {.Name = u"filesaveas"_s,
         .Text = MainForm::tr("Save &As..."),
         .Shortcuts = {Qt::CTRL | Qt::SHIFT | Qt::Key_S},
         .Icon = u"document-save-as"_s,
         .Tip = MainForm::tr("Save the page under another name"),
         .Run = [&editor] { editor.FileSaveAs_Click(); }},
        {.Name = u"saveastemplate"_s,
         .Text = MainForm::tr("Save Copy of Page as &Template..."),
         .Icon = u"document-save-as-template"_s,
         .Tip = MainForm::tr("Keep a copy of the page to start new pages from"),
         .Run = [&editor] { SaveCopyAsTemplate(editor); }},
        CommandSeparator(),
        {.Name = u"fileprint"_s,
         .Text = MainForm::tr("&Print..."),
         .Shortcuts = {Qt::CTRL | Qt::Key_P},
         .Icon = u"document-print"_s,
         .Tip = MainForm::tr("Print the page, or its source"),
         .Run = [&editor] { PrintPage(editor); },
         .State = [&editor] { return CanPrint(editor) ? CommandState::Enabled : CommandState::Disabled; }},
        NotYetAvailable({.Name = u"viewcurrbro"_s, .Text = MainForm::tr("View Current Page in &Browser(s)")}),
        CommandSeparator(),
    };
}

Command RecentRow(Editor &editor, OpenPage &pages, int row)
{
    return {
        .Name = u"recent(%1)"_s.arg(row),
        .Text = {},
        .Tip = MainForm::tr("Open this page again"),
        .Run = [&pages, row] { pages.recent_Click(row); },
        .State = [&editor,
                  row] { return row < editor.App().RecentList.size() ? CommandState::Enabled : CommandState::Hidden; },
        .Caption = [&editor, row] { return RecentFiles::Captions(editor.App()).value(row); }};
}

} // namespace

std::vector<Command> FileCommands(Editor &editor, OpenPage &pages)
{
    std::vector<Command> rows = PageRows(editor, pages);
    for (int row = 0; row < RecentFiles::VisibleRows; ++row)
        rows.push_back(RecentRow(editor, pages, row));
    Command line = CommandSeparator(u"fileexitsep"_s);
    line.State = [&editor] { return editor.App().RecentList.isEmpty() ? CommandState::Hidden : CommandState::Enabled; };
    rows.push_back(line);
    rows.push_back({.Name = u"fileexit"_s,
                    .Text = MainForm::tr("E&xit"),
                    .Shortcuts = {Qt::CTRL | Qt::Key_Q},
                    .Icon = u"application-exit"_s,
                    .Tip = MainForm::tr("Close this window"),
                    .Everywhere = true,
                    .Run = [&editor] { editor.Window()->close(); }});
    return rows;
}
