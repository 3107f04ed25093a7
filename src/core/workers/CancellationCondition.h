#pragma once

#include <QMetaType>
#include <QMutex>
#include <QWaitCondition>

#include <atomic>
#include <memory>

/// How a service tells its worker to stop: made fresh for each start.
///
/// The flag is read without a lock. The mutex only pairs with the condition, on which a worker
/// waits when it pauses, so that a stop ends the pause at once.
struct CancellationCondition {
    CancellationCondition();
    ~CancellationCondition();
    Q_DISABLE_COPY_MOVE(CancellationCondition)

    std::atomic<bool> isCanceled{false};
    QMutex mutex;
    QWaitCondition condition;

    /// Sets the flag and wakes whoever waits. Callable from any thread.
    void cancel();

    /// Pauses the calling thread for the given time or until cancel().
    /// @return true if the pause was ended by a stop
    bool pause(unsigned long milliseconds);

    /// Waits until there is something to read, or until cancel().
    /// @param handle  a file descriptor; one that is closed from the other side can be read, too
    void awaitInput(int handle);

private:
    /// Can be read once the flag is set; -1 where the system has no more handles.
    const int m_stopHandle;
};

/// The service and the worker share the object, so that a worker that is late to finish never
/// touches a freed one.
using CancellationPointer = std::shared_ptr<CancellationCondition>;
Q_DECLARE_METATYPE(CancellationPointer)
