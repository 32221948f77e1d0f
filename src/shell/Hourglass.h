#pragma once

#include <QObject>
#include <QTimer>

/// The hourglass pointer, on or off however often it is asked for, and word of work that lasts longer than a second.
class Hourglass : public QObject
{
    Q_OBJECT

public:
    explicit Hourglass(QObject *parent = nullptr);
    ~Hourglass() override;

    void Show(bool on);

signals:
    /// The pointer has been an hourglass for a second.
    void TakesLong();
    void Ended();

private:
    bool m_on = false;
    QTimer m_patience;
};
