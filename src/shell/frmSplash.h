#pragma once

#include <QWidget>

/// The picture at start. It goes after 1.5 seconds, at a key press (which it leaves to whom it was meant for), or when
/// a question comes up; the start goes on behind it and it never takes the keyboard.
class frmSplash : public QWidget
{
    Q_OBJECT

public:
    explicit frmSplash(QWidget *parent);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
};
