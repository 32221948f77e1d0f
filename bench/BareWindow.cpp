// The least that shows a page with the web engine: what StartBench holds the editor's start against.
#include <QApplication>
#include <QUrl>
#include <QWebEngineSettings>
#include <QWebEngineView>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QWebEngineView view;
    view.settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    view.resize(900, 700);
    view.load(QUrl::fromLocalFile(application.arguments().value(1)));
    view.show();
    return QApplication::exec();
}
