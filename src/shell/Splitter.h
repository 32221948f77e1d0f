#pragma once

#include <QWidget>

/// The bar between left pane and work area (`imgSplitter`). It moves nothing itself: it tells what mouse and keys ask
/// for. Places are pixels of its parent.
class Splitter : public QWidget
{
    Q_OBJECT

public:
    explicit Splitter(QWidget *parent = nullptr);

    bool IsDragged() const { return m_dragged; }

signals:
    void DragStarted(int place);
    void DraggedTo(int place);
    void Dropped();
    /// Escape, or the mouse was taken away: all stays as it was.
    void DragGivenUp();
    /// An arrow key, -1 to the left.
    void Stepped(int direction);
    /// Home or End.
    void SentToEnd(int direction);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void EndDrag();

    bool m_dragged = false;
};
