#include "shell/Splitter.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *SplitterForReaders(const QString &type, QObject *object)
{
    auto *splitter = type == u"Splitter" ? qobject_cast<Splitter *>(object) : nullptr;
    return splitter ? new QAccessibleWidget(splitter, QAccessible::Splitter) : nullptr;
}

} // namespace

Splitter::Splitter(QWidget *parent) : QWidget(parent)
{
    static const bool announced = (QAccessible::installFactory(SplitterForReaders), true);
    Q_UNUSED(announced)
    setCursor(Qt::SplitHCursor);
    setFocusPolicy(Qt::TabFocus); // a click is for the mouse alone: the keys stay where they are
}

void Splitter::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_dragged)
        return;
    m_dragged = true;
    grabKeyboard();
    emit DragStarted(mapToParent(event->position().toPoint()).x());
}

void Splitter::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragged)
        emit DraggedTo(mapToParent(event->position().toPoint()).x());
}

void Splitter::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_dragged)
        return;
    EndDrag();
    emit Dropped();
}

void Splitter::keyPressEvent(QKeyEvent *event)
{
    if (m_dragged) {
        if (event->key() == Qt::Key_Escape) {
            EndDrag();
            emit DragGivenUp();
        }
        return; // keys pressed while the mouse is held are for nobody else
    }
    switch (event->key()) {
    case Qt::Key_Left:
        emit Stepped(-1);
        break;
    case Qt::Key_Right:
        emit Stepped(1);
        break;
    case Qt::Key_Home:
        emit SentToEnd(-1);
        break;
    case Qt::Key_End:
        emit SentToEnd(1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void Splitter::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!m_dragged)
        return;
    EndDrag();
    emit DragGivenUp();
}

void Splitter::EndDrag()
{
    m_dragged = false;
    releaseKeyboard();
}

void Splitter::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    painter.drawControl(QStyle::CE_Splitter, option);
    if (hasFocus())
        painter.fillRect(rect().adjusted(1, 0, -1, 0), palette().highlight());
}
