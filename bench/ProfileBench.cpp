#include "DeskTest.h"
#include "Figures.h"
#include "Files.h"
#include "core/settings/StatisticsSettings.h"
#include "diagnostics/GeneralSystemInformationManager.h"
#include "viewmodels/statistics/StatisticsViewModel.h"

#include <QDir>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QStandardPaths>

#include <cstdio>
#include <stdexcept>
#include <sys/resource.h>

// How the profile's window bears all organisations of the country, and how long the archive for
// support keeps the main thread. Without the rest of the program, but with the window.

namespace {

constexpr int organisations = 150000;
constexpr int logMegabytes = 50;

/// The value of a line of /proc/self/status, MB.
double statusMb(const char *key) {
    const QString status = QString::fromLatin1(bytesOf("/proc/self/status"));
    return status.section(key, 1).section("kB", 0, 0).remove(':').trimmed().toDouble() / 1024;
}

void report(const char *what, double value, const char *unit, const char *aim) {
    std::printf("%-52s %8.1f %s (aim: %s)\n", what, value, unit, aim);
    std::fflush(stdout);
}

void measureProfile() {
    const QString folder = desk().folder() + "/reference";
    desk().run(SOURCE "/scripts/reference-data",
               {"sample", QString::number(organisations), folder});
    StatisticsSettings().FillOrganisationUserInfo = true;
    const double start = nowMs();
    StatisticsViewModel profile(folder, nullptr);
    QQmlApplicationEngine engine;
    engine.rootContext()->setContextProperty("statisticsViewModel", &profile);
    engine.load("qrc:/StatisticsWindow.qml");
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window || !QTest::qWaitForWindowExposed(window, 20000))
        throw std::runtime_error("the window does not come up");
    report("150,000 organisations: window opens", nowMs() - start, "ms", "2000");
    report("... memory at its peak", statusMb("VmHWM"), "MB", "400");
    report("... while it is open", statusMb("VmRSS"), "MB", "400");

    Samples regions;
    Samples cities;
    for (int region = 0; region < profile.get_Regions().size(); ++region) {
        double asked = nowMs();
        profile.set_SelectedRegionIndex(region);
        QCoreApplication::processEvents();
        regions.push_back(nowMs() - asked);
        asked = nowMs();
        profile.set_SelectedCityIndex(0);
        QCoreApplication::processEvents();
        cities.push_back(nowMs() - asked);
    }
    print("a region fills the settlements", regions);
    print("a settlement fills the organisations", cities);

    profile.set_SelectedCompanyIndex(0);
    profile.set_SelectedProfessionIndex(0);
    profile.get_UserFullName()->set_Text("Иванов Иван");
    profile.applyCommand();
    window->close();
    report("memory once it is closed", statusMb("VmRSS"), "MB", "120");
}

void measureArchive() {
    const QString logs =
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/logs";
    QDir().mkpath(logs);
    QByteArray lines;
    while (lines.size() < 1048576)
        lines += QByteArray::number(lines.size()) + " INFO: stateChanged from 9 to 14\n";
    for (int i = 0; i < logMegabytes; ++i) {
        if (!save(QStringLiteral("%1/log_%2.log").arg(logs).arg(i), lines))
            throw std::runtime_error("the logs cannot be written");
    }
    const double start = nowMs();
    GeneralSystemInformationManager().CollectSystemInformation(desk().folder() + "/info.tar.gz");
    report("archive with 50 MB of logs keeps the main thread", nowMs() - start, "ms", "60000");
}

} // namespace

int main(int argc, char **argv) {
    benchOnDesk(argc, argv, VirtualDesk::Screen, [] {
        measureProfile();
        measureArchive();
    });
}
