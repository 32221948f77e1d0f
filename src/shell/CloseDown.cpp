#include "shell/CloseDown.h"

#include "document/Editor.h"
#include "document/Recovery.h"
#include "platform/Settings.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"
#include "platform/Twips.h"
#include "shell/RecentFiles.h"

#include <QApplication>
#include <QFileInfo>
#include <QSessionManager>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto RetryInterval = 20ms;
constexpr qint64 LongestLeaving = 5000;

} // namespace

CloseDown::CloseDown(Editor &editor, QObject *parent) : QObject(parent), m_editor(editor) {}

bool CloseDown::Close()
{
    if (m_unloaded)
        return true;
    const bool insideAWait = thread()->loopLevel() > 1;
    if (insideAWait || m_editor.App().StartingUp || m_editor.Surface().Busy()) {
        QTimer::singleShot(RetryInterval, m_editor.Window(), &QWidget::close);
        return false;
    }
    if (m_settled && m_settled->Words == Words()) {
        m_editor.App().ClosingDown = true;
        Unload(m_settled->Copy);
        return true;
    }
    if (!QueryUnload())
        return false;
    Unload(Copies::Clear);
    return true;
}

void CloseDown::CommitData(QSessionManager &manager)
{
    const bool mayAsk = manager.allowsInteraction();
    if (!EndSession(mayAsk ? Questions::Allowed : Questions::Forbidden))
        manager.cancel();
    if (mayAsk)
        manager.release();
}

bool CloseDown::EndSession(Questions questions)
{
    m_settled.reset();
    if (questions == Questions::Forbidden) {
        m_editor.RecoveryCopies().Update();
        m_settled = {Words(), Copies::Keep};
        return true;
    }
    const Editor::Prompted answer = m_editor.PromptSaveChanges();
    if (answer == Editor::Prompted::Cancel)
        return false;
    // Yes may have ended in a Save As that was cancelled.
    const bool lost = answer != Editor::Prompted::No && m_editor.HasUnsavedChanges();
    m_settled = {Words(), lost ? Copies::Keep : Copies::Clear};
    return true;
}

/// All that a change would change.
QString CloseDown::Words() const
{
    const PageState &page = m_editor.Page();
    return QStringList{m_editor.Surface().DocumentHTML(),
                       m_editor.Source().Text(),
                       page.EditTitle,
                       page.EditStyle,
                       page.TextMetaKeys,
                       page.TextMetaDesc}
        .join(QChar::Null);
}

void CloseDown::EndNow()
{
    if (!m_unloaded) {
        m_editor.App().ClosingDown = true;
        Unload(Copies::Keep);
    }
    m_leaving.start();
    LeaveMessageLoops();
}

/// Dialogs and waits are message loops inside the outermost one. Each is left in its own way first, since code behind
/// it still runs; only then is the outermost one told to end.
void CloseDown::LeaveMessageLoops()
{
    if (thread()->loopLevel() > 1 && m_leaving.elapsed() < LongestLeaving) {
        if (QWidget *dialog = QApplication::activeModalWidget())
            dialog->close();
        QTimer::singleShot(RetryInterval, this, &CloseDown::LeaveMessageLoops);
        return;
    }
    if (thread()->loopLevel() > 0)
        QCoreApplication::exit();
}

bool CloseDown::QueryUnload()
{
    m_editor.App().ClosingDown = true;
    if (m_editor.Source().IsModified())
        m_editor.Page().HtmlDirty = true;
    if (m_editor.PromptSaveChanges() != Editor::Prompted::Cancel)
        return true;
    m_editor.App().ClosingDown = false;
    return false;
}

void CloseDown::Unload(Copies copies)
{
    Settings &ini = m_editor.Ini();
    const AppState &app = m_editor.App();
    const QString section = u"Settings"_s;
    WriteWindowPlace();
    const QString &path = m_editor.Page().CurrentFilePath;
    // A page without a name has a name-like mark after a question; it is no file to open at the next start.
    ini.SetIni(section, u"last_file"_s, QFileInfo(path).isAbsolute() ? path : QString());
    ini.SetIni(section, u"showpane"_s, app.PaneHidden ? u"0"_s : u"1"_s);
    RecentFiles::Write(app, ini);
    ini.SetIni(section, u"preserveHTML"_s, app.PreserveHtml ? u"1"_s : u"0"_s);
    ini.SetIni(section, u"exactsource"_s, app.ExactSource ? u"1"_s : u"0"_s);
    m_unloaded = true;
    m_editor.RemovePreviewFile();
    Recovery &recovery = m_editor.RecoveryCopies();
    if (copies == Copies::Keep)
        recovery.LeaveBehind();
    // No late event of the surface may bring back a copy of what the user has just given up.
    m_editor.Surface().disconnect(&recovery);
    if (copies == Copies::Clear)
        recovery.Clear();
}

void CloseDown::WriteWindowPlace()
{
    Settings &ini = m_editor.Ini();
    const QWidget &window = *m_editor.Window();
    const auto write = [&ini](const QString &key, int pixels) {
        ini.SetIni(u"Settings"_s, key, QString::number(qRound(TwipsFromPixels(pixels))));
    };
    const QRect place = window.frameGeometry();
    write(u"pos_x"_s, place.x());
    write(u"pos_y"_s, place.y());
    write(u"pos_w"_s, place.width());
    write(u"pos_h"_s, place.height());
    ini.SetIni(u"Settings"_s, u"pos_max"_s, window.isMaximized() ? u"1"_s : u"0"_s);
}
