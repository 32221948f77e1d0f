// What the design surface does between two pages: loading, snapshots, a renderer that died.
#include "platform/surface/DesignSurfacePrivate.h"

#include "platform/surface/SurfaceInput.h"
#include "platform/surface/SurfacePage.h"

#include <QJsonObject>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcSurface, "inkloom.surface", QtWarningMsg)

constexpr int MaximumRestarts = 3; // of a renderer that dies, or a document that fails, before the page is shown

/// Relative addresses mean the same from both.
bool SameFolder(const QUrl &one, const QUrl &other)
{
    return one.isEmpty() == other.isEmpty() &&
           one.adjusted(QUrl::RemoveFilename) == other.adjusted(QUrl::RemoveFilename);
}

} // namespace

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
    if (!Current.Written)
        Current.Written = std::make_shared<WrittenPage>(Current.Source);
    Current.Text = Texts.Add(Current.Source, SurfaceTexts::End::Apart, Current.Marks);
    EverLoaded = true;
    ++LoadNumber;
    Forget();
    SnapshotTimer.stop();
    BaseTimer.stop();
    const bool reuse = Page->RendererAlive() && !DocumentName.isEmpty() && Now != Phase::Starting &&
                       (Current.Undoable || StartedDoctype == Current.Text.Doctype) && SameFolder(StartedBase, Base);
    if (!reuse || !Current.Undoable || Current.Clean)
        CleanIsSaved = false; // LoadText says otherwise
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
    Written.Set(Current.Text.Generation, Current.Written);
    const QJsonObject argument{{u"boot"_s, DocumentName},
                               {u"html"_s, Current.Text.Html},
                               {u"tail"_s, Current.Text.Tail},
                               {u"tailSpace"_s, Current.Text.TailSpace},
                               {u"generation"_s, Current.Text.Generation},
                               {u"undoable"_s, Current.Undoable},
                               {u"clean"_s, Current.Clean},
                               {u"marks"_s, MarkWords(Current)}};
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
    if (end == "unmarked"_L1) { // a mark came to stand where a parser keeps no comment
        Current.Marks.clear();
        Current.Text = Texts.Add(Current.Source);
        Fill();
        return;
    }
    if (end == "swallowed"_L1) {
        Current.Marks.clear();
        Current.Text = Texts.Add(Current.Source, SurfaceTexts::End::InPage);
        Fill();
        return;
    }
    if (end == "mode"_L1) {
        DocumentName.clear();
        Now = Phase::Idle;
        Begin(std::move(Current));
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
    TitleChanges = result.value(u"changes"_s).toLongLong();
    const bool own = Current.Written->Text() == Current.Source;
    Loaded = {Current.Text.Generation, own ? result.value(u"changes"_s, -1).toLongLong() : -1};
    LooksEmpty = result.value(u"empty"_s).toBool();
    Finish();
}

void DesignSurface::Private::Finish()
{
    Now = Phase::Idle;
    Restarts = 0;
    Last.Changes = -1; // counts of another document, or of before this load
    ShownStatuses.clear();
    ShownValues.clear();
    if (!Current.Undoable) {
        Texts.ForgetBefore(Current.Text.Generation);
        Written.ForgetBefore(Current.Text.Generation);
    }
    if (Preserve && Loaded.Changes >= 0)
        BaseTimer.start();
    Page->CallLater(u"showBorders"_s, Borders, [](const QVariant &) {});
    Page->CallLater(u"showDetails"_s, Details, [](const QVariant &) {});
    Page->CallLater(u"snapToGrid"_s, Snap, [](const QVariant &) {});
    Input->Watch();
    State = {true, Current.Undoable, false, false};
    if (std::exchange(Recovering, false)) {
        Load load{TextOf(Last), true, !Last.Dirty};
        load.Written = std::exchange(Recovered, nullptr);
        Begin(std::move(load));
        return;
    }
    emit q->DocumentComplete();
    emit q->DisplayChanged();
}

// ---- what the page tells -------------------------------------------------------------------------------------------

void DesignSurface::Private::Changed(const QJsonObject &state)
{
    Input->Seen(state.value("input"_L1).toInt());
    Statuses.clear();
    const qint64 changes = state.value("changes"_L1).toInteger();
    ToldChanges = changes;
    if (changes != TitleChanges)
        TitleChanges = -1;
    State = {true, state.value("undo"_L1).toBool(), state.value("redo"_L1).toBool(),
             state.value("selected"_L1).toBool()};
    const bool dirty = state.value("dirty"_L1).toBool();
    if (changes != Last.Changes && dirty && !SnapshotTimer.isActive())
        SnapshotTimer.start();
    if (std::exchange(Dirty, dirty) != dirty)
        emit q->DirtyChanged(dirty);
}

/// The page has been drawn after a change and tells what holds at the selection, so that nobody has to ask.
void DesignSurface::Private::Displayed(const QJsonObject &state)
{
    if (Now != Phase::Idle)
        return;
    Statuses = state.value("statuses"_L1).toObject().toVariantMap();
    ShownStatuses = Statuses;
    ShownValues = state.value("values"_L1).toObject().toVariantMap();
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
    // Changed, and its own word of that still waits in the queue: what it told before holds no longer.
    if (list[1].toLongLong() != std::exchange(ToldChanges, list[1].toLongLong()))
        Forget();
    Last = {list[0].toInt(), list[1].toLongLong(), list[2].toBool(), list[3].toBool(), list[4].toString(), {}, {}, {}};
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
    Recovered = nullptr;
    if (Recovering) {
        TextOf(Last);
        Recovered = Written.Of(Last.Generation);
    }
    Loaded.Changes = -1;
    Now = Phase::Idle;
    Begin({LoadedText, false, true});
}

/// What we know of the page's state may not be so any more.
void DesignSurface::Private::Forget()
{
    State.Known = false;
    TitleChanges = -1;
    Statuses.clear();
}

void DesignSurface::Private::LearnState()
{
    if (State.Known)
        return;
    const QVariantMap state = Ask(u"state"_s).toMap();
    State = {!state.isEmpty(), state.value(u"undo"_s).toBool(), state.value(u"redo"_s).toBool(),
             state.value(u"selected"_s).toBool()};
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
