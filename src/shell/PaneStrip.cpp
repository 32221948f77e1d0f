#include "shell/PaneStrip.h"

#include "platform/Twips.h"
#include "shell/PaneLayout.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

PaneStrip::PaneStrip(QWidget *parent) : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

QSize PaneStrip::sizeHint() const
{
    return {PixelsFromTwips(PaneLayout::HiddenWidth), 40};
}

bool PaneStrip::event(QEvent *event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave)
        update();
    return QAbstractButton::event(event);
}

void PaneStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const bool lit = hasFocus() || underMouse() || isDown();
    painter.fillRect(rect(), lit ? palette().highlight() : palette().button());
    QStyleOption arrow;
    arrow.initFrom(this);
    const int side = qMin(width(), 9);
    arrow.rect = QRect((width() - side) / 2, (height() - side) / 2, side, side);
    // Styles draw the arrow in one or the other of these.
    const QColor ink = palette().color(lit ? QPalette::HighlightedText : QPalette::ButtonText);
    arrow.palette.setColor(QPalette::ButtonText, ink);
    arrow.palette.setColor(QPalette::WindowText, ink);
    arrow.palette.setColor(QPalette::Text, ink);
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    style()->drawPrimitive(mirrored ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight, &arrow, &painter,
                           this);
}
