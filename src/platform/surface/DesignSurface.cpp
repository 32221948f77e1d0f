#include "platform/surface/DesignSurfacePrivate.h"

#include "platform/surface/SurfaceInput.h"
#include "platform/surface/SurfacePage.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QPointer>
#include <QVBoxLayout>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

constexpr int SnapshotDelay = 500; // milliseconds after the first change that no snapshot has yet
constexpr int QuietDelay = 700;    // milliseconds from a load to when the page has been drawn

} // namespace

DesignSurface::DesignSurface(QWidget *parent) : QWidget(parent), d(std::make_unique<Private>(this))
{
    d->View = new QWebEngineView(this);
    d->Page = new SurfacePage(d->View);
    d->View->setPage(d->Page);
    d->View->setContextMenuPolicy(Qt::NoContextMenu);
    d->View->setAccessibleName(tr("Design view"));
    d->Input = new SurfaceInput(d->View, d->Page, this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(d->View);
    setFocusProxy(d->View);
    d->Input->HandleDrags([this](QEvent *event) { return d->Drag(event); });
    connect(d->Input, &SurfaceInput::Cut, this, [this] { ExecCommand(DECMD_CUT); });
    connect(d->Input, &SurfaceInput::Copy, this, [this] { ExecCommand(DECMD_COPY); });
    connect(d->Input, &SurfaceInput::Paste, this, [this] { ExecCommand(DECMD_PASTE); });
    connect(d->Input, &SurfaceInput::PasteText, this, &DesignSurface::PasteText);

    d->SnapshotTimer.setSingleShot(true);
    d->SnapshotTimer.setInterval(SnapshotDelay);
    connect(&d->SnapshotTimer, &QTimer::timeout, this, [this] { d->TakeSnapshot(); });
    d->BaseTimer.setSingleShot(true);
    d->BaseTimer.setInterval(QuietDelay);
    connect(&d->BaseTimer, &QTimer::timeout, this, [this] { d->ReadBaseLater(); });
    connect(d->Page, &QWebEnginePage::loadFinished, this, [this] {
        d->Page->Enqueue([this] {
            if (d->Now != Private::Phase::Starting)
                return;
            d->Page->InjectScripts();
            d->Fill();
        });
    });
    connect(d->Page, &SurfacePage::RendererGone, this, [this] { d->Restart(); });
    connect(d->Page, &SurfacePage::EventArrived, this, [this](const PageEvent &event) {
        if (event.Type == "changed"_L1)
            d->Changed(event.Data.toObject());
        else if (event.Type == "display"_L1)
            d->Displayed(event.Data.toObject());
        else
            d->UserEvent(event.Type, event.Data);
    });
}

DesignSurface::~DesignSurface()
{
    d->Page->disconnect(this);
}

DesignSurface::LoadError DesignSurface::LoadDocument(const QString &path)
{
    const TextFileContent file = ReadTextFile(path);
    switch (file.Error) {
    case FileError::None:
        break;
    case FileError::NotFound:
    case FileError::PathNotFound:
        return LoadError::NotFound;
    case FileError::AccessDenied:
        return LoadError::AccessDenied;
    case FileError::NotText:
        return LoadError::NotText;
    default:
        return LoadError::Unexpected;
    }
    d->Encoding = file.Encoding;
    LoadText(file.Text, path);
    return LoadError::None;
}

void DesignSurface::LoadText(const QString &text, const QString &path)
{
    d->Path = path;
    d->Base = path.isEmpty() ? QUrl() : QUrl::fromLocalFile(path);
    d->LoadFresh(text);
    d->CleanIsSaved = true;
}

FileError DesignSurface::SaveDocument(const QString &path)
{
    const TextFileWritten written = WriteTextFile(path, DocumentHTML(), d->Encoding);
    if (written.Error == FileError::None)
        MarkClean();
    return written.Error;
}

void DesignSurface::SetDocumentHTML(const QString &text)
{
    SetDocumentHTML(text, TextForm::Source);
}

void DesignSurface::SetDocumentHTML(const QString &text, TextForm form)
{
    if (!d->EverLoaded) {
        d->LoadFresh(text);
        return;
    }
    const bool idle = d->Now == Private::Phase::Idle;
    Private::Load load{text, idle, true};
    if (idle && form == TextForm::Engine) {
        EngineHTML(); // tells which text the page on screen was made of
        load.Written = d->Written.Of(d->Last.Generation);
    }
    if (idle)
        d->FlushInput();
    else
        d->LoadedText = text; // overtakes a load that has not come to its end
    d->Begin(std::move(load));
}

QString DesignSurface::BaseURL() const
{
    return d->Base.toString();
}

void DesignSurface::SetBaseURL(const QString &url)
{
    if (QUrl(url) == d->Base)
        return;
    const QString text = DocumentHTML();
    d->Base = QUrl(url);
    d->LoadFresh(text);
}

QString DesignSurface::DocumentTitle()
{
    d->FlushInput();
    if (d->TitleChanges < 0 && !Busy()) {
        const QVariantList answer = d->Ask(u"title"_s).toList();
        d->TitleChanges = answer.size() == 3 ? answer[2].toLongLong() : -1;
        if (d->TitleChanges >= 0)
            d->Title = d->Texts.WithIslands(answer[0].toInt(), answer[1].toString());
    }
    return d->Title;
}

bool DesignSurface::LooksEmpty() const
{
    return d->LooksEmpty;
}

QString DesignSurface::CurrentDocumentPath() const
{
    return d->Path;
}

bool DesignSurface::IsDirty()
{
    const QVariant answer = d->Ask(u"dirty"_s);
    return answer.isValid() ? answer.toBool() : d->Dirty;
}

bool DesignSurface::IsAsSaved()
{
    return d->CleanIsSaved && !Busy() && d->EverLoaded && !IsDirty();
}

void DesignSurface::MarkClean()
{
    if (d->Ask(u"markClean"_s).toBool())
        d->CleanIsSaved = true;
    d->SnapshotTimer.stop();
}

DesignSurface::OneStep::OneStep(DesignSurface &surface) : m_surface(surface)
{
    m_surface.WaitWhileBusy();
    m_surface.d->Do(u"startGathering"_s);
}

DesignSurface::OneStep::~OneStep()
{
    m_surface.WaitWhileBusy();
    m_surface.d->Do(u"endGathering"_s);
}

bool DesignSurface::Busy() const
{
    return d->Now != Private::Phase::Idle;
}

bool DesignSurface::WaitWhileBusy(int milliseconds)
{
    const QPointer<DesignSurface> self(this);
    QTimer limit;
    limit.setSingleShot(true);
    QEventLoop loop;
    connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    connect(this, &DesignSurface::DocumentComplete, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    limit.start(milliseconds);
    while (self && Busy() && limit.isActive())
        if (loop.exec(QEventLoop::ExcludeUserInputEvents) != 0)
            break; // the program is ending
    return self && !Busy();
}

// ---- looks, selection
// ------------------------------------------------------------------------------------------------

bool DesignSurface::ShowBorders() const
{
    return d->Borders;
}

void DesignSurface::SetShowBorders(bool show)
{
    d->Borders = show;
    if (d->EverLoaded && !Busy())
        d->Page->CallLater(u"showBorders"_s, show, [](const QVariant &) {});
}

bool DesignSurface::ShowDetails() const
{
    return d->Details;
}

void DesignSurface::SetShowDetails(bool show)
{
    d->Details = show;
    if (d->EverLoaded && !Busy())
        d->Page->CallLater(u"showDetails"_s, show, [](const QVariant &) {});
}

void DesignSurface::CaretToPageStart()
{
    d->Do(u"caretToPageStart"_s);
}

void DesignSurface::CollapseSelection()
{
    d->FlushInput();
    if (d->State.Known && !d->State.Selected)
        return;
    d->Do(u"collapseSelection"_s);
}

QRect DesignSurface::SelectionOnScreen()
{
    const QVariantList numbers = d->Ask(u"selectionRect"_s).toList();
    if (numbers.size() != 4 || numbers[2].toDouble() <= 0)
        return {};
    const QRectF inPage(numbers[0].toDouble(), numbers[1].toDouble(), numbers[2].toDouble(), numbers[3].toDouble());
    const QRect inView = QRectF(inPage.topLeft() * d->View->zoomFactor(), inPage.size() * d->View->zoomFactor())
                             .toAlignedRect()
                             .intersected(d->View->rect());
    return {d->View->mapToGlobal(inView.topLeft()), inView.size()};
}

bool DesignSurface::SelectText(const QString &text)
{
    return d->Do(u"selectText"_s, text).toBool();
}

QString DesignSurface::SelectionType()
{
    const QString type = d->Ask(u"selectionType"_s).toString();
    return type.isEmpty() ? u"None"_s : type;
}

QWidget *DesignSurface::InputWidget() const
{
    return d->View->focusProxy();
}

qint64 DesignSurface::RendererProcessId() const
{
    return d->Page->RendererAlive() ? d->Page->renderProcessPid() : 0;
}

QString DesignSurface::LastSnapshot() const
{
    return d->TextOf(d->Last);
}
