#pragma once

#include "core/workers/CancellationCondition.h"

#include <QMutex>
#include <QObject>

#include <memory>

class BaseWorker;
class QThread;

/// Owns a worker and the thread that it runs on, and starts and stops it any number of times.
///
/// Lives on the main thread; Start and Stop may be called from any thread but the worker's own.
/// Stop blocks its caller until the worker has finished, for ten seconds at most.
class SubService : public QObject {
    Q_OBJECT

public:
    /// @param worker     becomes owned and moves to the service's thread
    /// @param autoStart  whether the application's start-up is to start it
    SubService(BaseWorker *worker, bool autoStart);
    ~SubService() override;

    bool autoStart() const { return m_autoStart; }

public slots:
    /// Starts the worker, after a whole Stop if it runs. One that outlasted its stop comes to its
    /// end first; nobody waits for that.
    void Start();
    void Stop();

signals:
    void runService(CancellationPointer cancellation);
    void stopService(CancellationPointer cancellation);

private:
    /// Begins the worker's life, unless the thread still has one to end.
    void runWorker();
    void waitForWorker();

    /// Each of the two waits of Stop, and how often the first looks, milliseconds.
    const unsigned long m_stopTimeout = 5000;
    const unsigned long m_pollInterval = 100;
    QRecursiveMutex m_mutex;
    std::unique_ptr<QThread> m_thread;
    std::unique_ptr<BaseWorker> m_worker;
    CancellationPointer m_cancellation;
    bool m_isRunning = false;
    bool m_autoStart;
};
