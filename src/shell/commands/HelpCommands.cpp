#include "platform/Help.h"
#include "shell/AboutBox.h"
#include "shell/commands/Commands.h"
#include "shell/MainForm.h"

#include <QApplication>

using namespace Qt::StringLiterals;

std::vector<Command> HelpCommands(QWidget *window)
{
    return {
        {.Name = u"helpcontents"_s,
         .Text = MainForm::tr("&Contents"),
         .Shortcuts = {Qt::SHIFT | Qt::Key_F1},
         .Icon = u"help-contents"_s,
         .Tip = MainForm::tr("Open the manual at its start page"),
         .Run = [] { ShowHelp(u"helpcontents"_s); }},
        {.Name = u"helptopic"_s,
         .Text = MainForm::tr("&Help on This View"),
         .Shortcuts = {Qt::Key_F1},
         .Icon = u"help-contextual"_s,
         .Tip = MainForm::tr("Open the manual where it tells of what you are at"),
         .Run =
             [window] {
                 const QWidget *at = QApplication::focusWidget();
                 ShowHelp(at && at->window() == window ? at : window);
             }},
        {.Name = u"helpindex"_s,
         .Text = MainForm::tr("&Index"),
         .Tip = MainForm::tr("All subjects of the manual from A to Z"),
         .Run = [] { ShowHelp(u"helpindex"_s); }},
        {.Name = u"helpkeys"_s,
         .Text = MainForm::tr("&Keyboard"),
         .Tip = MainForm::tr("All keys of the program"),
         .Run = [] { ShowHelp(u"helpkeys"_s); }},
        CommandSeparator(),
        {.Name = u"helpabout"_s,
         .Text = MainForm::tr("&About Inkloom"),
         .Icon = u"help-about"_s,
         .Tip = MainForm::tr("Version and licence"),
         .Run = [window] { ShowAboutBox(window); }},
    };
}
