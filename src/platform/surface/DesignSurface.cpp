#include "platform/surface/DesignSurface.h"

#include "platform/surface/SurfaceInput.h"
#include "platform/surface/SurfacePage.h"
#include "platform/surface/SurfaceTexts.h"

#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QMimeData>
#include <QPointer>
#include <QVBoxLayout>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSurface, "inkloom.surface", QtWarningMsg)

constexpr int SnapshotDelay = 500; // milliseconds after the first change that no snapshot has yet
constexpr int MaximumRestarts = 3; // of a renderer that dies, or a document that fails, before the page is shown

const QHash<Decmd, QString> &CommandNames()
{
    static const QHash<Decmd, QString> names{
        {DECMD_UNDO, u"undo"_s},          {DECMD_REDO, u"redo"_s},     {DECMD_CUT, u"cut"_s},
        {DECMD_COPY, u"copy"_s},          {DECMD_PASTE, u"paste"_s},   {DECMD_DELETE, u"delete"_s},
        {DECMD_BOLD, u"bold"_s},          {DECMD_ITALIC, u"italic"_s}, {DECMD_UNDERLINE, u"underline"_s},
        {DECMD_SELECTALL, u"selectAll"_s}};
    return names;
}

/// The page as the engine wrote it at some moment.
struct RawPage
{
    int Generation = 0;
    qint64 Changes = -1; ///< the page's own count of changes; -1: no such moment
    bool Dirty = false;  ///< differs from what counts as unchanged
    bool Edited = false; ///< differs from what was loaded
    QString Html;
    QString Text; ///< composed from the above when first needed
};

} // namespace

class DesignSurface::Private
{
public:
    enum class Phase { Idle, Starting, Filling };

    struct Load
    {
        QString Source; ///< the page's text
        bool Undoable = false;
        bool Clean = true; ///< the page counts as unchanged afterwards
        SurfaceTexts::Prepared Text{};
    };

    explicit Private(DesignSurface *owner) : q(owner) {}

    void Begin(Load load);
    void Fill();
    void Filled(int number, const QVariant &answer);
    void Finish();
    void LoadFresh(const QString &text);
    void Changed(const QJsonObject &state);
    void TakeSnapshot();
    bool Keep(const QVariant &answer);
    const QString &TextOf(RawPage &raw);
    void Restart();
    void Forget();
    void LearnState();
    bool IsAvailable(Decmd command) const;
    void FlushInput();
    QVariant Ask(const QString &name, const QJsonValue &argument = {});
    QVariant Do(const QString &name, const QJsonValue &argument = {});

    DesignSurface *q;
    QWebEngineView *View = nullptr;
    SurfacePage *Page = nullptr;
    SurfaceInput *Input = nullptr;
    SurfaceTexts Texts;

    Phase Now = Phase::Idle;
    Load Current;
    int LoadNumber = 0;     ///< a later load makes the answers of an earlier one void
    QString DocumentName;   ///< of the empty document that the page stands in
    QString StartedDoctype; ///< what that document was started with
    QUrl StartedBase;

    QUrl Base;
    QString Path;
    QString LoadedText;
    TextEncoding Encoding;
    RawPage Last; ///< the newest text we have of the page
    QTimer SnapshotTimer;
    QVariantMap Formats; ///< status of the format commands; empty when they must be asked again
    QString Title;
    bool TitleKnown = false; ///< nothing changed since Title was read
    bool LooksEmpty = false;
    /// What the page says with every change.
    struct
    {
        bool Known = false; ///< no change since that the page has not told yet
        bool Undo = false;
        bool Redo = false;
        bool Selected = false;
    } State;
    bool Dirty = false;
    bool Borders = false;
    bool EverLoaded = false;
    bool Recovering = false; ///< after the load under way, the last snapshot goes on top of it
    int Restarts = 0;
};

// ---- loading -------------------------------------------------------------------------------------------------------

void DesignSurface::Private::LoadFresh(const QString &text)
{
    LoadedText = text;
    Last = {};
    Recovering = false;
    Begin({text, false, true});
}

void DesignSurface::Private::Begin(Load load)
{
    Current = std::move(load);
    Current.Text = Texts.Add(Current.Source);
    EverLoaded = true;
    ++LoadNumber;
    Forget();
    SnapshotTimer.stop();
    const bool reuse = Page->RendererAlive() && !DocumentName.isEmpty() && Now != Phase::Starting &&
                       StartedDoctype == Current.Text.Doctype && StartedBase == Base;
    if (reuse) {
        Fill();
        return;
    }
    Now = Phase::Starting;
    StartedDoctype = Current.Text.Doctype;
    StartedBase = Base;
    Current.Undoable = false; // a new document remembers nothing of the old one
    Input->Restart();
    DocumentName = Page->StartDocument(StartedDoctype, Base);
}

