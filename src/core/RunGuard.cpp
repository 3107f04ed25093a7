#include "core/RunGuard.h"

#include <QCryptographicHash>
#include <QDir>

#include <unistd.h>

namespace {

constexpr int segmentBytes = 8;

/// Of each user of the machine's own: what belongs to one is out of reach of the others.
QString generateKeyHash(const QString &key, const QString &suffix) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(key.toUtf8());
    hash.addData(QByteArray::number(::geteuid()));
    hash.addData(suffix.toUtf8());
    return QString::fromLatin1(hash.result().toHex());
}

class SemaphoreLocker {
public:
    explicit SemaphoreLocker(QSystemSemaphore *semaphore) : m_semaphore(semaphore) {
        m_semaphore->acquire();
    }
    ~SemaphoreLocker() { m_semaphore->release(); }
    SemaphoreLocker(const SemaphoreLocker &) = delete;
    SemaphoreLocker &operator=(const SemaphoreLocker &) = delete;

private:
    QSystemSemaphore *m_semaphore;
};

} // namespace

RunGuard::RunGuard(const QString &key)
    : m_key(key),
      m_memLockKey(generateKeyHash(key, QStringLiteral("_memLockKey"))),
      m_sharedMemKey(generateKeyHash(key, QStringLiteral("_sharedmemKey"))),
      m_sharedMem(m_sharedMemKey),
      m_memLock(m_memLockKey, 1, QSystemSemaphore::Open) {
    const SemaphoreLocker locker(&m_memLock);
    // The last one to detach removes the segment, so this clears what a crash left behind.
    QSharedMemory leftover(m_sharedMemKey);
    leftover.attach();
}

RunGuard::~RunGuard() {
    release();
}

bool RunGuard::isAnotherRunning() {
    if (m_sharedMem.isAttached())
        return false;
    const SemaphoreLocker locker(&m_memLock);
    const bool isRunning = m_sharedMem.attach();
    if (isRunning)
        m_sharedMem.detach();
    return isRunning;
}

bool RunGuard::tryToRun() {
    if (isAnotherRunning())
        return false;
    bool isCreated = false;
    {
        const SemaphoreLocker locker(&m_memLock);
        isCreated = m_sharedMem.create(segmentBytes);
    }
    if (!isCreated)
        release();
    return isCreated;
}

QString RunGuard::failure() const {
    switch (m_sharedMem.error()) {
    case QSharedMemory::NoError:
    case QSharedMemory::AlreadyExists:
        return QString();
    case QSharedMemory::PermissionDenied:
        return tr("нет прав на её разделяемую память");
    case QSharedMemory::OutOfResources:
        return tr("разделяемая память системы исчерпана");
    case QSharedMemory::KeyError:
        return tr("в папке %1 нельзя создать файл").arg(QDir::tempPath());
    default:
        return m_sharedMem.errorString();
    }
}

void RunGuard::release() {
    const SemaphoreLocker locker(&m_memLock);
    if (m_sharedMem.isAttached())
        m_sharedMem.detach();
}
