#include "shell/CommandTable.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QIcon>
#include <QMenu>
#include <QToolBar>

#include <chrono>

using namespace std::chrono_literals;

Command CommandSeparator(const QString &name)
{
    return {.Name = name, .Text = {}, .Separator = true};
}

CommandTable::CommandTable(QWidget &window) : m_window(window)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(50ms);
    connect(&m_soon, &QTimer::timeout, this, &CommandTable::Refresh);
}

void CommandTable::Add(QMenu *menu, const std::vector<Command> &rows)
{
    menu->setToolTipsVisible(true); // the status bar shows nothing of a row that is disabled
    AddTo(menu, rows);
    menu->installEventFilter(this);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { RefreshOn(menu); });
    connect(menu, &QMenu::aboutToHide, this, [this, menu] { ReleaseKeys(menu); });
}

void CommandTable::Add(QToolBar *bar, const std::vector<Command> &rows)
{
    AddTo(bar, rows);
}

void CommandTable::AddTo(QWidget *host, const std::vector<Command> &rows)
{
    for (const Command &row : rows)
        MakeAction(host, row);
}

void CommandTable::MakeAction(QWidget *host, const Command &row)
{
    auto *action = new QAction(row.Text, host);
    action->setObjectName(row.Name);
    action->setSeparator(row.Separator);
    action->setShortcuts(row.Shortcuts);
    action->setIcon(QIcon::fromTheme(row.Icon));
    action->setStatusTip(row.Tip);
    action->setToolTip(row.Tip);
    action->setCheckable(row.CanTick);
    action->setMenuRole(QAction::NoRole);
    if (row.Run && !row.Later) {
        connect(action, &QAction::triggered, this, [this, row] {
            if (!row.StateOnDrop || row.State() != CommandState::Disabled)
                row.Run();
            RefreshSoon(); // also takes back the tick that Qt flipped
        });
    }
    host->addAction(action);
    if (row.Everywhere)
        m_window.addAction(action);
    m_entries.push_back({row, action, host});
    if (!row.StateOnDrop || row.Later)
        RefreshEntry(m_entries.back());
}

void CommandTable::SetMenuState(QMenu *menu, std::function<bool()> isOn)
{
    m_menus.push_back({menu, std::move(isOn)});
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
    for (const MenuState &menu : m_menus)
        menu.Menu->menuAction()->setEnabled(menu.IsOn());
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

void CommandTable::RefreshBar(const QToolBar *bar)
{
    RefreshOn(bar);
}

QAction *CommandTable::Action(const QString &name) const
{
    const Entry *entry = Find(name);
    return entry ? entry->Shown : nullptr;
}

bool CommandTable::IsLater(const QString &name) const
{
    const Entry *entry = Find(name);
    return !entry || entry->Row.Later;
}

void CommandTable::Run(const QString &name) const
{
    const Entry *entry = Find(name);
    if (entry && entry->Row.Run && !entry->Row.Later)
        entry->Row.Run();
}

QStringList CommandTable::Names() const
{
    QStringList names;
    for (const Entry &entry : m_entries) {
        if (!entry.Row.Separator)
            names.append(entry.Row.Name);
    }
    return names;
}

const CommandTable::Entry *CommandTable::Find(const QString &name) const
{
    for (const Entry &entry : m_entries) {
        if (entry.Row.Name == name)
            return &entry;
    }
    return nullptr;
}

void CommandTable::RefreshOn(const QWidget *host)
{
    for (const Entry &entry : m_entries) {
        if (entry.Host == host)
            RefreshEntry(entry);
    }
}

/// What was greyed when the menu dropped may be possible when its key is pressed: it asks again then.
void CommandTable::ReleaseKeys(const QWidget *host)
{
    for (const Entry &entry : m_entries) {
        if (entry.Host == host && entry.Row.StateOnDrop && !entry.Row.Later)
            entry.Shown->setEnabled(true);
    }
}

void CommandTable::RefreshEntry(const Entry &entry)
{
    CommandState state = entry.Row.State ? entry.Row.State() : CommandState::Enabled;
    if (entry.Row.Later)
        state = CommandState::Disabled;
    entry.Shown->setVisible(state != CommandState::Hidden);
    entry.Shown->setEnabled(state == CommandState::Enabled || state == CommandState::Ticked);
    if (entry.Row.CanTick)
        entry.Shown->setChecked(state == CommandState::Ticked);
    if (entry.Row.Caption)
        entry.Shown->setText(entry.Row.Caption());
}
