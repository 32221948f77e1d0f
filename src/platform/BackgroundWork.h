#pragma once

#include <QList>
#include <QObject>

#include <functional>
#include <memory>

/// Does what may take for ever, such as a question to a dead network folder, in threads of its own that nobody has to
/// wait for: neither the window nor the end of the program.
///
/// The work answers with a function, which then runs in the thread of this object; never, if this object is gone. The
/// work itself must own all that it touches.
class BackgroundWork : public QObject
{
    Q_OBJECT

public:
    using Finish = std::function<void()>;

    explicit BackgroundWork(QObject *parent = nullptr);
    ~BackgroundWork() override;

    void Start(std::function<Finish()> work);
    /// Waits for what was started last, without events, and finishes it: what usually takes a moment is done when the
    /// caller goes on. False when it takes longer; it will finish by itself.
    bool Settle(int milliseconds);
    bool IsBusy() const { return !m_jobs.isEmpty(); }

private:
    struct Job;
    struct Mailbox;
    void End(const std::shared_ptr<Job> &job);

    std::shared_ptr<Mailbox> m_mailbox;
    QList<std::shared_ptr<Job>> m_jobs;
};
