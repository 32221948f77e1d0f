#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

class QAction;
class QMenu;

enum class CommandState {
    Disabled,
    Enabled,
    Ticked, ///< enabled, with a check mark; only for a command that `CanTick`
    Hidden
};

/// One thing that the user can do: what menu, keyboard and toolbar know of it.
struct Command
{
    QString Name; ///< object name of its action
    QString Text; ///< caption with mnemonic
    QList<QKeySequence> Shortcuts = {};
    QString Icon = {}; ///< freedesktop name
    QString Tip = {};  ///< words in the status bar and beside the pointer
    bool CanTick = false;
    bool StateOnDrop = false; ///< asking for the state takes time on a big page: only when the menu drops or it runs
    bool Separator = false;   ///< a line; only Name and State count
    std::function<void()> Run = {};
    std::function<CommandState()> State = {}; ///< asked at every menu drop: cheap, changes nothing; none: enabled
    std::function<QString()> Caption = {};    ///< for a text that changes; asked when State is
};

/// A line between groups of commands.
Command CommandSeparator(const QString &name = {});

/// Every command of the window. Nobody else enables, ticks, hides or renames a command's action.
class CommandTable : public QObject
{
    Q_OBJECT

public:
    explicit CommandTable(QObject *parent = nullptr);

    /// Appends rows to a menu, in order.
    void Add(QMenu *menu, const std::vector<Command> &rows);

    /// Asks every command for its state now.
    void Refresh();
    /// The same in a moment, once for a burst of changes: typing must not wait for menus.
    void RefreshSoon();

    /// The action of a command, for another place that shows it; nullptr when there is none of this name.
    QAction *Action(const QString &name) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry
    {
        Command Row;
        QAction *Shown;
        QMenu *Menu;
    };
    static void RefreshEntry(const Entry &entry);
    void RefreshMenu(const QMenu *menu);

    std::vector<Entry> m_entries;
    QTimer m_soon;
};
