#include "diagnostics/EnvironmentInformation.h"

#include "core/AppVariables.h"

#include <QDebug>
#include <QFile>
#include <QOperatingSystemVersion>
#include <QProcess>
#include <QStorageInfo>
#include <QStringList>
#include <QSysInfo>
#include <QTextStream>

namespace {

constexpr int timeoutMs = 30000;
constexpr qint64 bytesPerMb = 1048576;

QString describe(const QStorageInfo &volume) {
    // At once, as a name may hold what looks like a place of its own.
    return QStringLiteral("%1 - %2: %3/%4MB")
        .arg(volume.displayName(), QString::fromLatin1(volume.fileSystemType()),
             QString::number(volume.bytesAvailable() / bytesPerMb),
             QString::number(volume.bytesTotal() / bytesPerMb));
}

} // namespace

void EnvironmentInformation::CollectInformation(const QString &folder) {
    QStringList lines{
        QStringLiteral("version: ") + AppVariables::buildProperty("Version"),
        QStringLiteral("build architecture: ") + QSysInfo::buildCpuArchitecture(),
        QStringLiteral("current architecture: ") + QSysInfo::currentCpuArchitecture(),
        QStringLiteral("OS: ") + QOperatingSystemVersion::current().name(),
        QStringLiteral("product name: ") + QSysInfo::prettyProductName(),
        QStringLiteral("ram: ") + getRamInfo(),
        QString(),
        QStringLiteral("storage:"),
    };
    const QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : volumes)
        lines << describe(volume);
    QFile file(folder + QStringLiteral("/Environment.txt"));
    if (!file.open(QIODevice::ReadWrite)) {
        qWarning().noquote() << "Cannot write" << file.fileName() << "-" << file.errorString();
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    for (const QString &line : qAsConst(lines))
        stream << line << "\r\n";
    stream << Qt::endl;
}

QString EnvironmentInformation::getRamInfo() {
    QProcess awk;
    awk.start(QStringLiteral("awk"),
              {QStringLiteral("/MemTotal/ { print $2 }"), QStringLiteral("/proc/meminfo")});
    awk.waitForFinished(timeoutMs);
    const long kilobytes =
        QString::fromLatin1(awk.readAllStandardOutput().constData()).trimmed().toLong();
    return QStringLiteral("; RAM: %1 MB").arg(kilobytes / 1024);
}
