#include "support/VirtualDisplay.h"

#include <QDeadlineTimer>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto StartPatience = 15s;
constexpr int ToolPatience = 30000; ///< milliseconds; typing a long sentence on a busy machine is the longest

} // namespace

VirtualDisplay::VirtualDisplay(QSize size)
{
    for (int attempt = 0; attempt < 3 && !m_ready; ++attempt) {
        Stop(); // servers that start at the same time can lock each other out of a number
        m_ready = StartServer(size) && StartWindowManager() && Run(u"setxkbmap"_s, {u"de"_s});
    }
}

VirtualDisplay::~VirtualDisplay()
{
    Stop();
}

void VirtualDisplay::Stop()
{
    for (QProcess *process : {&m_windowManager, &m_server}) {
        if (process->state() == QProcess::NotRunning)
            continue;
        process->terminate();
        if (!process->waitForFinished(5000))
            process->kill();
        process->waitForFinished(5000);
    }
}

/// The server picks the number itself: two runs must never share a screen.
bool VirtualDisplay::StartServer(QSize size)
{
    const QString screen = u"%1x%2x24"_s.arg(size.width()).arg(size.height());
    m_server.setStandardErrorFile(QProcess::nullDevice());
    // Without -noreset it starts afresh, and drops a client that is just coming, whenever the last one leaves.
    m_server.start(u"Xvfb"_s,
                   {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, screen, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
    QByteArray number;
    // Read before each short wait: what has come already does not end one, and no message loop may run yet.
    for (const QDeadlineTimer limit(StartPatience); !number.endsWith('\n');) {
        if (limit.hasExpired() || m_server.state() == QProcess::NotRunning) {
            qInfo().noquote() << "Xvfb did not tell its number, only:" << number << m_server.errorString();
            return false;
        }
        m_server.waitForReadyRead(100);
        number += m_server.readAllStandardOutput();
    }
    m_name = u':' + QString::fromLatin1(number.trimmed());
    return true;
}

bool VirtualDisplay::StartWindowManager()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, m_name);
    environment.insert(u"XDG_CONFIG_HOME"_s, u"/nonexistent"_s); // the distribution's keys, not those of this user
    m_windowManager.setProcessEnvironment(environment);
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    m_windowManager.start(u"openbox"_s, {});
    return QTest::qWaitFor(
        [this] {
            const auto answer = Run(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
            return answer && answer->contains("window id");
        },
        StartPatience / 1ms);
}

bool VirtualDisplay::Press(const QStringList &keys)
{
    return Run(u"xdotool"_s, QStringList{u"key"_s, u"--delay"_s, u"30"_s} + keys).has_value();
}

bool VirtualDisplay::Type(const QString &text, Speed speed)
{
    const QString delay = speed == Speed::Person ? u"8"_s : u"1"_s;
    return Run(u"xdotool"_s, {u"type"_s, u"--delay"_s, delay, u"--"_s, text}).has_value();
}

bool VirtualDisplay::Click(QPoint place, int times)
{
    return Run(u"xdotool"_s, {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s,
                              u"--repeat"_s, QString::number(times), u"--delay"_s, u"40"_s, u"1"_s})
        .has_value();
}

bool VirtualDisplay::MiddleClick(QPoint place)
{
    return Run(u"xdotool"_s,
               {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, u"2"_s})
        .has_value();
}

bool VirtualDisplay::Drag(QPoint from, QPoint to, const QStringList &thenKeys)
{
    constexpr int Steps = 8;
    const auto move = [](QPoint place) {
        return QStringList{u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"sleep"_s,
                           u"0.05"_s};
    };
    QStringList words = move(from) + QStringList{u"mousedown"_s, u"1"_s, u"sleep"_s, u"0.1"_s};
    for (int step = 1; step <= Steps; ++step)
        words += move(from + (to - from) * step / Steps);
    for (const QString &key : thenKeys)
        words += QStringList{u"key"_s, key, u"sleep"_s, u"0.2"_s};
    return Run(u"xdotool"_s, words + QStringList{u"mouseup"_s, u"1"_s}).has_value();
}

QImage VirtualDisplay::Picture() const
{
    const auto bytes = Run(u"import"_s, {u"-silent"_s, u"-window"_s, u"root"_s, u"ppm:-"_s});
    return bytes ? QImage::fromData(*bytes, "PPM").convertToFormat(QImage::Format_RGB32) : QImage();
}

QPoint VirtualDisplay::Find(QRgb colour) const
{
    const QImage picture = Picture();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if ((picture.pixel(x, y) & RGB_MASK) == (colour & RGB_MASK))
                return {x, y};
        }
    }
    return {-1, -1};
}

QRect VirtualDisplay::Extent(QRgb colour) const
{
    const QImage picture = Picture();
    QRect extent;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if ((picture.pixel(x, y) & RGB_MASK) == (colour & RGB_MASK))
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

QStringList VirtualDisplay::Windows(qint64 process) const
{
    // It finds nothing at all when any window of the display goes while it looks.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto ids = Run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--all"_s, u"--pid"_s,
                                            QString::number(process), u"--name"_s, u"."_s});
        if (ids && !ids->isEmpty())
            return QString::fromLatin1(*ids).split(u'\n', Qt::SkipEmptyParts);
    }
    return {};
}

QString VirtualDisplay::Title(const QString &window) const
{
    return QString::fromUtf8(Run(u"xdotool"_s, {u"getwindowname"_s, window}).value_or("").trimmed());
}

QString VirtualDisplay::WindowWithFocus() const
{
    return QString::fromLatin1(Run(u"xdotool"_s, {u"getactivewindow"_s}).value_or("").trimmed());
}

QRect VirtualDisplay::Geometry(const QString &window) const
{
    // "  Absolute upper-left X:  51" and so on. xdotool counts the frame twice.
    const QByteArray lines = Run(u"xwininfo"_s, {u"-id"_s, window}).value_or("");
    const auto number = [&lines](const QByteArray &name) {
        const qsizetype at = lines.indexOf(name + ':');
        return at < 0 ? 0 : lines.mid(at + name.size() + 1, 12).simplified().split(' ').first().toInt();
    };
    return {number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"), number("Height")};
}

bool VirtualDisplay::DragAndHold(QPoint from, QPoint to)
{
    const auto move = [](QPoint place) {
        return QStringList{u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"sleep"_s,
                           u"0.05"_s};
    };
    return Run(u"xdotool"_s, move(from) + QStringList{u"mousedown"_s, u"1"_s} + move((from + to) / 2) + move(to))
        .has_value();
}

std::optional<QByteArray> VirtualDisplay::Run(const QString &tool, const QStringList &arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, m_name);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(tool, arguments);
    if (!process.waitForFinished(ToolPatience) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput();
}
