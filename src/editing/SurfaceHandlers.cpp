#include "editing/SurfaceHandlers.h"

#include "document/Editor.h"
#include "editing/EditingDialogs.h"
#include "editing/LinkFollowing.h"
#include "platform/surface/DesignSurface.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int KeyShift = 16; // codes of the surface's key events
constexpr int KeyCtrl = 17;
constexpr int KeyAlt = 18;
constexpr int KeyS = 83;

// A link must start so early in the markup of an element around the selection: Alt+click is generous, since the element
// may be a format around the link; a double click must hit the link itself.
constexpr int ReachOfClick = 35;
constexpr int ReachOfDoubleClick = 3;

const QString FormElement = u"exform"_s; // a DropMarkup that stands for a dialog

void Open(const std::function<void()> &dialog)
{
    if (dialog)
        dialog();
}

} // namespace

SurfaceHandlers::SurfaceHandlers(Editor &editor, const EditingDialogs &dialogs, QObject *parent)
    : QObject(parent), m_editor(editor), m_dialogs(dialogs), m_menu(editor, dialogs)
{
    const DesignSurface *surface = &editor.Surface();
    connect(surface, &DesignSurface::onclick, this, &SurfaceHandlers::onclick);
    connect(surface, &DesignSurface::ondblclick, this, &SurfaceHandlers::ondblclick);
    connect(surface, &DesignSurface::onkeydown, this, &SurfaceHandlers::onkeydown);
    connect(surface, &DesignSurface::onkeyup, this, &SurfaceHandlers::onkeyup);
    connect(surface, &DesignSurface::DisplayChanged, this, &SurfaceHandlers::DisplayChanged);
    connect(surface, &DesignSurface::ShowContextMenu, this, [this] { m_menu.Build(); });
    connect(surface, &DesignSurface::ContextMenuAction, this, [this](int index) { m_menu.Act(index); });
}

void SurfaceHandlers::onclick()
{
    if (!std::exchange(m_editor.Selection().AltDown, false))
        return;
    if (m_editor.Surface().DOM().SelectionType() == "Control"_L1)
        return;
    const QString link = LinkAround(m_editor, ReachOfClick);
    if (!link.isEmpty())
        FollowLink(m_editor, link);
}

void SurfaceHandlers::ondblclick()
{
    const DomDocument dom = m_editor.Surface().DOM();
    if (dom.SelectionType() != "Control"_L1) {
        if (!LinkAround(m_editor, ReachOfDoubleClick).isEmpty())
            Open(m_dialogs.OpenHyperlink);
        return;
    }
    const QString markup = dom.SelectionControlRange().commonParentElement().outerHTML().toUpper();
    const auto holds = [&](QLatin1String word) { return markup.contains(word); };
    if (holds("JHSECONDARYVIEWER"_L1))
        Open(m_dialogs.OpenJavaPopup);
    if (holds("<IMG"_L1)) {
        m_editor.Selection().ImageDialogEditing = 0;
        Open(m_dialogs.OpenImage);
    }
    if (holds("<INPUT"_L1) || holds("<SELECT"_L1) || holds("<TEXTAREA"_L1))
        Open(m_dialogs.OpenField);
}

void SurfaceHandlers::onkeydown()
{
    SurfaceState &state = m_editor.Selection();
    switch (m_editor.Surface().DOM().EventKeyCode()) {
    case KeyAlt:
        state.AltDown = true;
        break;
    case KeyShift:
        state.ShiftDown = true;
        break;
    case KeyCtrl:
        state.CtrlDown = true;
        break;
    case KeyS: // only where no menu's shortcut took it
        if (state.CtrlDown)
            m_editor.FileSave_Click();
        break;
    default:
        break;
    }
}

void SurfaceHandlers::onkeyup()
{
    SurfaceState &state = m_editor.Selection();
    state.AltDown = state.ShiftDown = state.CtrlDown = false;
}

void SurfaceHandlers::DisplayChanged()
{
    SurfaceState &state = m_editor.Selection();
    if (state.DisplayChangedBusy || m_editor.Page().ActiveTab != ViewTab::Normal)
        return;
    if (state.DragState >= 0) {
        state.DropArmed = true;
    } else if (std::exchange(state.DropArmed, false)) {
        if (state.DropMarkup == FormElement) {
            state.DropMarkup.clear();
            if (m_dialogs.PlaceFormElement)
                m_dialogs.PlaceFormElement(state.DropKind);
            return;
        }
        m_editor.Surface().DOM().PasteHTML(state.DropMarkup);
    }
    emit ToolbarsOutOfDate();
}
