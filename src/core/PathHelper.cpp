#include "core/PathHelper.h"

#include <QDir>
#include <QFile>

void PathHelper::copyPath(const QString &source, const QString &destination) {
    const QDir folder(source);
    if (!folder.exists()) {
        if (QFile::exists(source))
            QFile::copy(source, destination);
        return;
    }
    const QString separator = QDir::separator();
    // Listed before anything is copied, so that a destination inside the source is not followed.
    const QStringList folders = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const QStringList files = folder.entryList(QDir::Files);
    QDir().mkpath(destination);
    for (const QString &name : folders) {
        QDir().mkpath(destination + separator + name);
        copyPath(source + separator + name, destination + separator + name);
    }
    for (const QString &name : files)
        QFile::copy(source + separator + name, destination + separator + name);
}
