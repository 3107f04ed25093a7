#include "core/workers/SubService.h"

#include "core/workers/BaseWorker.h"

#include <QDebug>
#include <QMutexLocker>
#include <QThread>

SubService::SubService(BaseWorker *worker, bool autoStart)
    : m_thread(std::make_unique<QThread>()), m_worker(worker), m_autoStart(autoStart) {
    m_thread->setObjectName(m_worker->workerName());
    m_worker->moveToThread(m_thread.get());
    connect(this, &SubService::runService, m_worker.get(), &BaseWorker::run, Qt::QueuedConnection);
    connect(this, &SubService::stopService, m_worker.get(), &BaseWorker::onStopWorker,
            Qt::QueuedConnection);
    connect(m_thread.get(), &QThread::finished, this, &SubService::runWorker, Qt::QueuedConnection);
}

SubService::~SubService() {
    Stop();
    if (m_thread->isRunning()) {
        // A stuck worker still uses both; freeing them now would end the program.
        m_worker.release()->deleteLater();
        QThread *thread = m_thread.release();
        connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    }
}

void SubService::Start() {
    const QMutexLocker locker(&m_mutex);
    if (m_isRunning)
        Stop();
    qDebug().noquote() << "Start begin:" << m_worker->workerName();
    m_cancellation = std::make_shared<CancellationCondition>();
    m_isRunning = true;
    runWorker();
    qDebug().noquote() << "Start end:" << m_worker->workerName();
}

void SubService::runWorker() {
    const QMutexLocker locker(&m_mutex);
    // A thread that an earlier stop has given up on ends with its worker; it is then begun anew.
    if (!m_isRunning || m_thread->isRunning())
        return;
    m_thread->start(QThread::InheritPriority);
    emit runService(m_cancellation);
}

void SubService::Stop() {
    const QMutexLocker locker(&m_mutex);
    if (!m_isRunning)
        return;
    qDebug().noquote() << "Stop begin:" << m_worker->workerName();
    m_cancellation->cancel();
    // Ends a blocking request of the worker early.
    m_thread->requestInterruption();
    emit stopService(m_cancellation);
    waitForWorker();
    m_thread->quit();
    m_thread->wait(m_stopTimeout);
    m_cancellation.reset();
    m_isRunning = false;
    qDebug().noquote() << "Stop end:" << m_worker->workerName();
}

void SubService::waitForWorker() {
    for (unsigned long elapsed = 0;
         !m_worker->isWorkDone(m_cancellation.get()) && elapsed < m_stopTimeout;
         elapsed += m_pollInterval) {
        QThread::msleep(m_pollInterval);
    }
}
