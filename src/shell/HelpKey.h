#pragma once

#include <QObject>

/// F1 in every dialog opens the manual on the dialog's page. (In the main window F1 is a command like others.)
class HelpKey : public QObject
{
    Q_OBJECT

public:
    explicit HelpKey(QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
