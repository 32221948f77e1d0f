#include "document/Recovery.h"

#include "document/Editor.h"
#include "document/GuideStyle.h"
#include "document/PageOutput.h"
#include "platform/Folders.h"
#include "platform/ProcessMark.h"
#include "platform/SourceEditor.h"
#include "platform/surface/DesignSurface.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int SourceDelay = 700; ///< milliseconds from a key in the source view, or a new text, to its copy
constexpr qsizetype DirectLimit = 1000 * 1000; ///< longer texts are written by another thread: typing goes on

QString RecoveryFolder()
{
    return Folders::State() + "/recovery"_L1;
}

QString NewFileName()
{
    return u"%1/%2-%3.recovery"_s.arg(RecoveryFolder(), QString::number(QCoreApplication::applicationPid()),
                                      QString::number(QRandomGenerator::system()->generate64(), 16));
}

} // namespace

Recovery::Recovery(Editor &editor, QObject *parent) : QObject(parent), m_editor(editor), m_file(NewFileName())
{
    m_writer.setMaxThreadCount(1);
    m_sourceTimer.setSingleShot(true);
    m_sourceTimer.setInterval(SourceDelay);
    connect(&m_sourceTimer, &QTimer::timeout, this, &Recovery::Update);
    // Not restarted by the next key: the copy of a fast typist is no older than that of a slow one.
    const auto updateSoon = [this] {
        if (!m_sourceTimer.isActive())
            m_sourceTimer.start();
    };
    connect(&editor.Source(), &SourceEditor::TextEdited, this, updateSoon);
    connect(&editor.Surface(), &DesignSurface::SnapshotTaken, this, &Recovery::KeepSnapshot);
    connect(&editor.Surface(), &DesignSurface::DocumentComplete, this, [this, updateSoon] {
        if (m_editor.Page().HtmlDirty)
            updateSoon(); // a text that a dialog or the source view put there
    });
    // Later, when the load or the replacement that cleaned the surface has said whether the page is dirty all the same.
    connect(
        &editor.Surface(), &DesignSurface::DirtyChanged, this, [this] { RemoveIfClean(); }, Qt::QueuedConnection);
}

Recovery::~Recovery()
{
    if (m_leftBehind)
        m_writer.waitForDone();
    else
        Clear();
}

QList<Recovery::Copy> Recovery::Orphans()
{
    QList<Copy> found;
    for (const QFileInfo &info : QDir(RecoveryFolder()).entryInfoList({u"*.recovery"_s}, QDir::Files)) {
        QFile file(info.absoluteFilePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const std::optional<RecoveryFile> copy = DecodeRecoveryFile(file.readAll());
        if (!copy || ProcessRuns(copy->Process))
            continue;
        found.append({info.absoluteFilePath(), copy->PagePath, copy->Text, copy->Time, copy->Encoding, copy->Stamp});
    }
    std::sort(found.begin(), found.end(), [](const Copy &a, const Copy &b) { return a.Time > b.Time; });
    return found;
}

void Recovery::Restore(const Copy &copy)
{
    PageState &page = m_editor.Page();
    DesignSurface::TextForm form = DesignSurface::TextForm::Source;
    if (QFileInfo::exists(copy.PagePath)) {
        page.FileToLoad = copy.PagePath;
        if (!m_editor.LoadFile())
            return;
        form = DesignSurface::TextForm::Engine; // what the file says the same way stays as it is written there
        // As the dead process knew the file: if somebody changed it since, saving asks.
        m_editor.File().Stamp = copy.Stamp;
    } else {
        if (m_editor.PromptSaveChanges() == Editor::Prompted::Cancel)
            return;
        Clear();
        page.CurrentFilePath.clear();
        m_editor.File() = {{}, copy.Encoding, {}, copy.Text};
    }
    // The copy is ours from now on, so no window that starts meanwhile offers it again.
    m_file = copy.File;
    m_editor.ReplacePage(copy.Text, form);
    Keep(copy.Text);
}

void Recovery::Discard(const Copy &copy)
{
    QFile::remove(copy.File);
}

void Recovery::Update()
{
    m_sourceTimer.stop();
    if (!m_editor.HasUnsavedChanges()) {
        Clear();
        return;
    }
    const bool inSource = m_editor.Page().ActiveTab == ViewTab::HtmlSource && m_editor.Source().IsModified();
    Keep(inSource ? m_editor.Source().Text() : GuideStyle::Remove(m_editor.Surface().DocumentHTML()));
}

void Recovery::LeaveBehind()
{
    Update();
    while (m_writing) { // the newest text may still wait for the one before it
        m_writer.waitForDone();
        m_writing = false;
        if (m_next)
            WriteInBackground(*std::exchange(m_next, std::nullopt));
    }
    m_leftBehind = true;
}

void Recovery::Clear()
{
    m_sourceTimer.stop();
    m_next.reset();
    m_writer.waitForDone();
    QFile::remove(m_file);
}

void Recovery::KeepSnapshot()
{
    const bool inSource = m_editor.Page().ActiveTab == ViewTab::HtmlSource && m_editor.Source().IsModified();
    if (!inSource && !m_editor.Surface().Busy())
        Keep(GuideStyle::Remove(m_editor.Surface().LastSnapshot()));
}

void Recovery::RemoveIfClean()
{
    if (!m_editor.Surface().Busy() && !m_editor.HasUnsavedChanges())
        Clear();
}

void Recovery::Keep(const QString &text)
{
    const LoadedFile &file = m_editor.File();
    const QString &path = m_editor.Page().CurrentFilePath;
    RecoveryFile copy{OwnProcessMark(),
                      IsPageName(path) ? path : QString(),
                      QDateTime::currentDateTime(),
                      file.Encoding,
                      file.Stamp,
                      text};
    if (text.size() > DirectLimit || m_writing)
        WriteInBackground(std::move(copy));
    else
        WriteRecoveryFile(m_file, copy);
}

/// One write at a time; of the texts that come meanwhile only the newest counts.
void Recovery::WriteInBackground(RecoveryFile copy)
{
    if (m_writing) {
        m_next = std::move(copy);
        return;
    }
    m_writing = true;
    m_writer.start([this, path = m_file, copy = std::move(copy)] {
        WriteRecoveryFile(path, copy);
        QMetaObject::invokeMethod(this, &Recovery::BackgroundDone, Qt::QueuedConnection);
    });
}

void Recovery::BackgroundDone()
{
    m_writing = false;
    if (m_next)
        WriteInBackground(*std::exchange(m_next, std::nullopt));
}
