#pragma once

#include <QLabel>
#include <QTimer>

class FilePane;

/// What the file pane has to say, for the status bar: a deletion with the link that takes it back, or why something
/// was not done. Empty and out of sight most of the time.
class NoticeLabel : public QLabel
{
    Q_OBJECT

public:
    explicit NoticeLabel(FilePane &pane, QWidget *parent = nullptr);

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    void ShowNotice(const QString &text, bool canUndo);

    QTimer m_end;
};
