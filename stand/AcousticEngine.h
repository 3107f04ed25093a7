#pragma once

#include "stand/RecognitionEngine.h"

#include <QThread>

#include <atomic>

class AcousticWorker;

/// Recognises the sound that arrives, with the small Russian model: a demonstration, not a
/// clinical engine. Decoding runs on a thread of the engine's own.
class AcousticEngine : public RecognitionEngine {
    Q_OBJECT

public:
    /// @param folder  the recogniser's folder; a fault in it shows as failed() at the first start
    explicit AcousticEngine(const QString &folder, QObject *parent = nullptr);
    /// Ends the thread after the block in hand; blocks that still wait are dropped.
    ~AcousticEngine() override;

    void start() override;
    /// Sound that comes faster than it can be decoded is dropped beyond a minute of it.
    void feed(const QByteArray &sound) override;
    void finish() override;
    void setPunctuation(bool on) override;

private:
    QThread m_thread;
    AcousticWorker *m_worker; ///< lives on m_thread and is deleted when that ends
    std::atomic<int> m_waitingBytes{0};
};
