// Drags that come into the design surface from elsewhere.
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/PasteSource.h"
#include "platform/surface/SurfacePage.h"

#include <QDropEvent>
#include <QJsonObject>
#include <QMimeData>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

/// Until then the drag's source has come out of its own wait for the drop.
constexpr int DropSettles = 50; // milliseconds

bool IsItem(const QDropEvent &event)
{
    return event.mimeData()->hasFormat(QLatin1StringView(DesignSurface::ItemMimeType));
}

} // namespace

bool DesignSurface::Private::Drag(QEvent *event)
{
    if (!EverLoaded || Now != Phase::Idle)
        return false;
    if (event->type() == QEvent::DragLeave) {
        DraggedTo.reset();
        Page->CallLater(u"showDropPlace"_s, {}, [](const QVariant &) {});
        return true;
    }
    auto *drop = static_cast<QDropEvent *>(event);
    const bool item = IsItem(*drop);
    if (!item && !HasPasteSource(*drop->mimeData()))
        return false;
    drop->setDropAction(Qt::CopyAction); // a move would make the other program delete what it gave
    drop->accept();
    const QPoint place = (drop->position() / View->zoomFactor()).toPoint();
    // The page is asked from the queue: not while the engine or the other program waits for this event's end.
    if (event->type() == QEvent::Drop) {
        DraggedTo.reset();
        if (item)
            Page->Enqueue([this, place] { DropItem(place); });
        else
            Page->Enqueue([this, place, source = ReadPasteSource(*drop->mimeData())] { Drop(place, source); });
    } else if (!std::exchange(DraggedTo, place)) {
        Page->Enqueue([this, item] {
            if (DraggedTo)
                DragTo(*std::exchange(DraggedTo, {}), item);
        });
    }
    return true;
}

void DesignSurface::Private::DragTo(QPoint place, bool item)
{
    const QJsonObject point{{u"x"_s, place.x()}, {u"y"_s, place.y()}};
    if (item)
        Do(u"caretAtPoint"_s, point);
    Ask(u"showDropPlace"_s, point); // the caret itself does not show while the mouse's owner has the focus
    if (item)
        emit q->DisplayChanged();
}

void DesignSurface::Private::Drop(QPoint place, const PasteSource &source)
{
    if (Do(u"caretAtPoint"_s, QJsonObject{{u"x"_s, place.x()}, {u"y"_s, place.y()}}).toBool()) {
        q->setFocus();
        Paste(source);
    }
}

void DesignSurface::Private::DropItem(QPoint place)
{
    Do(u"caretAtPoint"_s, QJsonObject{{u"x"_s, place.x()}, {u"y"_s, place.y()}});
    q->setFocus();
    emit q->ItemDropped();
    QTimer::singleShot(DropSettles, q, [this] { emit q->DisplayChanged(); });
}
