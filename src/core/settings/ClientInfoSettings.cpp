#include "core/settings/ClientInfoSettings.h"

#include <QMutex>
#include <QMutexLocker>
#include <QUuid>

QString ClientInfoSettings::getOrCreateDesktopId() {
    // Several threads ask for it at the first start, and all must get the same one.
    static QMutex mutex;
    const QMutexLocker locker(&mutex);
    const QString stored = DesktopId;
    if (!stored.isEmpty())
        return stored;
    const QString created = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    DesktopId.ChangeValue(created);
    sync();
    return created;
}
