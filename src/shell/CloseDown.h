#pragma once

#include <QElapsedTimer>
#include <QObject>

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
    /// The desktop ends the session: asks if it may, else keeps unsaved words in a recovery copy.
    void CommitData(QSessionManager &manager);
    /// Ends the program without a question; unsaved words go to a recovery copy.
    void EndNow();

private:
    enum class Copies { Clear, Keep };
    bool QueryUnload();
    void Unload(Copies copies);
    void WriteWindowPlace();
    void LeaveMessageLoops();

    Editor &m_editor;
    bool m_unloaded = false; ///< the settings are written; nothing is asked or written again
    QElapsedTimer m_leaving;
};
