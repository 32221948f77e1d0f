#include "Photographer.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// Tells the copy of the site from what somebody else calls so.
QString MarkOfCopy()
{
    return QDir::temp().filePath(u".hollowmere-of-inkloom"_s);
}

constexpr int Stillness = 700; ///< milliseconds, longer than the caret shows

/// The smallest rectangle around all that differs.
QRect Differences(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return one.rect() | other.rect();
    QRect extent;
    for (int y = 0; y < one.height(); ++y) {
        const auto *left = reinterpret_cast<const QRgb *>(one.constScanLine(y));
        const auto *right = reinterpret_cast<const QRgb *>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x) {
            if (left[x] != right[x])
                extent |= QRect(x, y, 1, 1);
        }
    }
    return extent;
}

bool Alike(QRgb one, QRgb other)
{
    constexpr int tolerance = 24; // decoders and scaling round in ways of their own
    return std::abs(qRed(one) - qRed(other)) <= tolerance && std::abs(qGreen(one) - qGreen(other)) <= tolerance &&
           std::abs(qBlue(one) - qBlue(other)) <= tolerance;
}

/// Where a picture stands on the screen; a null rectangle when it does not.
QRect PlaceOf(const QImage &picture, const QImage &screen)
{
    QList<QPoint> samples;
    for (int y = picture.height() / 16; y < picture.height(); y += picture.height() / 8) {
        for (int x = picture.width() / 16; x < picture.width(); x += picture.width() / 8)
            samples.append({x, y});
    }
    for (int y = 0; y <= screen.height() - picture.height(); ++y) {
        for (int x = 0; x <= screen.width() - picture.width(); ++x) {
            const auto matches = [&](QPoint at) { return Alike(screen.pixel(QPoint(x, y) + at), picture.pixel(at)); };
            if (std::all_of(samples.begin(), samples.end(), matches))
                return {QPoint(x, y), picture.size()};
        }
    }
    return {};
}

} // namespace

Step Keys(const QString &keys)
{
    return [keys](Photographer &taker) { return taker.Display().Press(keys.split(u' ')); };
}

Step Type(const QString &text)
{
    return [text](Photographer &taker) { return taker.Display().Type(text); };
}

Step Window(const QString &title)
{
    return [title](Photographer &taker) { return taker.Program().WaitForWindow(title); };
}

Step ClickPicture(const QString &file)
{
    return [file](Photographer &taker) {
        const QImage picture(taker.SitePath(file));
        const QRect place = PlaceOf(picture.scaled(picture.size() * taker.Scale()), taker.Display().Picture());
        return !place.isNull() && taker.Display().Click(place.center());
    };
}

Step HoldColumnBorder(QRgb colourOfCells, int by)
{
    return [colourOfCells, by](Photographer &taker) {
        const QRect row = taker.Display().Extent(colourOfCells);
        const QImage screen = taker.Display().Picture();
        const int y = row.top() + 2 * taker.Scale(); // above the words in the cells
        int x = row.left();
        while (x < row.right() && screen.pixel(x, y) == colourOfCells)
            ++x;
        return x < row.right() && taker.Display().DragAndHold({x, y}, QPoint(x + by * taker.Scale(), row.center().y()));
    };
}

Photographer::Photographer(const Picture &picture)
    : m_picture(picture),
      m_site(QDir::temp().filePath(u"hollowmere"_s)),
      m_display(m_picture.Screen * picture.Scale),
      m_program(m_display, m_home)
{
    if (picture.Theme == Picture::Colours::Dark)
        DarkenDesktop();
    if (picture.Scale != 1)
        m_program.Environment.insert(u"QT_SCALE_FACTOR"_s, QString::number(picture.Scale));
}

Photographer::~Photographer()
{
    if (QFile::remove(MarkOfCopy()))
        QDir(m_site).removeRecursively();
}

QImage Photographer::Take()
{
    if (!m_display.IsReady() || !OpenPage() || !FillScreen()) {
        qWarning().noquote() << m_picture.Name << ": the page did not come up;" << m_program.Titles()
                             << m_program.Output();
        return {};
    }
    for (qsizetype step = 0; step < m_picture.Steps.size(); ++step) {
        if (!m_picture.Steps[step](*this) || !WaitUntilStill()) {
            qWarning().noquote() << m_picture.Name << ": step" << step + 1 << "failed;" << m_program.Titles();
            return {};
        }
    }
    return m_display.Picture();
}

bool Photographer::WaitUntilStill()
{
    constexpr QSize caret{6, 60};
    QImage before = m_display.Picture();
    QElapsedTimer still;
    still.start();
    return QTest::qWaitFor(
        [&] {
            const QImage now = m_display.Picture();
            const QSize moved = Differences(before, now).size();
            if (moved.width() > caret.width() * Scale() || moved.height() > caret.height() * Scale()) {
                before = now;
                still.restart();
            }
            return still.hasExpired(Stillness);
        },
        RunningProgram::Patience);
}

bool Photographer::CopySite() const
{
    if (QFile::remove(MarkOfCopy()))
        QDir(m_site).removeRecursively();
    bool copied = m_site.mkdir(m_site.path()) && QFile(MarkOfCopy()).open(QIODevice::NewOnly | QIODevice::WriteOnly);
    const QString samples = QStringLiteral(INKLOOM_SAMPLES);
    QDirIterator files(samples, QDir::Files, QDirIterator::Subdirectories);
    while (copied && files.hasNext()) {
        const QString path = files.next();
        const QString target = SitePath(path.sliced(samples.size() + 1));
        copied = QDir().mkpath(QFileInfo(target).path()) && QFile::copy(path, target);
    }
    return copied;
}

bool Photographer::OpenPage()
{
    if (!CopySite()) {
        qWarning().noquote() << "No copy of the site in" << m_site.path();
        return false;
    }
    m_program.Start({u"nosplash-"_s + SitePath(m_picture.Page)});
    return QTest::qWaitFor([this] { return !m_program.MainWindow().isNull(); }, RunningProgram::Patience) &&
           WaitUntilStill();
}

/// As a person does it: a double click on the title bar.
bool Photographer::FillScreen()
{
    constexpr int intoTitleBar = 10;
    const QRect window = m_program.MainWindow();
    m_display.Click(QPoint(window.center().x(), window.top() - intoTitleBar), 2);
    const auto fills = [this] { return m_program.MainWindow().width() >= m_picture.Screen.width() * Scale() - 4; };
    return QTest::qWaitFor(fills, RunningProgram::Patience) && WaitUntilStill();
}

/// The settings of a desktop whose colours Qt reads by itself.
void Photographer::DarkenDesktop()
{
    m_program.Environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    m_program.Environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    const QString folder = QFileInfo(m_home.ConfigFolder()).path();
    QFile file(folder + u"/kdeglobals"_s);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write("[KDE]\nwidgetStyle=Fusion\n[Icons]\nTheme=breeze-dark\n");
    for (const char *group : {"Window", "View", "Button", "Tooltip"}) {
        file.write(QByteArray("[Colors:") + group +
                   "]\nBackgroundNormal=" + (qstrcmp(group, "View") == 0 ? "27,30,32" : "42,46,50") +
                   "\nForegroundNormal=252,252,252\nForegroundInactive=161,169,177\nForegroundLink=29,153,243\n");
    }
    file.write("[Colors:Selection]\nBackgroundNormal=61,174,233\nForegroundNormal=252,252,252\n");
}
