#include "core/ProcessEnd.h"

#include <QCoreApplication>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <easylogging++.h>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace {

constexpr unsigned flushTimeoutSeconds = 3;

std::atomic_flag isEnding = ATOMIC_FLAG_INIT;
std::atomic<int> statusInTheEnd{0};
thread_local bool isEndedHere = false;

/// Lets one thread pass, once.
void claimTheEnd(int status) {
    if (!isEnding.test_and_set()) {
        isEndedHere = true;
        return;
    }
    // What ends the process has led back to its end: there is nothing left that could be tried.
    if (isEndedHere)
        ::_exit(status);
    for (;;)
        ::pause();
}

/// What is to be flushed may be a pipe that nobody reads, or under a lock that does not come free.
void flush() {
    std::signal(SIGALRM, [](int) { ::_exit(statusInTheEnd); });
    ::alarm(flushTimeoutSeconds);
    el::Loggers::flushAll();
    std::fflush(nullptr);
    ::alarm(0);
}

} // namespace

void endProcess(int status) {
    claimTheEnd(status);
    statusInTheEnd = status;
    flush();
#ifdef __SANITIZE_ADDRESS__
    // The sanitizer looks for leaks when static objects are destroyed. As long as there is an
    // application, the end comes in the middle of things, and nothing of it has been freed.
    if (!QCoreApplication::instance())
        __lsan_do_leak_check();
#endif
    ::_exit(status);
}

void endProcessWithin(std::chrono::milliseconds limit, int status) {
    std::thread([limit, status] {
        std::this_thread::sleep_for(limit);
        endProcess(status);
    }).detach();
}

void keepMemoryPrivate() {
#ifdef NDEBUG
    ::prctl(PR_SET_DUMPABLE, 0);
#endif
}

/// Stands before that of the C library for every library of the process.
extern "C" void exit(int status) noexcept {
    endProcess(status);
}
