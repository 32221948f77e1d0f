#include "shell/Hourglass.h"

#include <QCursor>
#include <QGuiApplication>

#include <chrono>

using namespace std::chrono_literals;

Hourglass::Hourglass(QObject *parent) : QObject(parent)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(1s);
    connect(&m_patience, &QTimer::timeout, this, &Hourglass::TakesLong);
}

Hourglass::~Hourglass()
{
    if (m_on)
        QGuiApplication::restoreOverrideCursor();
}

void Hourglass::Show(bool on)
{
    if (on == m_on)
        return; // the pointers are a stack: one push, one pop
    m_on = on;
    if (on) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        m_patience.start();
    } else {
        QGuiApplication::restoreOverrideCursor();
        m_patience.stop();
        emit Ended();
    }
}
