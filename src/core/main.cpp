#include "core/AppVariables.h"
#include "core/ProcessEnd.h"
#include "core/UnhandledException.h"
#include "core/WindowsManager.h"
#include "core/settings/Settings.h"
#include "desktop/XDisplay.h"

#include <QCoreApplication>
#include <QDebug>

#include <memory>

int main(int argc, char **argv) {
    prepareXlibForThreads();
    keepMemoryPrivate();
    set_unhandled_catcher();
    const QString version = AppVariables::buildProperty("Version") + QStringLiteral(" (Linux)");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Vellumar"));
    QCoreApplication::setApplicationVersion(version);
    Settings::setFileName(QStringLiteral("settings"));

    auto manager = std::make_unique<WindowsManager>(nullptr);
    const int result = manager->start(argc, argv);
    qInfo() << "Quit app";
    manager.reset();
    endProcess(result);
}
