#pragma once

#include <QLabel>

/// One line of plain text that is shortened with "..." where there is no room for it. `text()` stays whole, for
/// screen readers too.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode m_mode;
};
