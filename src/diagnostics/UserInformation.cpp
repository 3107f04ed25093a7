#include "diagnostics/UserInformation.h"

#include "core/PathHelper.h"

#include <QDir>
#include <QStandardPaths>

void UserInformation::CollectInformation(const QString &folder) {
    const QString separator = QDir::separator();
    PathHelper::copyPath(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                             separator + QStringLiteral("logs"),
                         folder + separator + QStringLiteral("logs"));
    PathHelper::copyPath(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation),
                         folder + separator + QStringLiteral("configs"));
}
