#include "platform/BackgroundWork.h"

#include <QMutex>
#include <QSemaphore>

#include <system_error>
#include <thread>

struct BackgroundWork::Job
{
    QSemaphore Done;
    Finish Then;
};

/// Where a thread finds us, or finds that we are gone.
struct BackgroundWork::Mailbox
{
    QMutex Lock;
    BackgroundWork *To = nullptr;
};

BackgroundWork::BackgroundWork(QObject *parent) : QObject(parent), m_mailbox(std::make_shared<Mailbox>())
{
    m_mailbox->To = this;
}

BackgroundWork::~BackgroundWork()
{
    const QMutexLocker lock(&m_mailbox->Lock);
    m_mailbox->To = nullptr;
}

void BackgroundWork::Start(std::function<Finish()> work)
{
    const auto job = std::make_shared<Job>();
    m_jobs.append(job);
    const auto run = [job, mailbox = m_mailbox, work = std::move(work)] {
        job->Then = work();
        job->Done.release();
        const QMutexLocker lock(&mailbox->Lock);
        if (BackgroundWork *to = mailbox->To)
            QMetaObject::invokeMethod(
                to, [to, job] { to->End(job); }, Qt::QueuedConnection);
    };
    try {
        std::thread(run).detach();
    } catch (const std::system_error &) {
        run(); // no thread to be had: better slow than not at all
    }
}

bool BackgroundWork::Settle(int milliseconds)
{
    if (m_jobs.isEmpty())
        return true;
    const std::shared_ptr<Job> job = m_jobs.last();
    if (!job->Done.tryAcquire(1, milliseconds))
        return false;
    End(job);
    return true;
}

void BackgroundWork::End(const std::shared_ptr<Job> &job)
{
    if (m_jobs.removeOne(job) && job->Then)
        job->Then();
}
