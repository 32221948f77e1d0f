#include "shell/frmSplash.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

frmSplash::frmSplash(QWidget *parent)
    : QWidget(parent,
              Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnTopHint)
{
    // On top: the engine makes the main window anew, above this one, when its first view shows.
    setObjectName(u"frmSplash"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto *image = new QLabel(this);
    image->setObjectName(u"Image1"_s);
    image->setAlignment(Qt::AlignCenter);
    image->setAccessibleName(parent->windowTitle());
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(image);

    const QSize size(480, 270);
    image->setPixmap(QIcon(u":/inkloom/splash.svg"_s).pixmap(size, devicePixelRatioF()));
    resize(size);
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
    QTimer::singleShot(1500ms, this, &QWidget::close);
    qApp->installEventFilter(this);
}

bool frmSplash::event(QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked)
        close();
    return QWidget::event(event);
}

bool frmSplash::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress)
        close();
    return QWidget::eventFilter(watched, event);
}
