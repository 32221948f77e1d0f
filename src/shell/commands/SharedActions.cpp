#include "shell/commands/SharedActions.h"

#include "document/ColorText.h"
#include "document/Editor.h"
#include "platform/SourceEditor.h"

bool CanPrint(Editor &editor)
{
    const ViewTab view = editor.Page().ActiveTab;
    return view == ViewTab::HtmlSource || (view == ViewTab::Normal && !editor.Surface().Busy());
}

void PrintPage(Editor &editor)
{
    if (editor.Page().ActiveTab == ViewTab::Normal) {
        editor.Surface().setFocus();
        editor.Surface().Print(editor.Dialogs());
    } else if (editor.Page().ActiveTab == ViewTab::HtmlSource) {
        editor.Source().Print(editor.Dialogs());
    }
}

void ChooseTextColor(Editor &editor)
{
    const QString now = editor.Surface().ExecCommand(DECMD_GETFORECOLOR).toString();
    if (editor.ChooseAColor(quint32(RevFormatRGBString(now))))
        editor.Surface().ExecCommand(DECMD_SETFORECOLOR, ExecOption::DoDefault, FormatRGBString(editor.ChosenColor));
}
