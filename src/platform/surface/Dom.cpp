#include "platform/surface/Dom.h"

#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/DomHandle.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

using Handle = std::shared_ptr<DomHandle>;

QVariant Read(const Handle &handle, const QString &operation, const QJsonObject &values = {})
{
    return handle ? handle->Read(operation, values) : QVariant();
}

QString ReadMarkup(const Handle &handle, const QString &operation)
{
    return handle ? handle->Composed(Read(handle, operation)) : QString();
}

QVariant Write(const Handle &handle, const QString &operation, const QJsonObject &values = {})
{
    return handle ? handle->Write(operation, values) : QVariant();
}

void WriteMarkup(const Handle &handle, const QString &operation, const QString &html, QJsonObject values = {})
{
    if (!handle)
        return;
    values.insert(u"html"_s, handle->Protected(html));
    handle->Write(operation, values);
}

Handle Derived(const Handle &handle, const QString &operation)
{
    return handle ? DomHandle::Make(handle->Surface(), operation, handle.get()) : nullptr;
}

QJsonObject Steps(const QString &unit, int count)
{
    return {{u"unit"_s, unit}, {u"count"_s, count}};
}

} // namespace

// ---- elements ------------------------------------------------------------------------------------------------------

QString DomElement::tagName() const
{
    return Read(m_handle, u"tagName"_s).toString();
}

QString DomElement::outerHTML() const
{
    return ReadMarkup(m_handle, u"outerHTML"_s);
}

void DomElement::SetOuterHTML(const QString &html)
{
    WriteMarkup(m_handle, u"setOuterHTML"_s, html);
}

void DomElement::TakeAttributes(const QString &html)
{
    WriteMarkup(m_handle, u"takeAttributes"_s, html);
}

QString DomElement::innerHTML() const
{
    return ReadMarkup(m_handle, u"innerHTML"_s);
}

void DomElement::SetInnerHTML(const QString &html)
{
    WriteMarkup(m_handle, u"setInnerHTML"_s, html);
}

QString DomElement::innerText() const
{
    return m_handle ? m_handle->Restored(Read(m_handle, u"innerText"_s)) : QString();
}

DomElement DomElement::parentElement() const
{
    return DomElement(Derived(m_handle, u"parentElement"_s));
}

void DomElement::insertAdjacentHTML(const QString &where, const QString &html)
{
    WriteMarkup(m_handle, u"insertAdjacentHTML"_s, html, {{u"where"_s, where.toLower()}});
}

// ---- text ranges ---------------------------------------------------------------------------------------------------

QString DomTextRange::HTMLText() const
{
    return ReadMarkup(m_handle, u"htmlText"_s);
}

QString DomTextRange::Text() const
{
    return m_handle ? m_handle->Restored(Read(m_handle, u"text"_s)) : QString();
}

void DomTextRange::SetText(const QString &text)
{
    Write(m_handle, u"setText"_s, {{u"text"_s, text}});
}

void DomTextRange::pasteHTML(const QString &html)
{
    WriteMarkup(m_handle, u"pasteHTML"_s, html);
}

DomElement DomTextRange::parentElement() const
{
    return DomElement(Derived(m_handle, u"parentElement"_s));
}

void DomTextRange::collapse(bool toStart)
{
    Read(m_handle, u"collapse"_s, {{u"toStart"_s, toStart}});
}

void DomTextRange::Select()
{
    Write(m_handle, u"select"_s);
}

int DomTextRange::Move(const QString &unit, int count)
{
    return Read(m_handle, u"move"_s, Steps(unit, count)).toInt();
}

int DomTextRange::moveStart(const QString &unit, int count)
{
    return Read(m_handle, u"moveStart"_s, Steps(unit, count)).toInt();
}

int DomTextRange::moveEnd(const QString &unit, int count)
{
    return Read(m_handle, u"moveEnd"_s, Steps(unit, count)).toInt();
}

bool DomTextRange::findText(const QString &text, int count, int flags)
{
    return Read(m_handle, u"findText"_s, {{u"text"_s, text}, {u"count"_s, count}, {u"flags"_s, flags}}).toBool();
}

void DomTextRange::scrollIntoView()
{
    Read(m_handle, u"scrollIntoView"_s);
}

int DomTextRange::offsetTop() const
{
    return qRound(Read(m_handle, u"offsetTop"_s).toDouble());
}

DomTextRange DomTextRange::duplicate() const
{
    return DomTextRange(Derived(m_handle, u"duplicate"_s));
}

// ---- the document --------------------------------------------------------------------------------------------------

QString DomDocument::SelectionType() const
{
    const auto surface = m_surface.lock();
    return surface ? (*surface)->SelectionType() : u"None"_s;
}

DomTextRange DomDocument::SelectionTextRange() const
{
    return DomTextRange(DomHandle::Make(m_surface, u"selectionRange"_s));
}

DomControlRange DomDocument::SelectionControlRange() const
{
    return DomControlRange(DomElement(DomHandle::Make(m_surface, u"selectedElement"_s)));
}

void DomDocument::PasteHTML(const QString &html)
{
    DomHandle document(m_surface, 0);
    document.Write(u"pasteHTML"_s, {{u"html"_s, document.Protected(html)}});
}

int DomDocument::ReplaceEach(const QString &text, const QString &html, int count, int flags)
{
    DomHandle document(m_surface, 0);
    return document
        .Write(u"replaceEach"_s,
               {{u"text"_s, text}, {u"html"_s, document.Protected(html)}, {u"count"_s, count}, {u"flags"_s, flags}})
        .toInt();
}

DomTextRange DomDocument::BodyTextRange() const
{
    return DomTextRange(DomHandle::Make(m_surface, u"bodyRange"_s));
}

DomElement DomDocument::body() const
{
    return DomElement(DomHandle::Make(m_surface, u"body"_s));
}

int DomDocument::EventKeyCode() const
{
    const auto surface = m_surface.lock();
    return surface ? DomHandle::EventKeyCode(**surface) : 0;
}
