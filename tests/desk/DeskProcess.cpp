#include "DeskProcess.h"

#include <csignal>
#include <sys/prctl.h>

DeskProcess::~DeskProcess() {
    end();
}

void DeskProcess::end() {
    constexpr int endTimeoutMs = 5000;
    if (state() == QProcess::NotRunning)
        return;
    terminate();
    if (!waitForFinished(endTimeoutMs)) {
        kill();
        waitForFinished(endTimeoutMs);
    }
}

void DeskProcess::setupChildProcess() {
    // Runs in the child between fork and exec: only calls that are safe there.
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}
