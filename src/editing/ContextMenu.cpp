#include "editing/ContextMenu.h"

#include "document/Editor.h"
#include "editing/EditingDialogs.h"
#include "platform/surface/DesignSurface.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int Greyed = 2; // state of an item

// Items of the block on tables, counted from the last item in front of it.
constexpr int InsertRow = 2;
constexpr int InsertColumn = 3;
constexpr int DeleteRow = 5;
constexpr int DeleteColumn = 6;
constexpr int CellProperties = 8;
constexpr int ColumnProperties = 10;
constexpr int TableProperties = 11;

constexpr int CellDialog = 1; // values of PendingDialog
constexpr int TableDialog = 2;

struct FixedItem
{
    QString Text;
    Decmd Command = DECMD_CUT;
    ExecOption Option = ExecOption::DoDefault;
};

/// Indexes 0 to 6; an empty text is a separator.
QList<FixedItem> FixedItems()
{
    return {{ContextMenu::tr("Cut"), DECMD_CUT},
            {ContextMenu::tr("Copy"), DECMD_COPY},
            {ContextMenu::tr("Paste"), DECMD_PASTE},
            {},
            {ContextMenu::tr("Select All"), DECMD_SELECTALL},
            {},
            {ContextMenu::tr("Font..."), DECMD_FONT, ExecOption::PromptUser}};
}

QStringList TableItems()
{
    return {u""_s,
            ContextMenu::tr("Insert Row"),
            ContextMenu::tr("Insert Column"),
            u""_s,
            ContextMenu::tr("Delete Row"),
            ContextMenu::tr("Delete Column"),
            u""_s,
            ContextMenu::tr("Cell Properties"),
            ContextMenu::tr("Row Properties"),
            ContextMenu::tr("Column Properties"),
            ContextMenu::tr("Table Properties")};
}

} // namespace

ContextMenu::ContextMenu(Editor &editor, const EditingDialogs &dialogs, QObject *parent)
    : QObject(parent), m_editor(editor), m_dialogs(dialogs)
{
    m_timer1.setObjectName(u"Timer1"_s);
    m_timer1.setInterval(100);
    connect(&m_timer1, &QTimer::timeout, this, &ContextMenu::Timer1_Timer);
}

void ContextMenu::LearnFlags()
{
    SurfaceState &state = m_editor.Selection();
    DesignSurface &surface = m_editor.Surface();
    const auto available = [&](Decmd command) { return surface.QueryStatus(command) >= DECMDF_ENABLED; };
    state.ContextHasPosition |= available(DECMD_MAKE_ABSOLUTE);
    state.ContextIsPositioned |= available(DECMD_SEND_TO_BACK);
    state.ContextHasTable |= available(DECMD_INSERTROW);
    state.ContextBaseCount = 6;
    state.ContextPositionCount = state.ContextHasPosition ? 2 : 0;
    state.ContextTableCount = state.ContextHasTable ? 11 : 0;
}

void ContextMenu::Build()
{
    LearnFlags();
    const SurfaceState &state = m_editor.Selection();
    DesignSurface &surface = m_editor.Surface();
    QStringList items;
    QList<int> states;
    for (const FixedItem &item : FixedItems()) {
        items.append(item.Text);
        const bool possible = item.Text.isEmpty() || surface.QueryStatus(item.Command) >= DECMDF_ENABLED;
        states.append(possible ? 0 : Greyed);
    }
    if (state.ContextHasPosition)
        items += {QString(), state.ContextIsPositioned ? tr("Make 1D") : tr("Make 2D")};
    if (state.ContextHasTable)
        items += TableItems();
    while (states.size() < items.size())
        states.append(0);
    surface.SetContextMenu(items, states);
}

void ContextMenu::Act(int index)
{
    const SurfaceState &state = m_editor.Selection();
    DesignSurface &surface = m_editor.Surface();
    if (index >= 0 && index <= state.ContextBaseCount) {
        const FixedItem item = FixedItems().value(index);
        if (!item.Text.isEmpty())
            surface.ExecCommand(item.Command, item.Option);
        return;
    }
    if (state.ContextHasPosition && index == state.ContextBaseCount + 2) {
        surface.ExecCommand(DECMD_MAKE_ABSOLUTE);
        return;
    }
    if (state.ContextHasTable) {
        m_editor.save_sourceblank_error();
        ActOnTable(index - state.ContextBaseCount - state.ContextPositionCount);
    }
}

void ContextMenu::ActOnTable(int item)
{
    DesignSurface &surface = m_editor.Surface();
    switch (item) {
    case InsertRow:
        surface.ExecCommand(DECMD_INSERTROW);
        break;
    case InsertColumn:
        surface.ExecCommand(DECMD_INSERTCOL);
        break;
    case DeleteRow:
        surface.ExecCommand(DECMD_DELETEROWS);
        break;
    case DeleteColumn:
        surface.ExecCommand(DECMD_DELETECOLS);
        break;
    case TableProperties:
        OpenSoon(TableDialog);
        break;
    default:
        if (item < CellProperties || item > ColumnProperties)
            break;
        m_editor.Selection().CellScope = item - CellProperties;
        OpenSoon(CellDialog);
    }
}

void ContextMenu::OpenSoon(int dialog)
{
    m_editor.Selection().PendingDialog = dialog;
    m_timer1.start();
}

void ContextMenu::Timer1_Timer()
{
    m_timer1.stop(); // a modal dialog runs timers
    const int dialog = std::exchange(m_editor.Selection().PendingDialog, 0);
    const auto &open = dialog == CellDialog ? m_dialogs.OpenCellProperties : m_dialogs.OpenTableProperties;
    if (dialog != 0 && open)
        open();
}
