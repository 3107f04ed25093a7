#include "stand/AcousticEngine.h"

#include "stand/AcousticWorker.h"

namespace {
constexpr int kMaxWaitingBytes = 60 * 16000 * 2;
}

AcousticEngine::AcousticEngine(const QString &folder, QObject *parent)
    : RecognitionEngine(parent), m_worker(new AcousticWorker(folder)) {
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    connect(m_worker, &AcousticWorker::partialText, this, &RecognitionEngine::partialText);
    connect(m_worker, &AcousticWorker::finalText, this, &RecognitionEngine::finalText);
    connect(m_worker, &AcousticWorker::finished, this, &RecognitionEngine::finished);
    connect(m_worker, &AcousticWorker::failed, this, &RecognitionEngine::failed);
    m_thread.setObjectName(QStringLiteral("acoustic"));
    m_thread.start();
}

AcousticEngine::~AcousticEngine() {
    m_thread.quit();
    m_thread.wait();
}

void AcousticEngine::start() {
    QMetaObject::invokeMethod(m_worker, [this] { m_worker->start(); });
}

void AcousticEngine::feed(const QByteArray &sound) {
    if (m_waitingBytes + sound.size() > kMaxWaitingBytes)
        return;
    m_waitingBytes += sound.size();
    QMetaObject::invokeMethod(m_worker, [this, sound] {
        m_worker->feed(sound);
        m_waitingBytes -= sound.size();
    });
}

void AcousticEngine::finish() {
    QMetaObject::invokeMethod(m_worker, [this] { m_worker->finish(); });
}

void AcousticEngine::setPunctuation(bool on) {
    QMetaObject::invokeMethod(m_worker, [this, on] { m_worker->setPunctuation(on); });
}
