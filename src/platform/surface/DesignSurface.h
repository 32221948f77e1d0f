#pragma once

#include "platform/surface/Decmd.h"
#include "platform/surface/Dom.h"
#include "platform/surface/merge/MergedText.h"
#include "platform/TextFile.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <memory>

class FileDialogs;

/// The design view: one page, edited as it looks. Nothing of a page runs here: no script, no form, no frame, nothing
/// from the network; any file may be opened.
///
/// Loading is asynchronous: after LoadDocument, LoadText or SetDocumentHTML the surface is `Busy` until it has raised
/// DocumentComplete. While it is busy, reads answer for the page that was there before; wait first (WaitWhileBusy).
/// All other calls are synchronous. They wait for keys and clicks that the user made before the call, so that a save
/// never misses the last word typed; they never take longer than a few seconds even if the renderer hangs or dies.
///
/// What is dropped from outside goes in as a paste at the place of the drop. A drag of the program's own, of MIME type
/// ItemMimeType, only moves the caret along, with DisplayChanged behind each move and behind the drop: whoever started
/// it puts in what it stands for.
class DesignSurface : public QWidget
{
    Q_OBJECT

public:
    static constexpr const char *ItemMimeType = "application/x-inkloom-item";

    explicit DesignSurface(QWidget *parent = nullptr);
    ~DesignSurface() override;

    enum class LoadError { None, NotFound, AccessDenied, NotText, Unexpected };

    /// Loads a file. Its folder becomes the base of relative addresses. The page is unchanged when the answer is not
    /// None.
    LoadError LoadDocument(const QString &path);
    /// Loads a text as if it were the file `path`, which need not exist ("" for a page without a name).
    void LoadText(const QString &text, const QString &path);

    /// Writes the page as it stands (see DocumentHTML) in the encoding it was loaded in; after that it is not dirty.
    FileError SaveDocument(const QString &path);

    /// The whole page as text: its source where SourceCodePreservation is on, else its engine form. "" when nothing was
    /// ever loaded.
    QString DocumentHTML();
    /// In engine form (EngineForm.h), server-side code as it stood, in the line ends that most lines of the loaded text
    /// had.
    QString EngineHTML();
    /// The text that was loaded or set, with only those places new where the page was changed since. Read again, it is
    /// the page. Where SourceCodePreservation is off, all of it is new: the engine form.
    MergedText DocumentSource();
    /// Off at start.
    bool SourceCodePreservation() const;
    void SetSourceCodePreservation(bool preserve);

    /// What a text that is set was made of.
    enum class TextForm {
        Source, ///< DocumentHTML, or the user's own writing: it is the source from now on
        Engine  ///< EngineHTML: the source of the page before stays the source, but for what differs
    };
    /// Replaces the whole page; asynchronous. One step for undo. The page then counts as unchanged: the caller says
    /// whether the change is to be saved.
    void SetDocumentHTML(const QString &text);
    void SetDocumentHTML(const QString &text, TextForm form);

    /// A stretch of page text: 1-based position and length in UTF-16 units. Position 0: none.
    struct TextSpan
    {
        qsizetype Position = 0;
        qsizetype Length = 0;
    };
    /// The same, but the page counts as changed; then selects what stands there in the text, or puts the caret there. A
    /// place within a tag, a comment or a script is taken as the one in front of it; exactly an object's tag selects
    /// the object. What showed at the top of the view stays there as far as the selection shows.
    void SetDocumentHTML(const QString &text, TextSpan selection);
    /// Selects what stands there in a text of the very page that the surface has (its DocumentHTML, cleaned up or not);
    /// the page stays as it is. False when there is no such place.
    bool SelectInText(const QString &text, TextSpan selection);

    /// DocumentSource with two words in it: where the selection starts and where it ends. Object: around it. One that
    /// reaches over several blocks has only its start marked unless `span` says Whole. A caret: only the start. Neither
    /// page, history nor selection are touched.
    struct MarkedPage
    {
        MergedText Page;
        QString Type; ///< what is selected, as SelectionType tells it
    };
    enum class MarkSpan { OneBlock, Whole };
    MarkedPage MarkedHTML(const QString &startWord, const QString &endWord, MarkSpan span);

    /// Puts a style element with these rules at the end of the page's head, or takes all such elements out of it. No
    /// step for undo, and the page counts as unchanged if it was.
    void SetHeadStyle(const QString &rules, bool on);

    /// Base of relative addresses, as a file URL.
    QString BaseURL() const;
    void SetBaseURL(const QString &url);

    /// Text of the title element, white space collapsed; "" when there is none.
    QString DocumentTitle();
    /// The page that was loaded or set last came up with next to nothing in its body.
    bool LooksEmpty() const;
    /// The path of the last LoadDocument or LoadText.
    QString CurrentDocumentPath() const;

