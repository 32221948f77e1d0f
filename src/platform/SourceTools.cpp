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

QRect SelectionOnScreen(const QsciScintilla &view)
{
    const auto pointAt = [&view](long bytes) {
        return QPoint(int(view.SendScintilla(Sci::SCI_POINTXFROMPOSITION, 0UL, bytes)),
                      int(view.SendScintilla(Sci::SCI_POINTYFROMPOSITION, 0UL, bytes)));
    };
    const QPoint start = pointAt(view.SendScintilla(Sci::SCI_GETSELECTIONSTART));
    const QPoint end = pointAt(view.SendScintilla(Sci::SCI_GETSELECTIONEND));
    const QWidget *text = view.viewport();
    const QPoint corner(start.y() == end.y() ? end.x() : text->width(), end.y() + view.textHeight(0));
    const QRect shown = QRect(start.y() == end.y() ? start : QPoint(0, start.y()), corner).intersected(text->rect());
    return start == end ? QRect() : QRect(text->mapToGlobal(shown.topLeft()), shown.size());
}
