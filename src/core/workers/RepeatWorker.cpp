#include "core/workers/RepeatWorker.h"

#include "core/workers/Guarded.h"

#include <QDebug>

RepeatWorker::RepeatWorker(unsigned long interval) : m_interval(interval) {}

void RepeatWorker::process(CancellationCondition *cancellation) {
    const QString place = QStringLiteral(" in subService [") + workerName() + QLatin1Char(']');
    const QString known = QStringLiteral("Error") + place;
    const QString unknown = QStringLiteral("Unknown error") + place;
    bool isStopped = false;
    while (!isStopped) {
        if (cancellation->isCanceled) {
            qDebug() << "cancellationCondition->isCanceled() - 1";
            return;
        }
        guarded(known, unknown, [&] {
            repeatableWork(cancellation);
            isStopped = cancellation->isCanceled;
            if (!isStopped && m_interval != 0)
                cancellation->pause(m_interval);
        });
    }
    qDebug() << "cancellationCondition->isCanceled() - 2";
}
