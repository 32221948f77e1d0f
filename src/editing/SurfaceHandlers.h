#pragma once

#include "editing/ContextMenu.h"

#include <QObject>

class Editor;
struct EditingDialogs;

/// What the events of the design surface do: clicks, keys, the context menu, and its change after a drag.
class SurfaceHandlers : public QObject
{
    Q_OBJECT

public:
    /// Connects itself to the surface of `editor`. `dialogs` outlives it and may be filled in later.
    SurfaceHandlers(Editor &editor, const EditingDialogs &dialogs, QObject *parent = nullptr);

signals:
    /// Selection or page changed in the Normal view: toolbars and boxes are to show what holds there now.
    void ToolbarsOutOfDate();

private:
    void onclick();
    void ondblclick();
    void onkeydown();
    void onkeyup();
    void DisplayChanged();

    Editor &m_editor;
    const EditingDialogs &m_dialogs;
    ContextMenu m_menu;
};
