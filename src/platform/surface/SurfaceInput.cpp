#include "platform/surface/SurfaceInput.h"

#include "platform/surface/SurfacePage.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

constexpr int FlushLimit = 1500; // milliseconds

/// Keys that the page answers itself; a menu entry with the same shortcut must not run as well.
bool BelongsToPage(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier))
        return event.key() == Qt::Key_Z;
    if (modifiers != Qt::ControlModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Z:
    case Qt::Key_Y:
    case Qt::Key_A:
    case Qt::Key_B:
    case Qt::Key_I:
    case Qt::Key_U:
        return true;
    default:
        return false;
    }
}

/// Keys of menus that the engine of an X11 desktop takes for its own: this one for deleting to the end of the line.
bool BelongsToMenu(const QKeyEvent &event)
{
    return event.key() == Qt::Key_K && event.modifiers() == Qt::ControlModifier;
}

} // namespace

SurfaceInput::SurfaceInput(QWebEngineView *view, SurfacePage *page, QObject *parent)
    : QObject(parent), m_view(view), m_page(page)
{}

void SurfaceInput::Watch()
{
    QWidget *widget = m_view->focusProxy();
    if (widget == m_widget)
        return;
    if (m_widget)
        m_widget->removeEventFilter(this);
    m_widget = widget;
    if (!widget)
        return;
    widget->installEventFilter(this);
    widget->setAccessibleName(tr("Page as it looks")); // it has the keyboard, and no name of its own
}

bool SurfaceInput::Flush()
{
    if (!m_pending || !m_widget || m_flushing || !m_page->RendererAlive())
        return false;
    const QScopedValueRollback<bool> flushing(m_flushing, true);
    m_pending = false;
    const std::optional<QJsonValue> seen = m_page->WaitForEvent(
        u"barrier"_s,
        [this] {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_F24, Qt::NoModifier);
            QKeyEvent release(QEvent::KeyRelease, Qt::Key_F24, Qt::NoModifier);
            QCoreApplication::sendEvent(m_widget, &press);
            QCoreApplication::sendEvent(m_widget, &release);
        },
        FlushLimit);
    m_sent = seen ? seen->toInt() : -1;
    return true;
}

void SurfaceInput::Seen(int count)
{
    if (count == m_sent)
        m_pending = false;
}

void SurfaceInput::Restart()
{
    m_sent = 0;
    m_pending = false;
}

SurfaceInput::Signal SurfaceInput::ClipboardSignal(const QKeyEvent &event)
{
    struct Row
    {
        Qt::KeyboardModifiers Modifiers;
        int Key;
        Signal What;
    };
    static const Row rows[]{
        {Qt::ControlModifier, Qt::Key_X, &SurfaceInput::Cut},
        {Qt::ControlModifier, Qt::Key_C, &SurfaceInput::Copy},
        {Qt::ControlModifier, Qt::Key_V, &SurfaceInput::Paste},
        {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_V, &SurfaceInput::PasteText},
        {Qt::ShiftModifier, Qt::Key_Delete, &SurfaceInput::Cut},
        {Qt::ControlModifier, Qt::Key_Insert, &SurfaceInput::Copy},
        {Qt::ShiftModifier, Qt::Key_Insert, &SurfaceInput::Paste},
        {Qt::NoModifier, Qt::Key_Cut, &SurfaceInput::Cut},
        {Qt::NoModifier, Qt::Key_Copy, &SurfaceInput::Copy},
        {Qt::NoModifier, Qt::Key_Paste, &SurfaceInput::Paste},
    };
    for (const Row &row : rows)
        if (event.key() == row.Key && (event.modifiers() & ~Qt::KeypadModifier) == row.Modifiers)
            return row.What;
    return nullptr;
}

bool SurfaceInput::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        if (BelongsToPage(*static_cast<QKeyEvent *>(event)) || ClipboardSignal(*static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        if (BelongsToMenu(*static_cast<QKeyEvent *>(event))) {
            event->ignore();
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (BelongsToMenu(*static_cast<QKeyEvent *>(event))) // whose command is off
            return true;
        if (const Signal signal = ClipboardSignal(*static_cast<QKeyEvent *>(event))) {
            emit(this->*signal)();
            return true;
        }
        [[fallthrough]];
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        if (!m_flushing) {
            ++m_sent;
            m_pending = true;
        }
        break;
    case QEvent::InputMethod:
        m_sent = -1; // not told by the page in these terms: only a barrier counts again
        m_pending = true;
        break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        // What the engine would make of a drop is styled spans, or another page.
        if (!m_drags || !m_drags(event))
            event->ignore();
        return true;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
