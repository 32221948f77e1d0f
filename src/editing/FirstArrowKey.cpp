#include "editing/FirstArrowKey.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace {

class FirstArrowKey : public QObject
{
public:
    explicit FirstArrowKey(QAbstractItemView &list) : QObject(&list), m_list(list) { list.installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || m_list.selectionModel()->hasSelection())
            return QObject::eventFilter(watched, event);
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QModelIndex row = m_list.currentIndex();
        if ((key != Qt::Key_Down && key != Qt::Key_Up) || !row.isValid())
            return QObject::eventFilter(watched, event);
        m_list.setCurrentIndex(row);
        return true;
    }

private:
    QAbstractItemView &m_list;
};

} // namespace

void LetFirstArrowKeyChoose(QAbstractItemView &list)
{
    new FirstArrowKey(list);
}
