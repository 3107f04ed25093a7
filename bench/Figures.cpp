#include "Figures.h"

#include "DeskTest.h"
#include "core/ProcessEnd.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

double cpuSeconds(qint64 pid) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray stat = file.readAll();
    const QByteArrayList fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return (fields[11].toDouble() + fields[12].toDouble()) / sysconf(_SC_CLK_TCK);
}

} // namespace

double nowMs() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void print(const char *what, Samples samples) {
    std::sort(samples.begin(), samples.end());
    const auto at = [&samples](double share) {
        return samples[std::min(samples.size() - 1,
                                static_cast<std::size_t>(share * samples.size()))];
    };
    std::printf("%-46s p50 %7.2f  p99 %7.2f  max %7.2f ms  (%zu)\n", what, at(0.5), at(0.99),
                samples.back(), samples.size());
    std::fflush(stdout);
}

double cpuPercent(qint64 pid, int seconds) {
    const double before = cpuSeconds(pid);
    QTest::qWait(seconds * 1000);
    return (cpuSeconds(pid) - before) / seconds * 100;
}

long residentKiB(qint64 pid) {
    QFile file(QStringLiteral("/proc/%1/statm").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ')[1].toLong() * sysconf(_SC_PAGESIZE) / 1024;
}

void benchOnDesk(int argc, char **argv, VirtualDesk::Needs needs,
                 const std::function<void()> &bench) {
    currentDesk() = std::make_unique<VirtualDesk>(needs);
    int result = 0;
    {
        const QApplication application(argc, argv);
        QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
        QCoreApplication::setApplicationName(QStringLiteral("Vellumar"));
        Settings::setFileName(QStringLiteral("settings"));
        try {
            bench();
        } catch (const std::exception &failure) {
            std::fprintf(stderr, "%s\n", failure.what());
            result = 1;
        }
    }
    currentDesk().reset();
    endProcess(result);
}
