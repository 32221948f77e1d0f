#pragma once

#include <QObject>
#include <QTimer>

class Editor;
struct EditingDialogs;

/// The design surface's context menu: a fixed block (0 to 6), then, where the page has something to position, two items
/// on that, and where it has a table, eleven on tables; the indexes behind the fixed block move accordingly.
///
/// What was once offered stays on offer: the flags in SurfaceState are only ever set. Users know a menu that has the
/// table items everywhere after its first use in a table.
class ContextMenu : public QObject
{
    Q_OBJECT

public:
    ContextMenu(Editor &editor, const EditingDialogs &dialogs, QObject *parent = nullptr);

    /// Gives the surface the items.
    void Build();
    void Act(int index);

private:
    void LearnFlags();
    void ActOnTable(int item);
    void OpenSoon(int dialog);
    void Timer1_Timer();

    Editor &m_editor;
    const EditingDialogs &m_dialogs;
    QTimer m_timer1; ///< opens dialogs outside the event of the menu
};
