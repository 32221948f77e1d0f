#pragma once

#include "platform/BackgroundWork.h"

#include <QPixmap>
#include <QTimer>

class Editor;

/// A row of the file list on its way to the page: the link that it stands for goes in where it is dropped, as one step.
class RowDrag : public QObject
{
    Q_OBJECT

public:
    /// `source` is the widget that is dragged from.
    RowDrag(Editor &editor, QWidget *source);

    /// Runs until the row is dropped or the drag is given up.
    void Run(const QString &path, const QPixmap &picture);

private:
    QString Title(const QString &path);
    void Landed();
    void Finish();
    void GiveUp();

    Editor &m_editor;
    QWidget *m_source;
    BackgroundWork m_reading;
    bool m_running = false; ///< the mouse still has the row
    bool m_landed = false;  ///< the page's caret stands where the row was dropped
    QTimer m_lost;          ///< a drop that the page never works on must not go in later
};
