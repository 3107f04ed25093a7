#pragma once

#include "VirtualDesk.h"

#include <QtGlobal>

#include <functional>
#include <vector>

/// Milliseconds, one for each round.
using Samples = std::vector<double>;

/// The machine's monotonic clock, which the stand's events tell as well.
double nowMs();

/// One line with the middle, the 99th of a hundred and the worst of the samples.
void print(const char *what, Samples samples);

/// What a process has used of one core over the next seconds, in percent; the event loop runs
/// meanwhile.
double cpuPercent(qint64 pid, int seconds = 10);

long residentKiB(qint64 pid);

/// Raises a desk, runs the bench on it and ends the program; what it throws is printed.
[[noreturn]] void benchOnDesk(int argc, char **argv, VirtualDesk::Needs needs,
                              const std::function<void()> &bench);
