#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns the system's request to end (SIGTERM, SIGHUP, SIGINT) into a signal in the message loop. Only the first is
/// taken: a second one ends the process at once. One object a process.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

signals:
    void Received();

private:
    void Read();

    QSocketNotifier *m_notifier = nullptr;
};
