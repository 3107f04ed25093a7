#pragma once

#include "audio/SoundStream.h"

#include <QByteArray>
#include <QList>

/// Sound on its way to a speaker, 22050 Hz.
///
/// Blocks are played in the order in which they come, and those that the server has not taken
/// outlive a device that goes: the next one plays them.
class PlaybackStream : public SoundStream {
    Q_OBJECT

public:
    static constexpr int sampleRate = 22050;

    explicit PlaybackStream(PulseConnection *connection);

public slots:
    /// Queues a block of whole samples; while there is no device it is dropped.
    void Play(const QByteArray &block);

protected:
    int Connect(pa_stream *stream, const char *deviceName) override;
    void OnOpened() override;

private:
    /// Hands the server as much as it takes.
    void Write();
    void SetState(QAudio::State state);
    void Begin();

    QList<QByteArray> m_queue;
    /// Bytes of all blocks in the queue, of which the first m_written have been handed over.
    qint64 m_queuedBytes = 0;
    int m_written = 0;
    QAudio::State m_state = QAudio::StoppedState;
    /// Runs from the last block on.
    QTimer m_beginTimer{this};
};
