#include "core/GraphicsBackend.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QQuickWindow>

namespace {

bool hasGraphicsCard() {
    const QDir devices(QStringLiteral("/dev/dri"));
    return !devices.entryList({QStringLiteral("renderD*"), QStringLiteral("card*")}, QDir::System)
                .isEmpty() ||
           QFile::exists(QStringLiteral("/dev/nvidiactl"));
}

} // namespace

void chooseGraphicsBackend() {
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || hasGraphicsCard())
        return;
    qInfo() << "No graphics card, drawing without GL";
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}
