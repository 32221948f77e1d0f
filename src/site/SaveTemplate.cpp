#include "site/SaveTemplate.h"

#include "document/Editor.h"
#include "document/PageOutput.h"
#include "document/PageSaver.h"
#include "site/Templates.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

void SaveCopyAsTemplate(Editor &editor)
{
    MakeTemplatesFolder(editor.App());
    FileDialogs::Request request;
    request.Title = Editor::tr("Save Copy as Template");
    request.Filter = Editor::tr("HTML Files (*.htm*)|*.htm*");
    request.DefaultExtension = u"htm"_s;
    request.Folder = FolderForNewTemplate(editor.App());
    if (IsPageName(editor.Page().CurrentFilePath))
        request.FileName = QFileInfo(editor.Page().CurrentFilePath).fileName();
    QString path = editor.Dialogs().Save(editor.Window(), request).value_or(QString());
    if (path.isEmpty())
        return;
    if (!QFileInfo(path).fileName().contains(u'.'))
        path += u".htm"_s;
    if (editor.SaveHTML(path)) {
        editor.Boxes().Tell(editor.Window(), Editor::tr("A copy of this page has been saved to %1").arg(path));
        return;
    }
    editor.Boxes().Tell(
        editor.Window(),
        Editor::tr("Error occurred while saving document: %1.").arg(SaveErrorText(editor.LastSaveError)),
        MessageBoxes::Icon::Stop);
}
