#include "shell/AboutBox.h"

#include <QApplication>
#include <QGuiApplication>
#include <QIcon>
#include <QMessageBox>
#include <QObject>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>

using namespace Qt::StringLiterals;

namespace {

QString AboutText()
{
    return QObject::tr("<h3>Inkloom %1</h3>"
                       "<p>An editor for HTML pages, made for web sites that people keep by hand: what you see is "
                       "the page, and what you did not touch stays as it was written.</p>"
                       "<p>Free software under the GNU General Public License, version 3 or later. "
                       "It comes without any warranty.</p>")
        .arg(QStringLiteral(INKLOOM_VERSION));
}

QString MadeWith()
{
    return QObject::tr("<p><small>Made with Qt %1, Qt WebEngine %2 (Chromium %3) and QScintilla.</small></p>")
        .arg(QString::fromLatin1(qVersion()), QString::fromLatin1(qWebEngineVersion()),
             QString::fromLatin1(qWebEngineChromiumVersion()));
}

} // namespace

void ShowAboutBox(QWidget *parent)
{
    QMessageBox box(parent);
    box.setObjectName(u"AboutBox"_s);
    box.setWindowTitle(QObject::tr("About Inkloom"));
    box.setTextFormat(Qt::RichText);
    box.setIconPixmap(QIcon(u":/inkloom/icons/inkloom.svg"_s).pixmap(72));
    box.setText(AboutText() + MadeWith());
    box.exec();
}
