#pragma once

#include "support/RunningProgram.h"

#include <QDir>
#include <QList>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>

class Photographer;

/// One thing that a hand does before the picture is taken; false when what it waits for does not come.
using Step = std::function<bool(Photographer &)>;

/// One picture: a page of the sample site in the program's window, which fills the screen, after some steps.
struct Picture
{
    enum class Colours { Light, Dark };

    QString Name;                   ///< of the file, without folder and extension
    QString Page;                   ///< file of the sample site
    QList<Step> Steps = {};         ///< done once the page stands still
    Colours Theme = Colours::Light; ///< of the desktop
    int Scale = 1;                  ///< 2: a display with twice the dots on an inch
    QSize Screen{1024, 768};        ///< at scale 1
};

// Steps.

/// One after the other, in the words of X: u"alt+o f".
Step Keys(const QString &keys);
Step Type(const QString &text);
/// Waits for a window of this title that gets the keys.
Step Window(const QString &title);
/// Clicks into the middle of a picture of the site that can be seen in full and in its own size.
Step ClickPicture(const QString &file);
/// Takes hold of the first border between two columns to the right of this colour's first dot, moves it by so many
/// pixels and keeps holding it.
Step HoldColumnBorder(QRgb colourOfCells, int by);

/// A display of its own with the program on a copy of the sample site.
class Photographer
{
public:
    explicit Photographer(const Picture &picture);
    ~Photographer();
    Q_DISABLE_COPY(Photographer)

    /// Null when something did not come; why goes to the log.
    QImage Take();

    VirtualDisplay &Display() { return m_display; }
    RunningProgram &Program() { return m_program; }
    int Scale() const { return m_picture.Scale; }
    QString SitePath(const QString &file) const { return m_site.filePath(file); }

    /// Nothing moves on the screen but the caret, which blinks.
    bool WaitUntilStill();

private:
    bool OpenPage();
    bool FillScreen();
    bool CopySite() const;
    void DarkenDesktop();

    const Picture m_picture;
    const QDir m_site; ///< the copy; its path is to be read in the window
    VirtualDisplay m_display;
    PrivateHome m_home;
    RunningProgram m_program;
};
