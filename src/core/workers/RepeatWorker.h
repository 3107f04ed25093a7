#pragma once

#include "core/workers/BaseWorker.h"

/// A worker that repeats one piece of work, with a pause between rounds, until it is stopped.
/// A round that throws is logged and the next one follows without the pause.
class RepeatWorker : public BaseWorker {
    Q_OBJECT

public:
    /// @param interval  pause between two rounds, milliseconds; 0 for none
    explicit RepeatWorker(unsigned long interval);

protected:
    void process(CancellationCondition *cancellation) override;
    virtual void repeatableWork(CancellationCondition *cancellation) = 0;

private:
    const unsigned long m_interval;
};
