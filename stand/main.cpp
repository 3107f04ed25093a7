#include "core/Exception.h"
#include "stand/StandService.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>

namespace {

std::array<int, 2> signalPipe{-1, -1};

/// Of a signal handler's few means, a byte through a socket is the one that wakes an event loop.
void onSignal(int) {
    const char byte = 0;
    const ssize_t written = ::write(signalPipe[0], &byte, 1);
    static_cast<void>(written);
}

void quitOnSignals(QCoreApplication *application) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPipe.data()) != 0)
        throw Exception("cannot make the socket pair for signals");
    auto *notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, application);
    QObject::connect(notifier, &QSocketNotifier::activated, application, &QCoreApplication::quit);
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);
}

int run(QCoreApplication *application) {
    const StandOptions options = StandOptions::parse(QCoreApplication::arguments());
    if (!options.help.isEmpty()) {
        std::fputs(qPrintable(options.help), stdout);
        return 0;
    }
    quitOnSignals(application);
    StandService stand(options);
    stand.start();
    if (options.engine == StandOptions::Engine::Acoustic && !options.quiet)
        std::puts("acoustic engine: a demonstration with 284 words, not a clinical engine");
    std::puts(qPrintable(stand.readyLine()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vellumar-stand"));
    try {
        return run(&application);
    } catch (const Exception &problem) {
        std::fprintf(stderr, "vellumar-stand: %s\n", problem.what());
        return 1;
    }
}
