#include "platform/surface/DomHandle.h"

#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/SurfacePage.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

DomHandle::~DomHandle()
{
    const auto surface = m_surface.lock();
    if (surface && m_number > 0)
        (*surface)->d->Release(m_number);
}

std::shared_ptr<DomHandle> DomHandle::Make(const std::weak_ptr<DesignSurface *> &surface, const QString &operation,
                                           const DomHandle *on)
{
    const auto living = surface.lock();
    if (!living)
        return nullptr;
    const int number = ++(*living)->d->LastHandle;
    auto made = std::make_shared<DomHandle>(surface, number);
    const DomHandle document(surface, 0);
    return (on ? on : &document)->Read(operation, {{u"as"_s, number}}).toBool() ? made : nullptr;
}

int DomHandle::EventKeyCode(DesignSurface &surface)
{
    return surface.d->EventKey;
}

QJsonObject DomHandle::Request(const QString &operation, QJsonObject values) const
{
    values.insert(u"operation"_s, operation);
    values.insert(u"on"_s, m_number);
    return values;
}

QVariant DomHandle::Read(const QString &operation, const QJsonObject &values) const
{
    const auto surface = m_surface.lock();
    return surface ? (*surface)->d->Ask(u"dom"_s, Request(operation, values)) : QVariant();
}

QVariant DomHandle::Write(const QString &operation, const QJsonObject &values) const
{
    const auto surface = m_surface.lock();
    return surface ? (*surface)->d->Do(u"dom"_s, Request(operation, values)) : QVariant();
}

QString DomHandle::Composed(const QVariant &answer) const
{
    const auto surface = m_surface.lock();
    const QVariantList parts = answer.toList();
    return surface && parts.size() == 2 ? (*surface)->d->Texts.ComposeFragment(parts[0].toInt(), parts[1].toString())
                                        : QString();
}

QString DomHandle::Restored(const QVariant &answer) const
{
    const auto surface = m_surface.lock();
    const QVariantList parts = answer.toList();
    return surface && parts.size() == 2 ? (*surface)->d->Texts.WithIslands(parts[0].toInt(), parts[1].toString())
                                        : QString();
}

QString DomHandle::Protected(const QString &html) const
{
    const auto surface = m_surface.lock();
    return surface ? (*surface)->d->ProtectFragment(html) : html;
}
