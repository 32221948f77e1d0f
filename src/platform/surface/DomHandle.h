#pragma once

#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <memory>

class DesignSurface;

/// One thing in the page that the host holds on to (ranges.js), by a number that no other thing of the surface ever
/// gets. The page forgets it when the last owner goes. Number 0 stands for the document and is nothing to forget.
class DomHandle
{
public:
    DomHandle(std::weak_ptr<DesignSurface *> surface, int number) : m_surface(std::move(surface)), m_number(number) {}
    ~DomHandle();
    Q_DISABLE_COPY_MOVE(DomHandle)

    /// What an operation on `on`, or on the document, gives; null when that is nothing.
    static std::shared_ptr<DomHandle> Make(const std::weak_ptr<DesignSurface *> &surface, const QString &operation,
                                           const DomHandle *on = nullptr);
    static int EventKeyCode(DesignSurface &surface);

    /// Runs an operation that leaves page and selection alone; an invalid value when the thing is gone.
    QVariant Read(const QString &operation, const QJsonObject &values = {}) const;
    /// Runs one that changes them.
    QVariant Write(const QString &operation, const QJsonObject &values = {}) const;

    /// An answer [generation, markup] in engine form, or [generation, text], with server-side code.
    QString Composed(const QVariant &answer) const;
    QString Restored(const QVariant &answer) const;
    /// Markup for the page as it is now.
    QString Protected(const QString &html) const;

    const std::weak_ptr<DesignSurface *> &Surface() const { return m_surface; }

private:
    QJsonObject Request(const QString &operation, QJsonObject values) const;

    std::weak_ptr<DesignSurface *> m_surface; ///< gone with the surface
    int m_number;
};
