// The user's keys and clicks as events for the host, the context menu, and what the object model needs of the surface.
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/SurfacePage.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QMenu>
#include <QScopedValueRollback>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

DomDocument DesignSurface::DOM()
{
    return DomDocument(d->Self);
}

/// Server-side code in markup that is to go into the page becomes tokens of the page as it is now.
QString DesignSurface::Private::ProtectFragment(const QString &html)
{
    if (FindServerCode(html).isEmpty() && !html.contains("<!"_L1) && !html.contains("<?"_L1))
        return html;
    const QVariant generation = Ask(u"domGeneration"_s);
    return generation.isValid() ? Texts.ProtectFragment(generation.toInt(), html) : html;
}

void DesignSurface::Private::Release(int handle)
{
    if (Released.isEmpty())
        Page->Enqueue(
            [this] { Page->CallLater(u"domRelease"_s, std::exchange(Released, {}), [](const QVariant &) {}); });
    Released.append(handle);
}

void DesignSurface::SetContextMenu(const QStringList &items, const QList<int> &states)
{
    d->MenuItems = items;
    d->MenuStates = states;
}

void DesignSurface::Private::UserEvent(const QString &type, const QJsonValue &data)
{
    if (Now != Phase::Idle)
        return; // the page it came from is going
    const QScopedValueRollback<int> key(EventKey, data.toInt());
    if (type == "onkeydown"_L1)
        emit q->onkeydown();
    else if (type == "onkeyup"_L1)
        emit q->onkeyup();
    else if (type == "onclick"_L1)
        emit q->onclick();
    else if (type == "ondblclick"_L1)
        emit q->ondblclick();
    else if (type == "oncontextmenu"_L1)
        ShowMenu(QPoint(data["x"_L1].toInt(), data["y"_L1].toInt()) * View->zoomFactor());
}

void DesignSurface::Private::ShowMenu(QPoint place)
{
    MenuItems.clear();
    MenuStates.clear();
    emit q->ShowContextMenu(place);
    if (MenuItems.isEmpty())
        return;
    auto *menu = new QMenu(q);
    menu->setObjectName(u"ContextMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (qsizetype i = 0; i < MenuItems.size(); ++i) {
        if (MenuItems[i].isEmpty()) {
            menu->addSeparator();
            continue;
        }
        QAction *action = menu->addAction(MenuItems[i]);
        action->setEnabled(MenuStates.value(i) != 2);
        // From the queue: the menu is closed by then, and its handler may open a window.
        connect(action, &QAction::triggered, q,
                [this, i] { Page->Enqueue([this, i] { emit q->ContextMenuAction(int(i)); }); });
    }
    menu->popup(View->mapToGlobal(place));
}
