#include "platform/surface/DesignSurface.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int Patience = 10000; // milliseconds

/// One page with everything that a page could try; %1 is the address of a server that must never hear of it.
const char HostilePage[] = R"html(<!DOCTYPE html>
<html><head><title>untouched</title>
<base target=_top>
<meta http-equiv=refresh content="0; url=%1/refresh">
<meta http-equiv="Set-Cookie" content="a=b">
<link rel=stylesheet href="%1/style.css">
<link rel=icon href="%1/icon.ico"><link rel=manifest href="%1/manifest">
<link rel=preload as=image href="%1/preload.png"><link rel=prefetch href="%1/prefetch">
<link rel=preconnect href="%1/"><link rel=dns-prefetch href="%1/"><link rel=prerender href="%1/prerender">
<link rel=modulepreload href="%1/module.js"><link rel=import href="%1/import.html">
<style>@import url(%1/import.css); body { background: url(%1/background.png) } @font-face { font-family: f; src: url(%1/font.woff) } p { font-family: f }</style>
<script>document.title = "script"; fetch("%1/fetch");</script>
<script src="%1/script.js"></script><script type=module>import "%1/module.js";</script>
</head>
<body onload="document.title='onload'" onfocus="document.title='onfocus'" background="%1/body.gif">
<p id=target onclick="document.title='onclick'" onmouseover="document.title='over'">Some text to click on.</p>
<a id=link href="javascript:document.title='link'" ping="%1/ping">a link to click on</a>
<a id=away href="%1/away">another link</a>
<img src="%1/image.png" onerror="document.title='onerror'"><img src=missing.png onerror="document.title='missing'">
<img srcset="%1/set.png 1x"><picture><source srcset="%1/source.png"><img></picture>
<input type=image src="%1/input.png"><table background="%1/table.gif"><tr><td background="%1/cell.gif">x</table>
<iframe src="%1/frame.html"></iframe><iframe srcdoc="<script>parent.document.title='srcdoc'</script><img src='%1/srcdoc.png'>"></iframe>
<iframe src="data:text/html,<script>top.document.title='data'</script><img src='%1/data.png'>"></iframe>
<iframe src="inner.html"></iframe>
<object data="%1/object.swf"></object><object data="inner.html"></object><embed src="%1/embed.swf"><applet code=a codebase="%1/"></applet>
<video src="%1/video.mp4" poster="%1/poster.png" autoplay preload=auto></video><audio src="%1/audio.mp3" autoplay></audio>
<video autoplay><source src="%1/movie.webm"><track default src="%1/track.vtt"></video>
<svg onload="document.title='svg'"><script>document.title='svgscript'</script><image href="%1/svg.png"/><use href="%1/use.svg#a"/>
<a href="javascript:document.title='svglink'"><text y=20>svg</text></a></svg>
<math><maction actiontype="statusline" xlink:href="javascript:document.title='math'">m</maction></math>
<form id=f action="%1/form" method=get><input name=a value=b autofocus onfocus="document.title='autofocus'"><input type=submit id=submit value=Send></form>
<details open ontoggle="document.title='toggle'"><summary>s</summary></details>
<marquee onstart="document.title='marquee'">m</marquee><isindex action="%1/isindex">
<template><img src="%1/template.png"></template><noscript><img src="%1/noscript.png"></noscript>
</body></html>)html";

} // namespace

/// Opening a page in the design view runs nothing of it and tells nobody.
class HostilePageTest : public QObject
{
    Q_OBJECT

private slots:
    void runsNothingAndSendsNothing();
};

void HostilePageTest::runsNothingAndSendsNothing()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QStringList heard;
    connect(&server, &QTcpServer::newConnection, this, [&] {
        while (QTcpSocket *socket = server.nextPendingConnection()) {
            heard.append(QStringLiteral("connection"));
            connect(socket, &QTcpSocket::readyRead, this,
                    [&, socket] { heard.append(QString::fromLatin1(socket->readAll())); });
        }
    });
    const QString address = QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());

    QTemporaryDir folder;
    const auto write = [&](const char *name, const QByteArray &text) {
        QFile file(folder.filePath(QLatin1StringView(name)));
        QVERIFY(file.open(QFile::WriteOnly) && file.write(text) == text.size());
    };
    write("page.html", QByteArray(HostilePage).replace("%1", address.toLatin1()));
    write("inner.html", "<script>top.document.title='inner'; location='" + address.toLatin1() + "/inner'</script>");

    DesignSurface surface;
    surface.resize(900, 700);
    surface.show();
    QVERIFY(QTest::qWaitForWindowExposed(&surface));
    QCOMPARE(surface.LoadDocument(folder.filePath(QStringLiteral("page.html"))), DesignSurface::LoadError::None);
    QVERIFY(surface.WaitWhileBusy(Patience));

    // What a person does first: click about, type, press Enter; on text, links and buttons alike.
    QWidget *input = surface.InputWidget();
    for (int y = 10; y < 700; y += 30) {
        for (int x = 15; x < 880; x += 60) {
            QTest::mouseMove(input, {x, y});
            QTest::mouseClick(input, Qt::LeftButton, Qt::NoModifier, {x, y});
        }
    }
    QTest::mouseClick(input, Qt::LeftButton, Qt::ControlModifier, {40, 60});
    QTest::mouseClick(input, Qt::MiddleButton, Qt::NoModifier, {40, 60});
    surface.CaretToPageStart();
    QTest::keyClicks(input, QStringLiteral("typed"));
    QTest::keyClick(input, Qt::Key_Return);
    QVERIFY(surface.DocumentHTML().contains(QStringLiteral("typed")));

    // Two seconds in which a refresh of no seconds, a timer or a late answer would have shown itself.
    QSignalSpy loaded(&surface, &DesignSurface::DocumentComplete);
    QSignalSpy lost(&surface, &DesignSurface::RendererLost);
    QVERIFY(!loaded.wait(2000));
    QCOMPARE(surface.DocumentTitle(), QStringLiteral("untouched"));
    QCOMPARE(lost.count(), 0);
    QCOMPARE(heard, QStringList());

    const QString text = surface.DocumentHTML();
    for (const char *kept :
         {"onload=", "/fetch", "javascript:document.title='link'", "http-equiv=refresh", "<IFRAME", "autofocus"})
        QVERIFY2(text.contains(QLatin1StringView(kept)), kept);
}

QTEST_MAIN(HostilePageTest)
#include "HostilePageTest.moc"
