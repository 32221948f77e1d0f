// The page on paper, or in a file.
#include "platform/FileDialogs.h"
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/SurfacePage.h"

#include <QPrinter>
#include <QWebEngineView>

namespace {

constexpr int PictureResolution = 300; ///< the engine hands pictures of the pages to a printer: dots an inch

} // namespace

void DesignSurface::Print(FileDialogs &dialogs)
{
    if (Busy() || !d->EverLoaded || d->Printer)
        return;
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setResolution(PictureResolution);
    printer->setDocName(DocumentTitle().replace(u'/', u'-')); // the dialog proposes a file of this name
    if (!dialogs.Print(window(), *printer) || Busy())
        return;
    d->FlushInput();
    d->Printer = printer;
    const auto finished = [this](bool ok) {
        d->Page->Enqueue([this, ok] {
            d->Printer.reset();
            if (!ok)
                emit Notice(tr("The page could not be printed."));
        });
    };
    if (printer->outputFormat() == QPrinter::PdfFormat) { // a file keeps letters and links
        const auto written = [finished](const QString &, bool ok) { finished(ok); };
        connect(d->View, &QWebEngineView::pdfPrintingFinished, this, written, Qt::SingleShotConnection);
        d->View->printToPdf(printer->outputFileName(), printer->pageLayout(), printer->pageRanges());
    } else {
        connect(d->View, &QWebEngineView::printFinished, this, finished, Qt::SingleShotConnection);
        d->View->print(printer.get());
    }
}
