#include "shell/CommandTable.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QMenu>

#include <chrono>

using namespace std::chrono_literals;

Command CommandSeparator(const QString &name)
{
    return {.Name = name, .Text = {}, .Separator = true};
}

CommandTable::CommandTable(QObject *parent) : QObject(parent)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(50ms);
    connect(&m_soon, &QTimer::timeout, this, &CommandTable::Refresh);
}

void CommandTable::Add(QMenu *menu, const std::vector<Command> &rows)
{
    menu->setToolTipsVisible(true); // the status bar shows nothing of a row that is disabled
    for (const Command &row : rows) {
        auto *action = new QAction(row.Text, menu);
        action->setObjectName(row.Name);
        action->setSeparator(row.Separator);
        action->setShortcuts(row.Shortcuts);
        action->setIcon(QIcon::fromTheme(row.Icon));
        action->setStatusTip(row.Tip);
        action->setToolTip(row.Tip);
        action->setCheckable(row.CanTick);
        action->setMenuRole(QAction::NoRole);
        if (row.Run) {
            connect(action, &QAction::triggered, this, [this, row] {
                if (!row.StateOnDrop || row.State() != CommandState::Disabled)
                    row.Run();
                RefreshSoon(); // also takes back the tick that Qt flipped
            });
        }
        menu->addAction(action);
        m_entries.push_back({row, action, menu});
        if (!row.StateOnDrop)
            RefreshEntry(m_entries.back());
    }
    menu->installEventFilter(this);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { RefreshMenu(menu); });
}

/// The display sends the keys of a quick typist to a menu that has just closed. There they would choose rows that
/// nobody sees; they are meant for what had the keys before.
bool CommandTable::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    const auto *menu = qobject_cast<QMenu *>(watched);
    if (!menu || menu->isVisible())
        return false;
    if (QWidget *target = QApplication::focusWidget())
        QCoreApplication::sendEvent(target, event);
    return true;
}

void CommandTable::Refresh()
{
    for (const Entry &entry : m_entries) {
        if (!entry.Row.StateOnDrop)
            RefreshEntry(entry);
    }
}

void CommandTable::RefreshSoon()
{
    if (!m_soon.isActive())
        m_soon.start();
}

QAction *CommandTable::Action(const QString &name) const
{
    for (const Entry &entry : m_entries) {
        if (entry.Row.Name == name)
            return entry.Shown;
    }
    return nullptr;
}

void CommandTable::RefreshMenu(const QMenu *menu)
{
    for (const Entry &entry : m_entries) {
        if (entry.Menu == menu)
            RefreshEntry(entry);
    }
}

void CommandTable::RefreshEntry(const Entry &entry)
{
    const CommandState state = entry.Row.State ? entry.Row.State() : CommandState::Enabled;
    entry.Shown->setVisible(state != CommandState::Hidden);
    entry.Shown->setEnabled(state == CommandState::Enabled || state == CommandState::Ticked);
    if (entry.Row.CanTick)
        entry.Shown->setChecked(state == CommandState::Ticked);
    if (entry.Row.Caption)
        entry.Shown->setText(entry.Row.Caption());
}
