#pragma once

#include "core/workers/CancellationCondition.h"

#include <QObject>
#include <QString>

#include <atomic>

/// A long-lived background activity, run by a SubService on a thread of its own.
///
/// All virtual operations run on that thread; an exception that leaves one of them is logged and
/// goes no further. isWorkDone() and workerName() may be called from any thread.
class BaseWorker : public QObject {
    Q_OBJECT

public:
    BaseWorker();

    /// The class name.
    QString workerName();

public slots:
    /// One whole life: initialize, process, cleanUp. The worker keeps the condition until the
    /// next run.
    void run(CancellationPointer cancellation);
    void onStopWorker(const CancellationPointer &cancellation);

protected:
    virtual void initialize();
    virtual void process(CancellationCondition *cancellation) = 0;
    virtual void cleanUp();

public slots:
    virtual bool isWorkDone(CancellationCondition *cancellation);
    virtual void onStop();

protected:
    std::atomic<bool> m_isDone{false};
    /// Before initialize, milliseconds.
    unsigned long m_startDelay = 0;

private:
    QString m_name;
    CancellationPointer m_cancellation;
};
