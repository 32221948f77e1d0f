#include "platform/SourceEditor.h"

#include "platform/LineEnds.h"
#include "platform/SourceColours.h"
#include "platform/SourceTools.h"
#include "platform/StyleSheetScan.h"

#include <QHideEvent>
#include <Qsci/qscicommand.h>
#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexerhtml.h>
#include <Qsci/qsciscintilla.h>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QVBoxLayout>

#include <utility>

namespace {

using Sci = QsciScintilla;

enum Margin { LineNumberMargin = 0, SymbolMargin = 1, FoldMargin = 2 };

/// Lines coloured above and below what is on the screen, so that scrolling seldom shows plain text for a moment.
constexpr long StyleSheetReserve = 100;

constexpr int TextMargin = 4; ///< pixels between the margins and the text

constexpr int FirstStyleSheetIndicator = Sci::INDIC_CONTAINER;
constexpr int StyleSheetIndicators = static_cast<int>(StyleSheetScan::Kind::Mark) + 1;

bool IsContinuation(char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// A character of four bytes is a surrogate pair in UTF-16.
bool IsPair(char lead)
{
    return static_cast<unsigned char>(lead) >= 0xF0;
}

qsizetype UnitsOfBytes(QByteArrayView utf8)
{
    qsizetype units = 0;
    for (char byte : utf8)
        units += (IsContinuation(byte) ? 0 : 1) + (IsPair(byte) ? 1 : 0);
    return units;
}

/// Bytes of the first `units` UTF-16 units; a pair that does not fit whole is left out.
qsizetype BytesOfUnits(QByteArrayView utf8, qsizetype units)
{
    qsizetype at = 0;
    while (at < utf8.size() && units > 0) {
        units -= IsPair(utf8[at]) ? 2 : 1;
        if (units < 0)
            break;
        do
            ++at;
        while (at < utf8.size() && IsContinuation(utf8[at]));
    }
    return at;
}

/// The control keeps UTF-8 and stops at a NUL; lone surrogates would become question marks.
QString Holdable(const QString &text)
{
    if (!text.contains(QChar::Null) && text.isValidUtf16())
        return text;
    QString clean = text;
    for (qsizetype i = 0; i < clean.size(); ++i) {
        const QChar c = clean[i];
        if (c.isHighSurrogate() && i + 1 < clean.size() && clean[i + 1].isLowSurrogate())
            ++i;
        else if (c.isNull() || c.isSurrogate())
            clean[i] = QChar::ReplacementCharacter;
    }
    return clean;
}

/// True unless most indented lines of the text begin with a blank.
bool IndentsByTabs(QStringView text)
{
    qsizetype surplus = 0;
    QChar before = u'\n';
    for (QChar c : text) {
        if (before == u'\n' || before == u'\r')
            surplus += c == u'\t' ? 1 : c == u' ' ? -1 : 0;
        before = c;
    }
    return surplus >= 0;
}

bool IsEditingCommand(QsciCommand::Command command)
{
    // The control answers "mine" to every key that it has a command for, which would win over the window's actions.
    switch (command) {
    case QsciCommand::ParaDown:
    case QsciCommand::ParaDownExtend:
    case QsciCommand::ParaUp:
    case QsciCommand::ParaUpExtend:
    case QsciCommand::WordPartLeft:
    case QsciCommand::WordPartLeftExtend:
    case QsciCommand::WordPartRight:
    case QsciCommand::WordPartRightExtend:
    case QsciCommand::LineDelete:
    case QsciCommand::LineCut:
    case QsciCommand::LineCopy:
    case QsciCommand::LineTranspose:
    case QsciCommand::LineDuplicate:
    case QsciCommand::SelectionDuplicate:
    case QsciCommand::SelectionLowerCase:
    case QsciCommand::SelectionUpperCase:
    case QsciCommand::VCHomeRectExtend:
    case QsciCommand::HomeDisplay:
    case QsciCommand::LineEndDisplay:
    case QsciCommand::Cancel:
    case QsciCommand::Formfeed:
        return false;
    default:
        return true;
    }
}

Sci::EolMode EolModeOf(LineEnds ends)
{
    switch (ends) {
    case LineEnds::CrLf:
        return Sci::EolWindows;
    case LineEnds::Cr:
        return Sci::EolMac;
    case LineEnds::Lf:
    case LineEnds::Mixed:
        break;
    }
    return Sci::EolUnix;
}

} // namespace

struct SourceEditor::Private
{
    explicit Private(QWidget *owner) : View(owner) {}

