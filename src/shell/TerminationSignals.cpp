#include "shell/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array Signals{SIGTERM, SIGHUP, SIGINT};

// A signal handler may do nothing but write to a pipe; the message loop reads from it.
std::array<int, 2> g_pipe{-1, -1};

void WriteToPipe(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(g_pipe[1], &byte, 1);
}

void SetHandlers(void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (const int number : Signals)
        sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    if (pipe2(g_pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::Read);
    SetHandlers(WriteToPipe, SA_RESTART | static_cast<int>(SA_RESETHAND));
}

TerminationSignals::~TerminationSignals()
{
    SetHandlers(SIG_DFL, 0);
    for (int &end : g_pipe) {
        if (end >= 0)
            close(end);
        end = -1;
    }
}

void TerminationSignals::Read()
{
    char byte = 0;
    while (read(g_pipe[0], &byte, 1) > 0) {
    }
    emit Received();
}
