#include "QuitSignalWatcher.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A signal handler may only write to a descriptor; the event loop reads the other end.
int signalPipe[2] = {-1, -1};
struct sigaction previousTerm;
struct sigaction previousInt;

void onSignal(int signalNumber)
{
    const char byte = char(signalNumber);
    [[maybe_unused]] const auto written = ::write(signalPipe[0], &byte, 1);
}

} // namespace

QuitSignalWatcher::QuitSignalWatcher(QObject *parent) : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPipe) != 0)
        return;
    m_notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(signalPipe[1], &byte, 1) == 1)
            emit quitRequested(int(byte));
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGTERM, &action, &previousTerm);
    ::sigaction(SIGINT, &action, &previousInt);
}

QuitSignalWatcher::~QuitSignalWatcher()
{
    if (!m_notifier)
        return;
    ::sigaction(SIGTERM, &previousTerm, nullptr);
    ::sigaction(SIGINT, &previousInt, nullptr);
    ::close(signalPipe[0]);
    ::close(signalPipe[1]);
    signalPipe[0] = signalPipe[1] = -1;
}
