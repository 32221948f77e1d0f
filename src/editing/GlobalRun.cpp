#include "editing/GlobalRun.h"

#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "document/PageText.h"
#include "document/SourceCleanUp.h"
#include "editing/PageFilter.h"
#include "platform/SafeFile.h"
#include "platform/surface/DesignSurface.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int SliceMilliseconds = 15;
constexpr int BusyMilliseconds = 50;
constexpr int PatienceMilliseconds = 60000;
constexpr qint64 LargestPage = 256LL * 1024 * 1024;
constexpr quint16 MatchCase = 4;

/// A piece that is put into pages by the server, or no HTML at all: it must not come back as a whole page.
bool IsWholePage(const QString &text)
{
    return text.contains("<body"_L1, Qt::CaseInsensitive);
}

} // namespace

QString FileFaultText(FileError error)
{
    switch (error) {
    case FileError::NotFound:
    case FileError::PathNotFound:
        return GlobalRun::tr("The file is not there any more");
    case FileError::AccessDenied:
        return GlobalRun::tr("Access denied");
    case FileError::DiskFull:
        return GlobalRun::tr("Disk is full");
    case FileError::TooLarge:
        return GlobalRun::tr("The file is too large");
    default:
        return GlobalRun::tr("Unexpected error");
    }
}

GlobalRun::GlobalRun(DesignSurface &hidden, QObject *parent) : QObject(parent), m_hidden(hidden)
{
    m_next.setSingleShot(true);
    m_patience.setSingleShot(true);
    m_patience.setInterval(PatienceMilliseconds);
    connect(&m_next, &QTimer::timeout, this, &GlobalRun::Step);
    connect(&m_patience, &QTimer::timeout, this, [this] { Fail(tr("The page could not be loaded")); });
    connect(&m_hidden, &DesignSurface::DocumentComplete, this, [this] {
        if (m_loading)
            Loaded();
    });
}

void GlobalRun::Start(const Job &job)
{
    if (m_running)
        return;
    m_job = job;
    m_at = 0;
    m_total = 0;
    m_passedOver.clear();
    m_cancelled = false;
    m_running = true;
    m_next.start(0);
}

void GlobalRun::Step()
{
    QElapsedTimer slice;
    slice.start();
    while (m_at < m_job.Files.size() && !m_cancelled) {
        const Reading reading = Read(m_job.Files[m_at]);
        if (reading == Reading::Later)
            m_next.start(BusyMilliseconds);
        if (reading != Reading::PassedOver)
            return; // a load goes on when the surface has it
        ++m_at;
        if (slice.elapsed() >= SliceMilliseconds) {
            NextFile();
            return;
        }
    }
    End();
}

GlobalRun::Hold GlobalRun::HoldOn(const QString &path, QString &reason) const
{
    return m_job.Replace && m_job.HoldOn ? m_job.HoldOn(path, reason) : Hold::No;
}

GlobalRun::Reading GlobalRun::Read(const QString &path)
{
    m_passedOver.clear();
    QString reason;
    const Hold hold = HoldOn(path, reason);
    if (hold == Hold::Busy)
        return Reading::Later;
    if (hold == Hold::Unsaved) {
        emit Failed(path, tr("What was changed in the editor could not be saved: %1").arg(reason));
        return Reading::PassedOver;
    }
    const Qt::CaseSensitivity sensitivity = m_job.Step.Flags & MatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const FileBytes bytes = ReadBytes(path, LargestPage);
    if (bytes.Error != FileError::None) {
        emit Failed(path, FileFaultText(bytes.Error));
        return Reading::PassedOver;
    }
    if (!MayShow(bytes.Bytes, m_job.Step.Text, sensitivity)) {
        m_passedOver = path;
        return Reading::PassedOver;
    }
    m_file = ReadTextFile(path);
    if (m_file.Error == FileError::NotText)
        return Reading::PassedOver; // a picture, or what else lies in the folder
    if (m_file.Error != FileError::None) {
        emit Failed(path, FileFaultText(m_file.Error));
        return Reading::PassedOver;
    }
    m_loading = true;
    m_open = hold == Hold::Open;
    m_patience.start();
    m_hidden.SetSourceCodePreservation(m_job.Preserved || !IsWholePage(m_file.Text));
    m_hidden.LoadText(GuideStyle::Remove(m_file.Text), path);
    if (m_open)
        m_hidden.WaitWhileBusy();
    return Reading::Loads;
}

void GlobalRun::Loaded()
{
    m_loading = false;
    m_patience.stop();
    const QString path = m_job.Files[m_at];
    QString reason;
    if (!m_open && HoldOn(path, reason) != Hold::No) { // opened since it was read: once more
        NextFile();
        return;
    }
    if (!m_cancelled) {
        if (m_job.Replace)
            ReplaceInPage(path);
        else if (FindIn(m_hidden, m_job.Step))
            emit Found(path);
    }
    ++m_at;
    NextFile();
}

void GlobalRun::Fail(const QString &reason)
{
    m_loading = false;
    emit Failed(m_job.Files[m_at], reason);
    ++m_at;
    NextFile();
}

void GlobalRun::NextFile()
{
    emit Progress(int(m_at), int(m_job.Files.size()));
    m_next.start(0);
}

void GlobalRun::ReplaceInPage(const QString &path)
{
    const int replaced = ReplaceAllIn(m_hidden, m_job.Step, m_job.Replacement);
    if (replaced == 0)
        return;
    const QString fault = Write(path);
    if (!fault.isEmpty()) {
        emit Failed(path, fault);
        return;
    }
    m_total += replaced;
    emit Found(path);
}

/// Why it was not written; "" when it was.
QString GlobalRun::Write(const QString &path)
{
    const MergedText page = m_hidden.DocumentSource();
    if (page.Text.isEmpty() || RefuseSave(page.Text, HasBodyTagIn(m_file.Text)))
        return tr("The page has lost its content");
    FixupContext context;
    context.CharsetFix = m_job.CharsetFix;
    if (m_job.CharsetFix)
        context.DocumentCharset = DeclaredCharset(m_file.Text);
    const bool whole = IsWholePage(m_file.Text);
    const OutputRules rules{.Preserved = m_job.Preserved || !whole, .Exact = m_job.Exact || !whole, .Path = path};
    const QString text = OutputOf(page, rules, m_file.Text, context);
    if (ChangedOnDisk(path, m_file.Stamp))
        return tr("Another program has changed the file meanwhile");
    const TextFileWritten written = WriteTextFile(path, text, PageEncodingFor(text, m_file.Text, m_file.Encoding));
    if (written.Error != FileError::None)
        return FileFaultText(written.Error);
    m_hidden.MarkClean();
    return {};
}

void GlobalRun::HoldLastFile()
{
    if (m_running || m_passedOver.isEmpty())
        return;
    const TextFileContent file = ReadTextFile(m_passedOver);
    const QString path = std::exchange(m_passedOver, {});
    if (file.Error != FileError::None)
        return;
    m_hidden.LoadText(GuideStyle::Remove(file.Text), path);
    m_hidden.WaitWhileBusy();
}

void GlobalRun::End()
{
    m_running = false;
    m_file = {};
    emit Finished();
}
