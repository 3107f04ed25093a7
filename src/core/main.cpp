#include "core/AppVariables.h"
#include "core/ProcessEnd.h"
#include "core/UnhandledException.h"
#include "core/WindowsManager.h"
#include "core/settings/Settings.h"

#include <QCoreApplication>
#include <QDebug>

namespace {

int run(int argc, char **argv) {
    WindowsManager manager(nullptr);
    return manager.start(argc, argv);
}

} // namespace

int main(int argc, char **argv) {
    set_unhandled_catcher();
    const QString version = AppVariables::buildProperty("Version") + QStringLiteral(" (Linux)");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Vellumar"));
    QCoreApplication::setApplicationVersion(version);
    Settings::setFileName(QStringLiteral("settings"));

    const int result = run(argc, argv);
    qInfo() << "Quit app";
    endProcess(result);
}
