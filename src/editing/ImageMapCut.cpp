#include "editing/ImageMapCut.h"

#include "document/Editor.h"
#include "document/ImageMapText.h"
#include "platform/surface/DesignSurface.h"

using namespace Qt::StringLiterals;

void DeleteImageMapTag(Editor &editor)
{
    DesignSurface &surface = editor.Surface();
    SurfaceState &state = editor.Selection();
    DomDocument dom = surface.DOM();
    if (dom.SelectionType() != "Control"_L1) {
        dom.PasteHTML(state.LastCutMarkup);
        return;
    }
    state.LastCutMarkup = dom.SelectionControlRange().commonParentElement().outerHTML();
    const QString name = UsedMapName(state.LastCutMarkup);
    if (name.isEmpty())
        return;

    surface.ExecCommand(DECMD_DELETE);
    if (!surface.WaitWhileBusy())
        return;
    const QString base = surface.BaseURL();
    surface.SetDocumentHTML(WithoutImageMap(surface.EngineHTML(), name), DesignSurface::TextForm::Engine);
    surface.SetBaseURL(base);
    surface.WaitWhileBusy();
    editor.Page().HtmlDirty = true; // the surface itself counts a text that it was given as unchanged
    editor.SetDirty();
    editor.SaveDocument();
    editor.Page().FileToLoad = editor.Page().CurrentFilePath;
    if (!editor.Page().FileToLoad.isEmpty()) // a page without a name lies nowhere to be loaded from
        editor.LoadFile();
    surface.setFocus();
}