    /// The bytes as the control has them; valid until the text changes.
    QByteArrayView Bytes() const
    {
        const auto *data = static_cast<const char *>(View.SendScintillaPtrResult(Sci::SCI_GETCHARACTERPOINTER));
        return {data, static_cast<qsizetype>(View.SendScintilla(Sci::SCI_GETLENGTH))};
    }

    void SetUp();
    void SetUpKeys();
    void Recolour(const QPalette &palette);
    void ColourStyleSheets();

    QsciLexerHTML Lexer;
    QsciScintilla View;
    bool Filling = false;     ///< SetText is at work: what changes is not the user's doing
    bool CaretWanted = false; ///< to be scrolled to again once the lines around it are wrapped and the size is known
    bool Modified = false;    ///< as last announced

    std::vector<StyleSheetScan::Range> Sheets;
    bool SheetsKnown = false;             ///< `Sheets` is that of the present text
    StyleSheetScan::Range ColouredSheets; ///< bytes in which style sheets have their colours
};

void SourceEditor::Private::SetUp()
{
    View.setUtf8(true);
    View.setLexer(&Lexer);
    Lexer.setFoldCompact(false);
    Lexer.setFoldScriptComments(true);
    Lexer.setFoldScriptHeredocs(true);
    // "<% %>" is VBScript unless the page says otherwise; taken for JavaScript, its apostrophes would open strings.
    View.SendScintilla(Sci::SCI_SETPROPERTY, "asp.default.language", "2");
    View.setAutoCompletionSource(Sci::AcsNone);
    View.setTabWidth(4);
    View.setAutoIndent(true);
    View.setBraceMatching(Sci::SloppyBraceMatch);
    View.setCaretLineVisible(true);
    View.setWrapMode(Sci::WrapNone); // see showEvent
    View.setWrapIndentMode(Sci::WrapIndentSame);
    View.setWrapVisualFlags(Sci::WrapFlagByBorder);
    View.setMarginType(LineNumberMargin, Sci::NumberMargin);
    View.setMarginWidth(SymbolMargin, 0);
    View.setFolding(Sci::BoxedTreeFoldStyle, FoldMargin);
    View.SendScintilla(Sci::SCI_SETMARGINLEFT, 0UL, long{TextMargin});
    // The scroll bar of wrapped text has nothing to do; without it the control would offer 2000 empty pixels.
    View.SendScintilla(Sci::SCI_SETSCROLLWIDTH, 1UL);
    View.SendScintilla(Sci::SCI_SETSCROLLWIDTHTRACKING, 1UL);
    for (int kind = 0; kind < StyleSheetIndicators; ++kind)
        View.SendScintilla(Sci::SCI_INDICSETSTYLE, FirstStyleSheetIndicator + kind, long{Sci::INDIC_TEXTFORE});
    SetUpKeys();
}

void SourceEditor::Private::SetUpKeys()
{
    const QList<QsciCommand *> commands = View.standardCommands()->commands();
    for (QsciCommand *command : commands) {
        if (!IsEditingCommand(command->command())) {
            command->setKey(0);
            command->setAlternateKey(0);
        } else if (command->command() == QsciCommand::Redo) {
            command->setAlternateKey((Qt::CTRL | Qt::SHIFT | Qt::Key_Z).toCombined());
        }
    }
}

void SourceEditor::Private::Recolour(const QPalette &palette)
{
    const SourceColours colours(palette);
    ColourLexer(Lexer, colours);
    ColourEditor(View, colours, palette);
    const QColor inks[StyleSheetIndicators] = {colours.Tag,    colours.Keyword, colours.Attribute, colours.String,
                                               colours.String, colours.Comment, colours.Text};
    for (int kind = 0; kind < StyleSheetIndicators; ++kind)
        View.setIndicatorForegroundColor(inks[kind], FirstStyleSheetIndicator + kind);
}

/// The lexer takes a style sheet for plain text, so its parts are coloured by indicators, near the screen only.
void SourceEditor::Private::ColourStyleSheets()
{
    const auto ask = [this](unsigned message, long wparam = 0) {
        return View.SendScintilla(message, static_cast<unsigned long>(wparam));
    };
    const long topRow = ask(Sci::SCI_GETFIRSTVISIBLELINE);
    const long rows = ask(Sci::SCI_LINESONSCREEN);
    const long lastLine = ask(Sci::SCI_GETLINECOUNT) - 1;
    const auto lineAt = [&](long row) { return qBound(0L, ask(Sci::SCI_DOCLINEFROMVISIBLE, qMax(0L, row)), lastLine); };
    const long top = lineAt(topRow);
    const long bottom = lineAt(topRow + rows);
    if (SheetsKnown && ask(Sci::SCI_POSITIONFROMLINE, top) >= ColouredSheets.Start &&
        ask(Sci::SCI_GETLINEENDPOSITION, bottom) <= ColouredSheets.End)
        return;

    const QByteArrayView text = Bytes();
    if (!SheetsKnown)
        Sheets = StyleSheetScan::FindStyleSheets(text);
    SheetsKnown = true;
    ColouredSheets = {ask(Sci::SCI_POSITIONFROMLINE, qMax(0L, top - StyleSheetReserve)),
                      ask(Sci::SCI_GETLINEENDPOSITION, qMin(lastLine, bottom + StyleSheetReserve))};
    const auto [start, end] = ColouredSheets;
    const auto each = [&](int kind, unsigned message, qsizetype from, qsizetype length) {
        ask(Sci::SCI_SETINDICATORCURRENT, FirstStyleSheetIndicator + kind);
        View.SendScintilla(message, static_cast<unsigned long>(from), static_cast<long>(length));
    };
    for (int kind = 0; kind < StyleSheetIndicators; ++kind)
        each(kind, Sci::SCI_INDICATORCLEARRANGE, start, end - start);
    for (const StyleSheetScan::Range &sheet : Sheets) {
        if (sheet.End <= start || sheet.Start >= end)
            continue;
        // A style tag inside a comment or a script is no style sheet: the lexer knows.
        if (const long styled = ask(Sci::SCI_GETENDSTYLED); styled < sheet.Start)
            View.SendScintilla(Sci::SCI_COLOURISE, static_cast<unsigned long>(styled), static_cast<long>(sheet.Start));
        if (ask(Sci::SCI_GETSTYLEAT, sheet.Start - 1) != QsciLexerHTML::Tag)
            continue;
        const qsizetype stop = qMin(sheet.End, end);
        for (const auto &[where, kind] : StyleSheetScan::Tokens(text.sliced(sheet.Start, stop - sheet.Start))) {
            if (sheet.Start + where.End > start)
                each(static_cast<int>(kind), Sci::SCI_INDICATORFILLRANGE, sheet.Start + where.Start,
                     where.End - where.Start);
        }
    }
}

SourceEditor::SourceEditor(QWidget *parent) : QWidget(parent), m_d(std::make_unique<Private>(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(&m_d->View);
    m_d->SetUp();
    m_d->Recolour(palette());
    setFocusProxy(&m_d->View);
    setAccessibleName(tr("HTML source"));
    m_d->View.setAccessibleName(tr("HTML source"));
    ShowLineNumbers();

    connect(&m_d->View, &Sci::textChanged, this, [this] {
        m_d->SheetsKnown = false;
        if (!m_d->Filling)
            emit TextEdited();
    });
    const auto modificationChanged = [this] {
        if (m_d->Filling || IsModified() == m_d->Modified)
            return;
        m_d->Modified = IsModified();
        emit ModifiedChanged(m_d->Modified);
    };
    connect(&m_d->View, &Sci::modificationChanged, this, modificationChanged);
    connect(&m_d->View, &Sci::cursorPositionChanged, this, &SourceEditor::CaretMoved);
    connect(&m_d->View, &Sci::linesChanged, this, &SourceEditor::ShowLineNumbers);
    connect(&m_d->View, &Sci::SCN_ZOOM, this, &SourceEditor::ShowLineNumbers);
    const auto scrollAgain = [this] {
        if (std::exchange(m_d->CaretWanted, false))
            ScrollToCaret();
    };
    connect(&m_d->View, &Sci::SCN_PAINTED, this, scrollAgain, Qt::QueuedConnection);
    connect(&m_d->View, &Sci::SCN_UPDATEUI, this, [this] { m_d->ColourStyleSheets(); });
}

SourceEditor::~SourceEditor()
{
    m_d->View.disconnect(this); // going, it may still have something to tell
}

QString SourceEditor::Text() const
{
    return QString::fromUtf8(m_d->Bytes());
}

void SourceEditor::SetText(const QString &text)
{
    {
        const QScopedValueRollback<bool> filling(m_d->Filling, true);
        // Wrapping comes later, in idle time and on the screen first; done at once, it takes seconds for 5 MB.
        m_d->View.setWrapMode(Sci::WrapNone);
        m_d->View.setText(Holdable(text));
        m_d->View.setModified(false);
        m_d->View.setEolMode(EolModeOf(MajorityLineEnds(text)));
        m_d->View.setIndentationsUseTabs(IndentsByTabs(text));
        m_d->View.setFirstVisibleLine(0);
        if (isVisible()) // see showEvent
            m_d->View.setWrapMode(Sci::WrapWord);
        m_d->CaretWanted = false;
    }
    if (std::exchange(m_d->Modified, false))
        emit ModifiedChanged(false);
}

bool SourceEditor::IsModified() const
{
    return m_d->View.isModified();
}

void SourceEditor::ResetModified()
{
    m_d->View.setModified(false);
}

qsizetype SourceEditor::CaretPosition() const
{
    return UnitsOfBytes(m_d->Bytes().first(m_d->View.SendScintilla(Sci::SCI_GETCURRENTPOS))) + 1;
}

qsizetype SourceEditor::SelectionStart() const
{
    return UnitsOfBytes(m_d->Bytes().first(m_d->View.SendScintilla(Sci::SCI_GETSELECTIONSTART))) + 1;
}

QRect SourceEditor::SelectionOnScreen() const
{
    return ::SelectionOnScreen(m_d->View);
}

qsizetype SourceEditor::SelectionLength() const
{
    const long start = m_d->View.SendScintilla(Sci::SCI_GETSELECTIONSTART);
    return UnitsOfBytes(m_d->Bytes().sliced(start, m_d->View.SendScintilla(Sci::SCI_GETSELECTIONEND) - start));
}

int SourceEditor::FirstLine() const
{
    const long row = m_d->View.SendScintilla(Sci::SCI_GETFIRSTVISIBLELINE);
    return static_cast<int>(m_d->View.SendScintilla(Sci::SCI_DOCLINEFROMVISIBLE, static_cast<unsigned long>(row)));
}

void SourceEditor::SetFirstLine(int line)
{
    const long row = m_d->View.SendScintilla(Sci::SCI_VISIBLEFROMDOCLINE, static_cast<unsigned long>(qMax(0, line)));
    m_d->View.SendScintilla(Sci::SCI_SETFIRSTVISIBLELINE, static_cast<unsigned long>(row));
}

void SourceEditor::Select(qsizetype position, qsizetype length)
{
    const QByteArrayView bytes = m_d->Bytes();
    const qsizetype index = qMax(qsizetype{0}, position - 1);
    const qsizetype start = BytesOfUnits(bytes, index);
    // When `index` lies inside a pair, `start` stands in front of it: the end must not move with it.
    const qsizetype cut = start < bytes.size() ? index - UnitsOfBytes(bytes.first(start)) : 0;
    const qsizetype end = start + BytesOfUnits(bytes.sliced(start), cut + qMin(length, bytes.size()));
    // Not SCI_SETSEL, which would wrap the whole text at once.
    m_d->View.SendScintilla(Sci::SCI_SETSELECTION, static_cast<unsigned long>(end), static_cast<long>(start));
    ScrollToCaret();
    m_d->CaretWanted = true;
    m_d->View.viewport()->update();
}

void SourceEditor::ReplaceText(qsizetype position, qsizetype length, const QString &text)
{
    const qsizetype start = BytesOfUnits(m_d->Bytes(), qMax(qsizetype{0}, position - 1));
    const qsizetype end = start + BytesOfUnits(m_d->Bytes().sliced(start), length);
    const QByteArray put = Holdable(text).toUtf8();
    m_d->View.SendScintilla(Sci::SCI_SETTARGETSTART, static_cast<unsigned long>(start));
    m_d->View.SendScintilla(Sci::SCI_SETTARGETEND, static_cast<unsigned long>(end));
    m_d->View.SendScintilla(Sci::SCI_REPLACETARGET, static_cast<unsigned long>(put.size()), put.constData());
    const long behind = m_d->View.SendScintilla(Sci::SCI_GETTARGETEND);
    m_d->View.SendScintilla(Sci::SCI_SETSELECTION, static_cast<unsigned long>(behind), behind);
    ScrollToCaret();
}

void SourceEditor::ScrollToCaret()
{
    const auto ask = [this](unsigned message, long wparam = 0) {
        return m_d->View.SendScintilla(message, static_cast<unsigned long>(wparam));
    };
    const long anchor = ask(Sci::SCI_GETANCHOR);
    const long caret = ask(Sci::SCI_GETCURRENTPOS);
    for (long end : {anchor, caret}) {
        const long line = ask(Sci::SCI_LINEFROMPOSITION, end);
        if (!ask(Sci::SCI_GETLINEVISIBLE, line))
            ask(Sci::SCI_ENSUREVISIBLE, line);
    }
    m_d->View.SendScintilla(Sci::SCI_SCROLLRANGE, static_cast<unsigned long>(anchor), caret);
}

void SourceEditor::Undo()
{
    m_d->View.undo();
}

void SourceEditor::Redo()
{
    m_d->View.redo();
}

void SourceEditor::Cut()
{
    m_d->View.cut();
}

void SourceEditor::Copy()
{
    m_d->View.copy();
}

void SourceEditor::Paste()
{
    m_d->View.paste();
}

void SourceEditor::SelectAll()
{
    m_d->View.selectAll();
}

bool SourceEditor::CanUndo() const
{
    return m_d->View.isUndoAvailable();
}

bool SourceEditor::CanRedo() const
{
    return m_d->View.isRedoAvailable();
}

void SourceEditor::Print(FileDialogs &dialogs)
{
    PrintSource(m_d->View, dialogs);
}

void SourceEditor::SetReadOnly(bool readOnly)
{
    m_d->View.setReadOnly(readOnly);
}

void SourceEditor::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        m_d->Recolour(palette());
    QWidget::changeEvent(event);
}

/// Only a view that is seen wraps its lines: with a long text that takes many seconds of idle time, which the design
/// view needs for the load of the same page.
void SourceEditor::showEvent(QShowEvent *event)
{
    if (!event->spontaneous())
        m_d->View.setWrapMode(Sci::WrapWord);
    QWidget::showEvent(event);
}

void SourceEditor::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        m_d->View.setWrapMode(Sci::WrapNone);
    QWidget::hideEvent(event);
}

void SourceEditor::ShowLineNumbers()
{
    const int digits = qMax(3, static_cast<int>(QString::number(m_d->View.lines()).size()));
    m_d->View.setMarginWidth(LineNumberMargin, QString(digits + 1, u'8'));
}
