#include "core/GraphicsBackend.h"

#include <QDir>
#include <QFile>
#include <QOpenGLContext>
#include <QQuickWindow>

namespace {

bool hasGraphicsCard() {
    const QDir devices(QStringLiteral("/dev/dri"));
    return !devices.entryList({QStringLiteral("renderD*"), QStringLiteral("card*")}, QDir::System)
                .isEmpty() ||
           QFile::exists(QStringLiteral("/dev/nvidiactl"));
}

constexpr const char *integration = "QT_XCB_GL_INTEGRATION";

} // namespace

GraphicsBackend::GraphicsBackend() {
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") || hasGraphicsCard())
        return;
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    if (qEnvironmentVariableIsSet(integration))
        return;
    // Else the emulated one is loaded all the same.
    qputenv(integration, "none");
    m_hasSetIntegration = true;
}

void GraphicsBackend::leaveEnvironment() const {
    if (!m_hasSetIntegration)
        return;
    // Qt reads it when it is first asked for GL.
    QOpenGLContext::supportsThreadedOpenGL();
    qunsetenv(integration);
}
