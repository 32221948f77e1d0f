#pragma once

#include "platform/surface/DesignSurface.h"
#include "platform/surface/SurfaceTexts.h"
#include "platform/surface/WrittenPages.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <memory>
#include <optional>

class QJsonObject;
class QEvent;
class QImage;
class QPrinter;
class QWebEngineView;
enum class TextFound;
struct TextQuery;
class SurfaceInput;
class SurfacePage;
struct PasteSource;

/// The page as the engine wrote it at some moment.
struct RawPage
{
    int Generation = 0;
    qint64 Changes = -1; ///< the page's own count of changes; -1: no such moment
    bool Dirty = false;  ///< differs from what counts as unchanged
    bool Edited = false; ///< differs from what was loaded
    QString Html;
    QString Text;                                                ///< composed from the above when first needed
    std::optional<MergedText> Source;                            ///< the same for DocumentSource
    SourceMerger::Reach Reach = SourceMerger::Reach::Everything; ///< how Source was made
};

class DesignSurface::Private
{
public:
    enum class Phase { Idle, Starting, Filling };

    struct Load
    {
        QString Source; ///< the page's text
        bool Undoable = false;
        bool Clean = true;                 ///< the page counts as unchanged afterwards
        QList<SurfaceTexts::Mark> Marks{}; ///< where the selection goes
        SurfaceTexts::Prepared Text{};
        std::shared_ptr<WrittenPage> Written{}; ///< what the author wrote; null: Source
    };

    explicit Private(DesignSurface *owner) : q(owner) {}

    void Begin(Load load);
    void Fill();
    void Filled(int number, const QVariant &answer);
    void Finish();
    void LoadFresh(const QString &text);
    void Changed(const QJsonObject &state);
    void Displayed(const QJsonObject &state);
    void TakeSnapshot();
    bool Keep(const QVariant &answer);
    const QString &TextOf(RawPage &raw);
    const MergedText &SourceOf(RawPage &raw);
    MergedText MarkedSource(RawPage &raw, const QString &marked, const QStringList &words);
    bool IsWanted(const QString &merged, const QString &wanted);
    bool KnowsBase(WrittenPage &page);
    void ReadBaseLater();
    QString ReadAgain(const QString &text);
    void Restart();
    void Forget();
    void LearnState();
    void FlushInput();
    QList<SurfaceTexts::Mark> MarksAt(TextSpan span) const;
    static QJsonArray MarkWords(const Load &load);
    QVariant Ask(const QString &name, const QJsonValue &argument = {});
    QVariant Do(const QString &name, const QJsonValue &argument = {});
    /// Runs a command of the page scripts (commands.js) by its name there.
    QVariant Run(const QString &name, const QJsonValue &argument = {});
    void AskForFont();

    QString ProtectFragment(const QString &html);
    /// Cut, copy or paste.
    void Clipboard(Decmd command);
    bool Copy();
    /// Something is dragged over the page from outside.
    bool Drag(QEvent *event);
    void DragTo(QPoint place, bool item);
    void Drop(QPoint place, const PasteSource &source);
    void DropItem(QPoint place);
    void Paste(const PasteSource &source);
    QString PageFolder() const; ///< "" for a page without a name
    QString PictureBesidePage(const QImage &picture);
    QString MarkupOfLink(const QUrl &link);
    void Release(int handle);
    /// Something that the user did in the page.
    void UserEvent(const QString &type, const QJsonValue &data);
    void ShowMenu(QPoint place);

    DesignSurface *q;
    std::shared_ptr<DesignSurface *> Self = std::make_shared<DesignSurface *>(q); ///< what handles hold weakly
    int LastHandle = 0;    ///< of the things that the host holds on to in the page
    QJsonArray Released;   ///< handles that the page has not been told to forget yet
    int EventKey = 0;      ///< of the key event that is being handled
    QStringList MenuItems; ///< of the context menu about to appear
    QList<int> MenuStates;
    QWebEngineView *View = nullptr;
    SurfacePage *Page = nullptr;
    SurfaceInput *Input = nullptr;
    SurfaceTexts Texts;
    WrittenPages Written;

    std::optional<QPoint> DraggedTo; ///< where a drag has got to; the page has not been told yet

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
    /// The page right after the last load.
    struct
    {
        int Generation = 0;
        qint64 Changes = -1;
    } Loaded;
    std::shared_ptr<WrittenPage> Recovered; ///< belongs to Last, while Recovering
    bool Preserve = false;
    QTimer BaseTimer; ///< to the quiet moment after a load
    QTimer SnapshotTimer;
    QVariantMap Statuses;      ///< of all commands, by their names in the page scripts; empty: ask again
    QVariantMap ShownStatuses; ///< the same and some values, as told with the last DisplayChanged
    QVariantMap ShownValues;
    qint64 ToldChanges = -1; ///< the page's newest count of changes that the host knows of
    QString Title;
    qint64 TitleChanges = -1; ///< the page's count of changes when Title was read; -1: ask again
    bool LooksEmpty = false;
    /// What the page says with every change.
    struct
    {
        bool Known = false; ///< no change since that the page has not told yet
        bool Undo = false;
        bool Redo = false;
        bool Selected = false;
    } State;
    std::shared_ptr<QPrinter> Printer; ///< while it prints
    bool Dirty = false;
    bool CleanIsSaved = true; ///< what counts as unchanged was loaded or marked clean, not merely set
    bool Borders = false;
    bool Details = false;
    bool Snap = false;
    bool EverLoaded = false;
    bool Recovering = false; ///< after the load under way, the last snapshot goes on top of it
    int Restarts = 0;
};
