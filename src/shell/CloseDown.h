#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <optional>

class Editor;
class QSessionManager;

/// The end of the window: the question about unsaved changes, what is kept for the next start, and the ends that leave
/// no time to ask.
class CloseDown : public QObject
{
    Q_OBJECT

public:
    explicit CloseDown(Editor &editor, QObject *parent = nullptr);

    /// Offers to save and writes the settings. False: the window stays, because the user wants it or because a load is
    /// waiting below this call; in that case the window is closed again as soon as it is through.
    bool Close();
    enum class Questions { Allowed, Forbidden };
    /// The desktop ends the session: asks if it may, else keeps unsaved words in a recovery copy. False: the user wants
    /// the session to go on. The window that is closed after this asks no second time, unless something was changed.
    bool EndSession(Questions questions);
    void CommitData(QSessionManager &manager);
    /// Ends the program without a question; unsaved words go to a recovery copy.
    void EndNow();

private:
    enum class Copies { Clear, Keep };
    /// What was decided when the session was about to end, and for which words.
    struct Settled
    {
        QString Words;
        Copies Copy;
    };
    QString Words() const;
    bool QueryUnload();
    void Unload(Copies copies);
    void WriteWindowPlace();
    void LeaveMessageLoops();

    Editor &m_editor;
    std::optional<Settled> m_settled;
    bool m_unloaded = false; ///< the settings are written; nothing is asked or written again
    QElapsedTimer m_leaving;
};
