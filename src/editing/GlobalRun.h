#pragma once

#include "editing/PageSearch.h"
#include "platform/TextFile.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class DesignSurface;

/// Find or replace through many files, each read, changed and written as the open page is, in a surface that nobody
/// sees. Works in slices between which the window lives; at most one file is in hand at any moment. A file that cannot
/// show the text is not loaded. Each is written whole or not at all, and only if something in it was replaced.
class GlobalRun : public QObject
{
    Q_OBJECT

public:
    explicit GlobalRun(DesignSurface &hidden, QObject *parent = nullptr);

    /// How a file is in use while the run comes to it.
    enum class Hold {
        No,
        Busy,   ///< just being opened: the run waits for that
        Open,   ///< the user edits it, and all of that is in the file: no key is taken until the file is done
        Unsaved ///< there is more in the editor than can be written: the file is left as it is
    };
    struct Job
    {
        QStringList Files;
        FindStep Step;
        bool Replace = false; ///< else each file is left at the first place found
        QString Replacement;  ///< markup

        // As the open page is saved.
        bool Preserved = false;
        bool Exact = false;
        bool CharsetFix = false;

        /// Asked before a file is read to be changed; with Unsaved it says why. Not given: nobody edits any of them.
        std::function<Hold(const QString &path, QString &reason)> HoldOn = {};
    };
    /// Does nothing while a run goes on. `Finished` comes in any case, never before the return.
    void Start(const Job &job);
    /// Ends the run behind the file in hand.
    void Cancel() { m_cancelled = true; }
    bool IsRunning() const { return m_running; }

    /// Replaced in all files of the last run.
    int Total() const { return m_total; }
    bool WasCancelled() const { return m_cancelled; }
    /// How far it came.
    int Done() const { return int(m_at); }
    int Files() const { return int(m_job.Files.size()); }

    /// Brings the last file of the last run into the surface, if it was passed over as one that cannot show the text;
    /// waits for it.
    void HoldLastFile();

signals:
    void Progress(int done, int files);
    /// A file with the text, in the order of the list. When replacing, it has been written.
    void Found(const QString &path);
    /// A file that could not be searched, or not be written and is as it was.
    void Failed(const QString &path, const QString &reason);
    void Finished();

private:
    void Step();
    enum class Reading { Loads, Later, PassedOver };
    Reading Read(const QString &path);
    Hold HoldOn(const QString &path, QString &reason) const;
    void Loaded();
    void Fail(const QString &reason);
    void NextFile();
    void ReplaceInPage(const QString &path);
    QString Write(const QString &path);
    void End();

    DesignSurface &m_hidden;
    Job m_job;
    QTimer m_next;
    QTimer m_patience; ///< with a page that does not come up
    qsizetype m_at = 0;
    TextFileContent m_file; ///< in hand
    QString m_passedOver;   ///< the last file, when it was
    int m_total = 0;
    bool m_running = false;
    bool m_loading = false;
    bool m_open = false; ///< what is in hand was read as what the user edits
    bool m_cancelled = false;
};

/// Words for a file that could not be read or written, without a full stop.
QString FileFaultText(FileError error);
