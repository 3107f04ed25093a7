#pragma once

#include "audio/SoundStream.h"

#include <QByteArray>

/// The sound of a microphone, 16000 Hz, in blocks of the length that the settings tell.
class RecordingStream : public SoundStream {
    Q_OBJECT

public:
    explicit RecordingStream(PulseConnection *connection);

signals:
    /// Emitted on the thread of the sound.
    void SoundRecorded(const QByteArray &block);

protected:
    int Connect(pa_stream *stream, const char *deviceName) override;
    void OnOpened() override;

private:
    void Read();

    int m_blockBytes = 0;
    QByteArray m_block;
};
