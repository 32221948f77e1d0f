#include "shell/RecoveryOffer.h"

#include "document/Editor.h"
#include "document/Recovery.h"

namespace {

/// So many questions at one start; older copies wait for the next.
constexpr int MostQuestions = 5;

MessageBoxes::Answer AskToRestore(Editor &editor, const Recovery::Copy &copy)
{
    const QString page = copy.PagePath.isEmpty() ? QObject::tr("a page without a name") : copy.PagePath;
    const QString question =
        QObject::tr("Inkloom was closed unexpectedly while %1 had unsaved changes. Restore them?").arg(page);
    return editor.Boxes().Ask(editor.Window(), question, MessageBoxes::Buttons::YesNoCancel,
                              MessageBoxes::Icon::Exclamation);
}

} // namespace

void OfferRecovery(Editor &editor)
{
    for (const Recovery::Copy &copy : Recovery::Orphans().mid(0, MostQuestions)) {
        const MessageBoxes::Answer answer = AskToRestore(editor, copy);
        if (answer == MessageBoxes::Answer::Yes) {
            editor.RecoveryCopies().Restore(copy);
            editor.SetStatusPath(editor.Page().CurrentFilePath);
            return;
        }
        if (answer == MessageBoxes::Answer::No)
            Recovery::Discard(copy);
    }
}
