#pragma once

#include <QMetaType>
#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <atomic>
#include <memory>

/// How a service tells its worker to stop: made fresh for each start.
///
/// The flag is read without a lock. The mutex only pairs with the condition, on which a worker
/// waits when it pauses, so that a stop ends the pause at once.
struct CancellationCondition {
    std::atomic<bool> isCanceled{false};
    QMutex mutex;
    QWaitCondition condition;

    /// Sets the flag and wakes whoever pauses. Callable from any thread.
    void cancel() {
        const QMutexLocker locker(&mutex);
        isCanceled = true;
        condition.wakeAll();
    }

    /// Pauses the calling thread for the given time or until cancel().
    /// @return true if the pause was ended by a stop
    bool pause(unsigned long milliseconds) {
        const QMutexLocker locker(&mutex);
        if (!isCanceled)
            condition.wait(&mutex, milliseconds);
        return isCanceled;
    }
};

/// The service and the worker share the object, so that a worker that is late to finish never
/// touches a freed one.
using CancellationPointer = std::shared_ptr<CancellationCondition>;
Q_DECLARE_METATYPE(CancellationPointer)