    /// True when the page differs from what was loaded, saved or set last.
    bool IsDirty();
    /// True when the page is what was loaded or marked clean last, by undoing too; not for one that merely counts as
    /// unchanged since a text was set.
    bool IsAsSaved();
    /// The page as it is now counts as unchanged.
    void MarkClean();

    bool Busy() const;
    /// Waits, without user input, until the surface is not busy, `milliseconds` at most. False when it still is.
    bool WaitWhileBusy(int milliseconds = 60000);

    /// Dotted outlines around tables and cells without a border; never part of the page.
    bool ShowBorders() const;
    void SetShowBorders(bool show);
    /// Marks for what does not show: anchors, comments, scripts, styles, line breaks, forms, hidden fields, code of the
    /// server; never part of the page. Off at first.
    bool ShowDetails() const;
    void SetShowDetails(bool show);
    /// Positioned elements move and grow in steps of ten pixels; dots show where they may stand.
    bool SnapToGrid() const;
    void SetSnapToGrid(bool snap);

    /// Objects, selections and ranges of the page.
    DomDocument DOM();

    /// Runs a command on the selection. Not available: nothing happens. A DECMD_GET... command gives its value.
    QVariant ExecCommand(Decmd command, ExecOption option = ExecOption::DoDefault, const QVariant &argument = {});
    /// Never fails; DECMDF_NOTSUPPORTED for what is no command.
    Decmdf QueryStatus(Decmd command);

    /// What the page told with the last DisplayChanged: the status of a command, and the value of DECMD_GETFONTNAME,
    /// DECMD_GETFONTSIZE or DECMD_GETBLOCKFMT. They ask the page for nothing and wait for no key, so that what shows
    /// them at every move of the caret never holds it up. DECMDF_DISABLED and an invalid value right after a load.
    Decmdf ShownStatus(Decmd command) const;
    QVariant ShownValue(Decmd command) const;

    /// The items of the menu about to appear, called while ShowContextMenu is handled. An empty text is a separator;
    /// state 0 is normal, 2 greyed. Without items no menu shows.
    void SetContextMenu(const QStringList &items, const QList<int> &states);

    /// Lets the user choose a printer and prints the page, without marks and handles. Printing goes on after the
    /// return.
    void Print(FileDialogs &dialogs);

    /// Pastes the clipboard's text, whatever else it holds.
    void PasteText();

    /// Caret to the very start of the page, scrolled into view.
    void CaretToPageStart();
    /// What the selected text covers on the screen; empty when nothing is selected.
    QRect SelectionOnScreen();
    /// Nothing stays selected: the selection becomes a caret at its start.
    void CollapseSelection();
    /// Selects the first occurrence of `text` as the page shows it (white space collapsed, across inline tags) and
    /// scrolls there. False when it does not occur.
    bool SelectText(const QString &text);
    /// "None", "Text" or "Control".
    QString SelectionType();

    /// The widget that takes the keyboard; it changes when the renderer process was replaced.
    QWidget *InputWidget() const;
    /// Process of the renderer; 0 when none runs.
    qint64 RendererProcessId() const;

    /// The text to offer after a crash of the program: the page at most one second ago, as EngineHTML gives it.
    QString LastSnapshot() const;

    /// While one lives, all that is done to the page is one step for undo, SetDocumentHTML included. Its end waits for
    /// what is still loading. Not over anything that lets the user type.
    class OneStep
    {
    public:
        explicit OneStep(DesignSurface &surface);
        ~OneStep();
        Q_DISABLE_COPY_MOVE(OneStep)

    private:
        DesignSurface &m_surface;
    };

signals:
    /// Something that the user should read, where the program shows such things.
    void Notice(const QString &text);
    /// DECMD_FINDTEXT: whoever shows the surface asks the user for words.
    void FindTextWanted();
    void DocumentComplete();
    /// Selection or content changed, through the user or a command.
    void DisplayChanged();
    /// The user clicked once or twice with the left button, in or on something in the page; the selection is there now.
    void onclick();
    void ondblclick();
    /// A key went down or up in the page: DOM().EventKeyCode() tells which; 0 with onkeyup when the page lost the
    /// focus, since whatever is down will rise elsewhere. Keys that a menu's shortcut takes do not come.
    void onkeydown();
    void onkeyup();
    /// A right click (what it hit is selected now) or the menu key: the handler calls SetContextMenu. `place` is where
    /// the menu will show, in the surface's own pixels.
    void ShowContextMenu(QPoint place);
    /// A drag of MIME type ItemMimeType was dropped, and the caret stands at the place.
    void ItemDropped();
    /// An item of that menu was chosen.
    void ContextMenuAction(int index);
    void DirtyChanged(bool dirty);
    /// There are unsaved changes and LastSnapshot is newer than at the last signal.
    void SnapshotTaken();
    /// The renderer process died; the page is being loaded again from the last snapshot.
    void RendererLost();

private:
    friend class DomHandle;
    class Private;
    std::unique_ptr<Private> d;
};
