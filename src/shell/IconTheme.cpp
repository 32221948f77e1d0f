#include "shell/IconTheme.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

using namespace Qt::StringLiterals;

void UseIconTheme()
{
    const QPalette palette = QGuiApplication::palette();
    const bool dark = palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    const QString breeze = dark ? u"breeze-dark"_s : u"breeze"_s;
    QIcon::setFallbackThemeName(breeze);
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == u"hicolor") // a bare window manager has no theme
        QIcon::setThemeName(breeze);
}
