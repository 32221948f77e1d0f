#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

class QAction;
class QMenu;
class QToolBar;
class QWidget;

enum class CommandState {
    Disabled,
    Enabled,
    Ticked, ///< enabled, with a check mark; only for a command that `CanTick`
    Hidden
};

/// One thing that the user can do: what menu, keyboard and toolbar know of it.
struct Command
{
    QString Name; ///< object name of its action; of a button, its key
    QString Text; ///< caption with mnemonic
    QList<QKeySequence> Shortcuts = {};
    QString Icon = {}; ///< freedesktop name
    QString Tip = {};  ///< words in the status bar and beside the pointer
    bool CanTick = false;
    bool StateOnDrop = false; ///< asking for the state takes time on a big page: only when the menu drops or it runs
    bool Everywhere = false;  ///< its keys work in views, too, that its menu is off in
    bool Later = false;       ///< what it opens is still to come: it shows, and is never enabled
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
    explicit CommandTable(QWidget &window);

    /// Appends rows to a menu or as buttons to a toolbar, in order.
    void Add(QMenu *menu, const std::vector<Command> &rows);
    void Add(QToolBar *bar, const std::vector<Command> &rows);
    /// A menu that cannot always be dropped. While it is off, so are the keys of its commands.
    void SetMenuState(QMenu *menu, std::function<bool()> isOn);

    /// Asks every command and menu for its state now.
    void Refresh();
    /// The same in a moment, once for a burst of changes: typing must not wait for menus.
    void RefreshSoon();
    /// Asks only the commands of this toolbar.
    void RefreshBar(const QToolBar *bar);

    /// The action of a command, for another place that shows it; nullptr when there is none of this name.
    QAction *Action(const QString &name) const;
    /// For a button that does what a menu's command does: whether that is still to come, and doing it whatever its
    /// state is in the menu.
    bool IsLater(const QString &name) const;
    void Run(const QString &name) const;
    /// Names of all commands, menus before toolbars.
    QStringList Names() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry
    {
        Command Row;
        QAction *Shown;
        QWidget *Host;
    };
    struct MenuState
    {
        QMenu *Menu;
        std::function<bool()> IsOn;
    };
    void AddTo(QWidget *host, const std::vector<Command> &rows);
    void MakeAction(QWidget *host, const Command &row);
    const Entry *Find(const QString &name) const;
    static void RefreshEntry(const Entry &entry);
    void RefreshOn(const QWidget *host);
    void ReleaseKeys(const QWidget *host);

    QWidget &m_window;
    std::vector<Entry> m_entries;
    std::vector<MenuState> m_menus;
    QTimer m_soon;
};
