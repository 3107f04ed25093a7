#pragma once

#include <QCoreApplication>
#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>

/// Lets one process of a key and a user of the machine run at a time. A segment that a crashed
/// process left behind does not count.
class RunGuard {
    Q_DECLARE_TR_FUNCTIONS(RunGuard)

public:
    explicit RunGuard(const QString &key);
    ~RunGuard();
    RunGuard(const RunGuard &) = delete;
    RunGuard &operator=(const RunGuard &) = delete;

    /// Claims the key; false if another process holds it, or if that cannot be found out.
    bool tryToRun();
    /// Why tryToRun() could not find out, for the user; empty if another process holds the key.
    QString failure() const;
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
