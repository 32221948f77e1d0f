#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QRect>
#include <QSize>
#include <QStringList>

#include <optional>

/// A screen of its own with a window manager, and the hands and eyes of the person who sits before it: real keys and
/// real mouse clicks, which arrive at whatever window has the focus or lies there. The keyboard is a German one, so
/// that umlauts and the euro sign are keys, too.
///
/// What is pressed here takes effect in its own time. The caller polls for what should become of it.
class VirtualDisplay
{
public:
    /// A quick typist, or as fast as the display takes keys.
    enum class Speed { Person, Machine };

    explicit VirtualDisplay(QSize size = {1024, 768});
    ~VirtualDisplay();
    Q_DISABLE_COPY(VirtualDisplay)

    /// False when the X server or the window manager could not be started.
    bool IsReady() const { return m_ready; }
    /// ":7"
    QString Name() const { return m_name; }

    /// One key after the other, in the words of X: "ctrl+s", "Return".
    bool Press(const QStringList &keys);
    bool Type(const QString &text, Speed speed = Speed::Person);
    /// The left button, so many times in a row. Seen from the screen's corner.
    bool Click(QPoint place, int times = 1);
    bool MiddleClick(QPoint place);
    /// Takes what lies at `from` to `to` with the left button, in steps as a hand makes them. `thenKeys` are pressed
    /// before the button is let go.
    bool Drag(QPoint from, QPoint to, const QStringList &thenKeys = {});

    QImage Picture() const;
    /// Place of the first pixel of exactly this colour, seen line by line; none: (-1, -1).
    QPoint Find(QRgb colour) const;
    /// The smallest rectangle around all pixels of exactly this colour.
    QRect Extent(QRgb colour) const;
    /// Ids of the windows that can be seen of a process, oldest first. Menus and tooltips have no title and are left
    /// out.
    QStringList Windows(qint64 process) const;
    QString Title(const QString &window) const;
    /// Id of the window that gets the keys.
    QString WindowWithFocus() const;
    QRect Geometry(const QString &window) const;

    /// Begins a drag and leaves the button down, so that it can be seen what shows meanwhile.
    bool DragAndHold(QPoint from, QPoint to);

private:
    void Stop();
    bool StartServer(QSize size);
    bool StartWindowManager();
    /// Runs one of the tools of the display; what it printed.
    std::optional<QByteArray> Run(const QString &tool, const QStringList &arguments) const;

    QProcess m_server;
    QProcess m_windowManager;
    QString m_name;
    bool m_ready = false;
};