void DesignSurface::Private::Fill()
{
    Now = Phase::Filling;
    const QJsonObject argument{{u"boot"_s, DocumentName},
                               {u"html"_s, Current.Text.Html},
                               {u"tail"_s, Current.Text.Tail},
                               {u"tailSpace"_s, Current.Text.TailSpace},
                               {u"generation"_s, Current.Text.Generation},
                               {u"undoable"_s, Current.Undoable},
                               {u"clean"_s, Current.Clean}};
    Current.Text.Html.clear();
    Page->CallLater(u"load"_s, argument,
                    [this, number = LoadNumber](const QVariant &answer) { Filled(number, answer); });
}

void DesignSurface::Private::Filled(int number, const QVariant &answer)
{
    if (number != LoadNumber || Now != Phase::Filling)
        return; // a later load took over, or the renderer died meanwhile
    const QVariantMap result = answer.toMap();
    const QString end = result.value(u"end"_s).toString();
    if (end == "swallowed"_L1) {
        Current.Text = Texts.Add(Current.Source, SurfaceTexts::End::InPage);
        Fill();
        return;
    }
    if (end.isEmpty() && ++Restarts <= MaximumRestarts) {
        // The empty document was not the one we started: a renderer that was just replaced reports an end of its own.
        DocumentName.clear();
        Now = Phase::Idle;
        Begin(std::move(Current));
        return;
    }
    if (end == "open"_L1)
        Texts.TailSpaceIsInPage(Current.Text.Generation);
    else if (end.isEmpty())
        qCWarning(lcSurface) << "the page could not be put into the document";
    Title = Texts.WithIslands(Current.Text.Generation, result.value(u"title"_s).toString());
    TitleKnown = true;
    LooksEmpty = result.value(u"empty"_s).toBool();
    Finish();
}

void DesignSurface::Private::Finish()
{
    Now = Phase::Idle;
    Restarts = 0;
    Last.Changes = -1; // counts of another document, or of before this load
    if (!Current.Undoable)
        Texts.ForgetBefore(Current.Text.Generation);
    Page->CallLater(u"showBorders"_s, Borders, [](const QVariant &) {});
    Input->Watch();
    State = {true, Current.Undoable, false, false};
    if (std::exchange(Recovering, false)) {
        Begin({TextOf(Last), true, !Last.Dirty});
        return;
    }
    emit q->DocumentComplete();
    emit q->DisplayChanged();
}

// ---- what the page tells -------------------------------------------------------------------------------------------

void DesignSurface::Private::Changed(const QJsonObject &state)
{
    Input->Seen(state.value("input"_L1).toInt());
    Formats.clear();
    TitleKnown = false;
    State = {true, state.value("undo"_L1).toBool(), state.value("redo"_L1).toBool(),
             state.value("selected"_L1).toBool()};
    const bool dirty = state.value("dirty"_L1).toBool();
    if (state.value("changes"_L1).toInteger() != Last.Changes && dirty && !SnapshotTimer.isActive())
        SnapshotTimer.start();
    if (std::exchange(Dirty, dirty) != dirty)
        emit q->DirtyChanged(dirty);
    if (Now == Phase::Idle)
        emit q->DisplayChanged();
}

void DesignSurface::Private::TakeSnapshot()
{
    if (Now != Phase::Idle)
        return;
    Page->CallLater(u"text"_s, Last.Changes, [this, number = LoadNumber](const QVariant &answer) {
        if (number == LoadNumber && Keep(answer) && Last.Dirty)
            emit q->SnapshotTaken();
    });
}

/// Takes an answer of "text". False when it brought nothing new.
bool DesignSurface::Private::Keep(const QVariant &answer)
{
    const QVariantList list = answer.toList();
    if (list.size() < 5)
        return false;
    Last = {list[0].toInt(), list[1].toLongLong(), list[2].toBool(), list[3].toBool(), list[4].toString(), {}};
    return true;
}

const QString &DesignSurface::Private::TextOf(RawPage &raw)
{
    if (raw.Text.isEmpty() && !raw.Html.isEmpty())
        raw.Text = Texts.Compose(raw.Generation, raw.Html);
    return raw.Text;
}

void DesignSurface::Private::Restart()
{
    const bool loading = Now != Phase::Idle;
    DocumentName.clear();
    Forget();
    if (!EverLoaded)
        return;
    emit q->RendererLost();
    if (++Restarts > MaximumRestarts) {
        qCWarning(lcSurface) << "the renderer dies on every attempt to show" << Path;
        Now = Phase::Idle;
        emit q->DocumentComplete();
        return;
    }
    // The page as it was loaded comes first, so that one undo leads back to it, then the newest text we have.
    Recovering = Last.Edited && !(loading && !Current.Undoable);
    if (Recovering)
        TextOf(Last);
    Now = Phase::Idle;
    Begin({LoadedText, false, true});
}

