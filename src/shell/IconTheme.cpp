#include "shell/IconTheme.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>

using namespace Qt::StringLiterals;

namespace {

/// The desktop's style, but for icons of what is disabled: most styles make those grey by a table that suits light
/// themes only, and in a dark one they look enabled.
class DimmingStyle : public QProxyStyle
{
public:
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap, const QStyleOption *option) const override
    {
        if (mode != QIcon::Disabled)
            return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
        QPixmap dimmed(pixmap.size());
        dimmed.setDevicePixelRatio(pixmap.devicePixelRatio());
        dimmed.fill(Qt::transparent);
        QPainter painter(&dimmed);
        painter.setOpacity(0.35);
        painter.drawPixmap(0, 0, pixmap);
        return dimmed;
    }
};

} // namespace

void UseDimmedIcons()
{
    QApplication::setStyle(new DimmingStyle);
}

void UseIconTheme()
{
    const QPalette palette = QGuiApplication::palette();
    const bool dark = palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
    const QString breeze = dark ? u"breeze-dark"_s : u"breeze"_s;
    QIcon::setFallbackThemeName(breeze);
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == u"hicolor") // a bare window manager has no theme
        QIcon::setThemeName(breeze);
}
