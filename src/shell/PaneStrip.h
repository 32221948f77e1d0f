#pragma once

#include <QAbstractButton>

/// What stays of the collapsed left pane (`CommandShowAddress`): a button too narrow for the frame of any style.
class PaneStrip : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PaneStrip(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
};
