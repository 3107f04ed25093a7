#pragma once

#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>

/// Lets one process of a key run at a time. A segment that a crashed process left behind does not
/// count.
class RunGuard {
public:
    explicit RunGuard(const QString &key);
    ~RunGuard();
    RunGuard(const RunGuard &) = delete;
    RunGuard &operator=(const RunGuard &) = delete;

    /// Claims the key; false if another process holds it.
    bool tryToRun();
    /// Whether another process holds the key; never true of one's own.
    bool isAnotherRunning();
    /// Gives the key to whoever asks next.
    void release();

private:
    QString m_key;
    QString m_memLockKey;
    QString m_sharedMemKey;
    QSharedMemory m_sharedMem;
    QSystemSemaphore m_memLock;
};
