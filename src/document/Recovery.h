#pragma once

#include "document/RecoveryFile.h"

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <optional>

class Editor;

/// Keeps a copy of unsaved words in the user's state folder, at most one second old, so that a killed program loses
/// nothing. Never beside the page. Removed when the page is saved, its changes are discarded, or the program ends
/// cleanly. One file per running process; a copy whose process is gone is offered at the next start.
class Recovery : public QObject
{
    Q_OBJECT

public:
    explicit Recovery(Editor &editor, QObject *parent = nullptr);
    ~Recovery() override;

    struct Copy
    {
        QString File;     ///< the copy itself
        QString PagePath; ///< the page it belongs to; "" for one without a name
        QString Text;
        QDateTime Time; ///< when the words were last changed
        TextEncoding Encoding;
        FileStamp Stamp; ///< of the page's file as the dead process knew it
    };

    /// Copies left behind by processes that no longer run, newest first. Unreadable ones are passed over.
    static QList<Copy> Orphans();
    /// The copy's text becomes the page, unsaved; the copy stays until the page is saved or its changes discarded.
    /// A page whose file is gone comes back without a name. Where the file was changed since, saving asks first.
    /// Nothing happens when the user keeps the page in hand instead.
    void Restore(const Copy &copy);
    static void Discard(const Copy &copy);

    /// Writes now what the surface or the source view has unsaved; removes the own copy when there is nothing.
    void Update();
    /// Nothing is unsaved any more: the own copy goes.
    void Clear();
    /// The program ends without having asked: what is unsaved is written now and stays for the next start.
    void LeaveBehind();

private:
    void KeepSnapshot();
    void RemoveIfClean();
    void Keep(const QString &text);
    void WriteInBackground(RecoveryFile copy);
    void BackgroundDone();

    Editor &m_editor;
    QString m_file;
    QTimer m_sourceTimer;
    QThreadPool m_writer; ///< of one thread, for big texts
    bool m_leftBehind = false;
    bool m_writing = false;             ///< it has work
    std::optional<RecoveryFile> m_next; ///< the newest text that waits for it
};
