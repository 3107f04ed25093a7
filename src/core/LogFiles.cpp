#include "core/LogFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr int keptDays = 14;

} // namespace

void LogFiles::keepPrivate(const QString &file) {
    if (QFileInfo(file).isFile())
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
}

void LogFiles::tidy(const QString &folder) {
    static const QRegularExpression ownName(
        QStringLiteral("^log_\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\.log$"));
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-keptDays);
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &file : files) {
        if (!ownName.match(file.fileName()).hasMatch())
            continue;
        if (file.lastModified() < oldest)
            QFile::remove(file.filePath());
        else
            keepPrivate(file.filePath());
    }
}
