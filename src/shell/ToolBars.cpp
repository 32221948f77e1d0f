#include "shell/ToolBars.h"

#include "document/Editor.h"
#include "shell/commands/Commands.h"
#include "shell/commands/TabStates.h"
#include "shell/FormatBoxes.h"

#include <QMainWindow>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

/// A size that icon themes draw: any other is taken from one that was drawn for menus, where the screen is dense.
constexpr int IconPixels = 22;

QToolBar *NewBar(QMainWindow &window, const QString &name, const QString &title)
{
    auto *bar = new QToolBar(title, &window);
    bar->setObjectName(name);
    bar->setAccessibleName(title);
    bar->setMovable(false);
    bar->setIconSize({IconPixels, IconPixels});
    bar->setContextMenuPolicy(Qt::PreventContextMenu); // nothing there would bring a hidden bar back
    window.addToolBar(bar);
    return bar;
}

} // namespace

ToolBars::ToolBars(QMainWindow &window, Editor &editor, PreviewView &preview, CommandTable &table)
    : m_editor(editor), m_table(table)
{
    table.Add(NewBar(window, u"tbToolBar"_s, tr("Page Tools")), PageButtons(editor, preview, table));
    window.addToolBarBreak();
    m_formats = NewBar(window, u"Toolbar1"_s, tr("Format Tools"));
    m_boxes = std::make_unique<FormatBoxes>(editor, *m_formats);
    m_formats->addSeparator();
    table.Add(m_formats, FormatButtons(editor));

    connect(&editor, &Editor::CommandStatesChanged, this, &ToolBars::UpdateToolbars);
    connect(&editor, &Editor::BackHistoryChanged, this, &ToolBars::UpdateToolbars);
    connect(&editor, &Editor::BlockFormatsRead, this,
            [this](const QStringList &names) { m_boxes->ShowBlockFormats(names); });
}

ToolBars::~ToolBars() = default;

void ToolBars::Follow()
{
    m_table.RefreshBar(m_formats);
    m_boxes->Follow();
}

void ToolBars::UpdateToolbars()
{
    m_table.Refresh();
    m_boxes->SetOn(AreFormatsOn(m_editor.Page().ActiveTab) && !m_editor.Page().ToolbarsOff);
}
