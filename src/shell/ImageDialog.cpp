#include "shell/ImageDialog.h"

#include "document/Editor.h"
#include "document/PageTitle.h"
#include "editing/FormImage.h"
#include "platform/surface/DesignSurface.h"
#include "site/FileListModel.h"
#include "site/FilePane.h"

#include <QTextDocumentFragment>

namespace {

QList<FormImage::SitePage> PagesOf(const FilePane &files)
{
    QList<FormImage::SitePage> pages;
    const FileListModel &rows = files.ListTopics();
    for (int row = 0; row < rows.rowCount(); ++row) {
        const QString path = rows.PathOf(row);
        const QString title = TitleOfFile(path).replace(u'<', QStringLiteral("&lt;")); // holds entities, but no tags
        pages.append({QTextDocumentFragment::fromHtml(title).toPlainText(), path});
    }
    return pages;
}

} // namespace

void OpenImageDialog(Editor &editor, const FilePane &files)
{
    FormImage(editor, {.Pages = [&files] { return PagesOf(files); }, .EditMap = {}}, FormImage::Purpose::EditPage,
              editor.Window())
        .exec();
    editor.Surface().setFocus();
}
