#include "core/workers/BaseWorker.h"

#include "core/workers/Guarded.h"

#include <QDebug>

BaseWorker::BaseWorker() : QObject(nullptr) {
    qRegisterMetaType<CancellationPointer>();
}

QString BaseWorker::workerName() {
    if (m_name.isEmpty())
        m_name = QString::fromLatin1(metaObject()->className());
    return m_name;
}

void BaseWorker::run(CancellationPointer cancellation) {
    m_cancellation = std::move(cancellation);
    m_isDone = false;
    const QString place = QStringLiteral(" in subService [") + workerName() + QLatin1Char(']');
    guarded(QStringLiteral("External cycle error") + place,
            QStringLiteral("External cycle unknown error") + place, [this] {
                if (m_startDelay != 0)
                    m_cancellation->pause(m_startDelay);
                initialize();
                process(m_cancellation.get());
            });
    guarded(QStringLiteral("CleanUp error") + place,
            QStringLiteral("CleanUp unknown error") + place, [this] { cleanUp(); });
}

void BaseWorker::onStopWorker(const CancellationPointer &) {
    const QString name = QStringLiteral(" subService [") + workerName() + QLatin1Char(']');
    guarded(QStringLiteral("onStop errorin") + name,
            QStringLiteral("onStop unknown error in") + name, [this] { onStop(); });
}

void BaseWorker::initialize() {
    qDebug() << "initialize";
}

void BaseWorker::cleanUp() {
    qDebug() << "cleanUp";
}

bool BaseWorker::isWorkDone(CancellationCondition *) {
    return m_isDone;
}

void BaseWorker::onStop() {
    m_isDone = true;
}
