// The page on paper, or in a file.
#include "platform/FileDialogs.h"
#include "platform/surface/DesignSurfacePrivate.h"
#include "platform/surface/SurfacePage.h"

#include <QPrinter>
#include <QWebEngineView>

void DesignSurface::Print(FileDialogs &dialogs)
{
    if (Busy() || !d->EverLoaded || d->Printer)
        return;
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(DocumentTitle());
    if (!dialogs.Print(window(), *printer) || Busy())
        return;
    d->FlushInput();
    d->Printer = std::move(printer);
    const auto finished = [this](bool ok) {
        d->Page->Enqueue([this, ok] {
            d->Printer.reset();
            if (!ok)
                emit Notice(tr("The page could not be printed."));
        });
    };
    connect(d->View, &QWebEngineView::printFinished, this, finished, Qt::SingleShotConnection);
    d->View->print(d->Printer.get());
}
