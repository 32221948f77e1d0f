#include "platform/SourceTools.h"

#include "platform/FileDialogs.h"

#include <Qsci/qsciprinter.h>
#include <Qsci/qsciscintilla.h>

namespace {

using Sci = QsciScintilla;

constexpr int PaperMagnification = -2; ///< points that the letters on paper are smaller

/// Backwards when `from` is behind `to`. -1: not there.
long FindBetween(const Sci &view, const QByteArray &words, long from, long to)
{
    view.SendScintilla(Sci::SCI_SETTARGETSTART, static_cast<unsigned long>(from));
    view.SendScintilla(Sci::SCI_SETTARGETEND, static_cast<unsigned long>(to));
    return view.SendScintilla(Sci::SCI_SEARCHINTARGET, static_cast<unsigned long>(words.size()), words.constData());
}

} // namespace

TextFound FindInSource(QsciScintilla &view, const TextQuery &query)
{
    const QByteArray words = query.Text.toUtf8();
    const long length = view.SendScintilla(Sci::SCI_GETLENGTH);
    const long start = view.SendScintilla(Sci::SCI_GETSELECTIONSTART);
    const long end = view.SendScintilla(Sci::SCI_GETSELECTIONEND);
    view.SendScintilla(Sci::SCI_SETSEARCHFLAGS,
                       (query.WholeWords ? Sci::SCFIND_WHOLEWORD : 0) | (query.MatchCase ? Sci::SCFIND_MATCHCASE : 0));
    TextFound found = TextFound::Here;
    long place = query.Back ? FindBetween(view, words, start, 0) : FindBetween(view, words, end, length);
    if (place < 0) {
        found = TextFound::BeyondEnd;
        place = query.Back ? FindBetween(view, words, length, 0) : FindBetween(view, words, 0, length);
    }
    if (place < 0)
        return TextFound::No;
    const long behind = view.SendScintilla(Sci::SCI_GETTARGETEND);
    const long line = view.SendScintilla(Sci::SCI_LINEFROMPOSITION, static_cast<unsigned long>(place));
    view.SendScintilla(Sci::SCI_ENSUREVISIBLE, static_cast<unsigned long>(line));
    view.SendScintilla(Sci::SCI_SETSELECTION, static_cast<unsigned long>(behind), place);
    view.SendScintilla(Sci::SCI_SCROLLRANGE, static_cast<unsigned long>(place), behind);
    return found;
}

void PrintSource(QsciScintilla &view, FileDialogs &dialogs)
{
    QsciPrinter printer(QPrinter::HighResolution);
    printer.setWrapMode(Sci::WrapWord);
    printer.setMagnification(PaperMagnification);
    if (!dialogs.Print(view.window(), printer))
        return;
    const bool dark = view.palette().color(QPalette::Base).lightness() < 128;
    view.SendScintilla(Sci::SCI_SETPRINTCOLOURMODE, dark ? Sci::SC_PRINT_INVERTLIGHT : Sci::SC_PRINT_COLOURONWHITE);
    printer.printRange(&view);
}
