#include "SignalWatcher.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace verdin {

namespace {

int gSignalSockets[2] = {-1, -1};

extern "C" void OnTerminationSignal(int) {
    const char byte = 1;
    // Only async-signal-safe calls here; a full socket just drops the extra wake-up.
    [[maybe_unused]] const ssize_t written = ::write(gSignalSockets[0], &byte, 1);
}

}  // namespace

SignalWatcher::SignalWatcher(QObject* parent) : QObject(parent) {
    if (gSignalSockets[0] < 0 && ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, gSignalSockets) != 0)
        return;
    notifier_ = new QSocketNotifier(gSignalSockets[1], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &SignalWatcher::Drain);
    struct sigaction action {};
    action.sa_handler = OnTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(signal, &action, nullptr);
}

SignalWatcher::~SignalWatcher() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(signal, &action, nullptr);
}

void SignalWatcher::Drain() {
    char buffer[16];
    while (::read(gSignalSockets[1], buffer, sizeof buffer) > 0) {
    }
    emit TerminationRequested();
}

}  // namespace verdin
