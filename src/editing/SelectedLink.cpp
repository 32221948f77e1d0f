#include "editing/SelectedLink.h"

#include "editing/AttributeText.h"
#include "editing/LinkText.h"
#include "platform/surface/DesignSurface.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

DomElement AnchorAround(DomElement element)
{
    while (!element.IsNull()) {
        if (element.tagName() == "A"_L1 && element.outerHTML().startsWith("<A "_L1))
            return element;
        element = element.parentElement();
    }
    return {};
}

DomTextRange BehindStart(const DomTextRange &selection)
{
    DomTextRange range = selection.duplicate();
    range.collapse();
    range.Move(u"character"_s, 1);
    return range;
}

/// Texts of ranges have a blank for a picture or field, too.
bool EndsWithBlank(const DomTextRange &range)
{
    if (!range.Text().endsWith(u' '))
        return false;
    DomTextRange last = range.duplicate();
    last.collapse(false);
    last.moveStart(u"character"_s, -1);
    static const QRegularExpression object(
        u"<(IMG|INPUT|SELECT|TEXTAREA|BUTTON|OBJECT|EMBED|APPLET|IFRAME|VIDEO|AUDIO|CANVAS)\\b"_s,
        QRegularExpression::CaseInsensitiveOption);
    return !last.HTMLText().contains(object);
}

} // namespace

DomElement SelectedAnchor(DesignSurface &surface)
{
    const DomDocument dom = surface.DOM();
    if (dom.SelectionType() == "Control"_L1)
        return AnchorAround(dom.SelectionControlRange().commonParentElement());
    const DomTextRange selection = dom.SelectionTextRange();
    const DomElement found = AnchorAround(BehindStart(selection).parentElement());
    return found.IsNull() ? AnchorAround(selection.parentElement()) : found;
}

void LeaveOutTrailingBlank(DesignSurface &surface)
{
    DomTextRange selection = surface.DOM().SelectionTextRange();
    if (!EndsWithBlank(selection))
        return;
    selection.moveEnd(u"character"_s, -1);
    selection.Select();
}

void ChangeLink(DesignSurface &surface, const LinkAttributes &was, const LinkAttributes &now)
{
    if (was == now)
        return;
    const DesignSurface::OneStep step(surface);
    // A caret only finds a link; the command would put in a new one where it stands before that.
    const bool caret = surface.SelectionType() == "None"_L1;
    if (now.Address != was.Address && !caret) {
        const bool hasCode = HasServerCode(now.Address); // which goes in as markup below
        surface.ExecCommand(DECMD_HYPERLINK, ExecOption::DontPromptUser, hasCode ? u"#"_s : now.Address);
    }
    DomElement anchor = SelectedAnchor(surface);
    const QString markup = anchor.outerHTML();
    if (markup.isEmpty())
        return;
    const LinkAttributes present = ReadLink(markup);
    LinkAttributes wanted = now;
    if (wanted.Address.isEmpty())
        wanted.Address = present.Address;
    const QString changed = WriteLink(markup, present, wanted);
    if (changed != markup)
        anchor.TakeAttributes(changed);
}

void RemoveLink(DesignSurface &surface)
{
    if (surface.QueryStatus(DECMD_UNLINK) < DECMDF_ENABLED) // the caret stands right before the link
        BehindStart(surface.DOM().SelectionTextRange()).Select();
    surface.ExecCommand(DECMD_UNLINK);
}
