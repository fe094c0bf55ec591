#include "SignalWatcher.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int g_pipe[2] = {-1, -1};
volatile std::sig_atomic_t g_stopPending = 0;

void onSignal(int number)
{
    g_stopPending = 1;
    const char byte = char(number);
    // Nothing to do if the pipe is full: a stop is pending anyway.
    [[maybe_unused]] const ssize_t n = ::write(g_pipe[1], &byte, 1);
}

} // namespace

SignalWatcher::SignalWatcher(QObject* parent) : QObject(parent)
{
    if (::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &SignalWatcher::on_notifier_activated);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // A client that goes away mid-answer must not kill the host.
    std::signal(SIGPIPE, SIG_IGN);
}

SignalWatcher::~SignalWatcher()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool SignalWatcher::stopPending() const
{
    return g_stopPending != 0;
}

void SignalWatcher::on_notifier_activated()
{
    char byte = 0;
    if (::read(g_pipe[0], &byte, 1) == 1)
        emit stopRequested(int(byte));
}
