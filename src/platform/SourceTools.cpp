#include "platform/SourceTools.h"

#include "platform/FileDialogs.h"

#include <Qsci/qsciprinter.h>
#include <Qsci/qsciscintilla.h>

namespace {

using Sci = QsciScintilla;

constexpr int PaperMagnification = -2; ///< points that the letters on paper are smaller

} // namespace

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