/// What we know of the page's state may not be so any more.
void DesignSurface::Private::Forget()
{
    State.Known = false;
    TitleKnown = false;
    Formats.clear();
}

void DesignSurface::Private::LearnState()
{
    if (State.Known)
        return;
    const QVariantMap state = Ask(u"state"_s).toMap();
    State = {!state.isEmpty(), state.value(u"undo"_s).toBool(), state.value(u"redo"_s).toBool(),
             state.value(u"selected"_s).toBool()};
}

bool DesignSurface::Private::IsAvailable(Decmd command) const
{
    switch (command) {
    case DECMD_UNDO:
        return State.Undo;
    case DECMD_REDO:
        return State.Redo;
    case DECMD_CUT:
    case DECMD_COPY:
        return State.Selected;
    case DECMD_PASTE: {
        const QMimeData *data = QGuiApplication::clipboard()->mimeData();
        return data && (data->hasHtml() || data->hasText());
    }
    default:
        return true;
    }
}

void DesignSurface::Private::FlushInput()
{
    if (Input->Flush())
        Forget();
}

/// Calls a page routine that only answers.
QVariant DesignSurface::Private::Ask(const QString &name, const QJsonValue &argument)
{
    if (Now != Phase::Idle || !EverLoaded)
        return {};
    FlushInput();
    return Page->Call(name, argument);
}

/// Calls one that changes page or selection.
QVariant DesignSurface::Private::Do(const QString &name, const QJsonValue &argument)
{
    const QVariant answer = Ask(name, argument);
    Forget(); // the page's own word of the change is still on its way
    return answer;
}

// ---- the surface ---------------------------------------------------------------------------------------------------

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

    d->SnapshotTimer.setSingleShot(true);
    d->SnapshotTimer.setInterval(SnapshotDelay);
    connect(&d->SnapshotTimer, &QTimer::timeout, this, [this] { d->TakeSnapshot(); });
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
}

FileError DesignSurface::SaveDocument(const QString &path)
{
    const TextFileWritten written = WriteTextFile(path, DocumentHTML(), d->Encoding);
    if (written.Error == FileError::None)
        MarkClean();
    return written.Error;
}

QString DesignSurface::DocumentHTML()
{
    d->Keep(d->Ask(u"text"_s, d->Last.Changes));
    return d->Last.Html.isEmpty() ? d->LoadedText : d->TextOf(d->Last);
}

void DesignSurface::SetDocumentHTML(const QString &text)
{
    if (!d->EverLoaded) {
        d->LoadFresh(text);
        return;
    }
    if (d->Now == Private::Phase::Idle)
        d->FlushInput();
    else
        d->LoadedText = text; // overtakes a load that has not come to its end
    d->Begin({text, d->Now == Private::Phase::Idle, true});
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
    if (!d->TitleKnown && !Busy()) {
        const QVariantList answer = d->Ask(u"title"_s).toList();
        d->TitleKnown = answer.size() == 2;
        if (d->TitleKnown)
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

void DesignSurface::MarkClean()
{
    d->Ask(u"markClean"_s);
    d->SnapshotTimer.stop();
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

// ---- looks, commands, selection ------------------------------------------------------------------------------------

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

QVariant DesignSurface::ExecCommand(Decmd command, const QVariant &)
{
    if (command == DECMD_GETBLOCKFMTNAMES)
        return QStringList{u"Normal"_s,    u"Heading 1"_s, u"Heading 2"_s, u"Heading 3"_s,
                           u"Heading 4"_s, u"Heading 5"_s, u"Heading 6"_s};
    if (QueryStatus(command) < DECMDF_ENABLED)
        return {};
    return d->Do(u"run"_s, CommandNames().value(command));
}

Decmdf DesignSurface::QueryStatus(Decmd command)
{
    if (command == DECMD_GETBLOCKFMTNAMES)
        return DECMDF_ENABLED;
    const QString name = CommandNames().value(command);
    if (name.isEmpty())
        return DECMDF_NOTSUPPORTED;
    if (!d->EverLoaded || Busy())
        return DECMDF_DISABLED;
    d->FlushInput();
    if (command == DECMD_BOLD || command == DECMD_ITALIC || command == DECMD_UNDERLINE) {
        if (d->Formats.isEmpty())
            d->Formats = d->Ask(u"formats"_s).toMap();
        return static_cast<Decmdf>(d->Formats.value(name, DECMDF_DISABLED).toInt());
    }
    d->LearnState();
    return d->IsAvailable(command) ? DECMDF_ENABLED : DECMDF_DISABLED;
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
