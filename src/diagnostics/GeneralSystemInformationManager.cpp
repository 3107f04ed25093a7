#include "diagnostics/GeneralSystemInformationManager.h"

#include "diagnostics/EnvironmentInformation.h"
#include "diagnostics/UserInformation.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

/// A process whose new files are their owner's alone.
class PrivateProcess : public QProcess {
protected:
    void setupChildProcess() override { ::umask(S_IRWXG | S_IRWXO); }
};

} // namespace

GeneralSystemInformationManager::GeneralSystemInformationManager() {
    m_components.push_back(std::make_unique<EnvironmentInformation>());
    m_components.push_back(std::make_unique<UserInformation>());
}

void GeneralSystemInformationManager::CollectSystemInformation(const QString &archivePath) {
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        qWarning().noquote() << "No folder to collect into:" << folder.errorString();
        return;
    }
    for (const auto &component : m_components)
        component->CollectInformation(folder.path());
    CompressDirectory(archivePath, folder.path());
}

void GeneralSystemInformationManager::CompressDirectory(const QString &archivePath,
                                                        const QString &folder) {
    constexpr int timeoutMs = 30000;
    // A file that is there keeps its rights when it is written over.
    if (QFileInfo(archivePath).isFile() && !QFile::remove(archivePath))
        QFile::setPermissions(archivePath, QFile::ReadOwner | QFile::WriteOwner);
    PrivateProcess tar;
    tar.start(QStringLiteral("tar"), {QStringLiteral("-C"), folder, QStringLiteral("-zcvf"),
                                      archivePath, QStringLiteral(".")});
    if (!tar.waitForFinished(timeoutMs) || tar.exitCode() != 0) {
        qWarning().noquote() << "The archive is not whole:" << archivePath << "-"
                             << tar.errorString() << tar.readAllStandardError();
    }
}
