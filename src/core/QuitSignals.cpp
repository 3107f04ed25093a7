#include "core/QuitSignals.h"

#include <QDebug>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int handledSignals[] = {SIGTERM, SIGINT, SIGHUP};
/// What the handler writes to and what the event loop reads from.
int sockets[2] = {-1, -1};

void onSignal(int) {
    const char byte = 1;
    // Nothing can be done here about a full socket, and then a request stands in it already.
    [[maybe_unused]] const ssize_t written = ::write(sockets[0], &byte, sizeof byte);
}

} // namespace

QuitSignals::QuitSignals(QObject *parent) : QObject(parent) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets) != 0) {
        qWarning() << "Signals to end will end the program at once:" << qt_error_string();
        return;
    }
    auto *notifier = new QSocketNotifier(sockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &QuitSignals::drain);
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : handledSignals)
        ::sigaction(number, &action, nullptr);
}

QuitSignals::~QuitSignals() {
    for (const int number : handledSignals)
        ::signal(number, SIG_DFL);
    for (int &socket : sockets) {
        ::close(socket);
        socket = -1;
    }
}

void QuitSignals::drain() {
    char byte = 0;
    while (::read(sockets[1], &byte, sizeof byte) > 0) {
    }
    emit quitRequested();
}
