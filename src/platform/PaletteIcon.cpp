#include "platform/PaletteIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace {

class PaletteIconEngine : public QIconEngine
{
public:
    explicit PaletteIconEngine(QByteArray svg) : m_svg(std::move(svg)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        QByteArray svg = m_svg;
        svg.replace("currentColor", palette.color(group, role).name().toLatin1());
        QSvgRenderer(svg).render(painter, QRectF(rect));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect({}, size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new PaletteIconEngine(*this); }

private:
    QByteArray m_svg;
};

} // namespace

QIcon PaletteIcon(const QString &file)
{
    QFile svg(file);
    if (!svg.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new PaletteIconEngine(svg.readAll()));
}
