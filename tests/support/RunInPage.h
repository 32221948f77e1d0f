#pragma once

#include "platform/surface/DesignSurface.h"

#include <QEventLoop>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>

/// The value of a script in the world of our page scripts, once all input up to now has been worked on. Invalid when
/// the page does not answer.
inline QVariant RunInPage(DesignSurface &surface, const QString &script)
{
    surface.IsDirty(); // waits for what was typed
    QVariant answer;
    QEventLoop loop;
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    surface.findChild<QWebEngineView *>()->page()->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                                                                 [&](const QVariant &value) {
                                                                     answer = value;
                                                                     loop.quit();
                                                                 });
    loop.exec();
    return answer;
}
