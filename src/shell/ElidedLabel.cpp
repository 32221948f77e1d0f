#include "shell/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent) : QLabel(parent), m_mode(mode)
{
    setTextFormat(Qt::PlainText); // page titles and file names may hold tags
    setContentsMargins(4, 0, 4, 0);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect area = contentsRect();
    const QString line = fontMetrics().elidedText(QString(text()).simplified(), m_mode, area.width());
    style()->drawItemText(&painter, area, static_cast<int>(alignment()), palette(), isEnabled(), line,
                          foregroundRole());
}
