#include "editing/LinkFollowing.h"

#include "document/Editor.h"
#include "document/PathText.h"
#include "editing/LinkText.h"
#include "platform/surface/DesignSurface.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

constexpr int ElementsLookedAt = 3;

/// What is said of an address that the editor cannot load; "" for one that names a file.
QString ReasonToStay(const QString &target)
{
    const QString lower = target.toLower();
    QString reason;
    if (lower.contains("http://"_L1) || lower.contains("https://"_L1) || lower.contains("ftp://"_L1))
        reason = Editor::tr("This is an external URL (%1) and cannot be loaded into the editor. You can test this link "
                            "in the Preview tab.");
    else if (lower.contains("mailto:"_L1))
        reason = Editor::tr("This is a MailTo URL (%1) and cannot be loaded into the editor. You can test this link in "
                            "the Preview tab.");
    else if (lower.contains("javascript:"_L1))
        reason = Editor::tr("This is a Javascript function (%1) and cannot be loaded into the editor. You can test "
                            "this link in the Preview tab.");
    else if (lower.startsWith(u'#'))
        reason = Editor::tr("This is a link to the bookmark \"%1\" in the current document. You can test this link in "
                            "the Preview tab.");
    return reason.isEmpty() ? QString() : reason.arg(target);
}

} // namespace

QString LinkAround(Editor &editor, int reach)
{
    DomElement element = editor.Surface().DOM().SelectionTextRange().parentElement();
    for (int looked = 0; looked < ElementsLookedAt && !element.IsNull(); ++looked) {
        const QString markup = element.outerHTML();
        const qsizetype link = markup.indexOf("<A "_L1, 0, Qt::CaseInsensitive);
        if (link >= 0)
            return link + 1 < reach ? markup.mid(link) : QString();
        element = element.parentElement();
    }
    return {};
}

void FollowLink(Editor &editor, const QString &linkMarkup)
{
    QString target = ReadLink(linkMarkup).Address;
    const QString reason = ReasonToStay(target);
    if (!reason.isEmpty()) {
        editor.Boxes().Tell(editor.Window(), reason);
        return;
    }
    const qsizetype bookmark = target.indexOf(u'#');
    if (bookmark > 0)
        target.truncate(bookmark);
    const QString current = editor.Page().CurrentFilePath;
    const QString path = target.isEmpty() ? QString() : PathFromPageText(target, current);
    if (path.isEmpty() || path.compare(current, Qt::CaseInsensitive) == 0)
        return;
    if (!QFileInfo::exists(path)) {
        editor.Boxes().Tell(editor.Window(), Editor::tr("The file %1 does not exist.").arg(path));
        return;
    }
    editor.Page().FileToLoad = path;
    editor.LoadFile();
}
