#pragma once

#include "audio/ExtAudioDeviceInfo.h"
#include "audio/PulseRefs.h"

#include <QAudio>
#include <QObject>
#include <QTimer>

#include <cstdint>

class PulseConnection;

/// One stream from or to a device: one channel, 16-bit signed little-endian.
///
/// Once told to be open it stays so until it is closed: what fails is opened again a second later,
/// and after a lost server as soon as there is one. Lives on the thread of the connection, and
/// never waits.
class SoundStream : public QObject {
    Q_OBJECT

public:
    /// @param sampleRate  Hz
    /// @param connection  owns this object, and tells the direction
    SoundStream(int sampleRate, PulseConnection *connection);
    ~SoundStream() override;

public slots:
    /// Opens the device in place of the one that is open.
    void Open(const ExtAudioDeviceInfo &device);
    void Close();
    /// @param percent  0 to 100, also of what is opened later
    void SetVolume(int percent);

signals:
    /// Stopped when the stream ends, for whatever reason.
    void StateChanged(QAudio::State state);
    /// A device did not open, or the stream broke off.
    void Failed(QAudio::Error error);
    /// Somebody else has changed the volume, in percent.
    void VolumeChanged(int percent);

protected:
    /// Begins to connect the new stream; returns what libpulse does, less than 0 for a failure.
    virtual int Connect(pa_stream *stream, const char *deviceName) = 0;
    virtual void OnOpened() = 0;

    /// The stream if it is open, else null.
    pa_stream *Stream() const { return m_isOpen ? m_stream.get() : nullptr; }
    /// Whether blocks have a device to go to, now or in a moment.
    bool IsOpening() const { return m_stream != nullptr; }
    int Volume() const { return m_volume; }
    int BytesPerSecond() const { return m_sampleRate * 2; }

private:
    /// Brings what is open nearer to what is wanted.
    void Reconcile();
    void Create();
    void OnStateChanged();
    void OnReady();
    void OnFailed();
    void OnTimeout();
    void OnDisconnected();
    void Release();
    void SendVolume();
    void AskForVolume(uint32_t index);
    template <typename Info>
    void TakeVolume(const Info *info);
    bool IsInput() const;
    void WarnOnce(const char *reason);
    void Log(const char *what) const;

    const int m_sampleRate;
    PulseConnection *m_connection;
    /// Null while the stream is to be closed.
    ExtAudioDeviceInfo m_wanted;
    /// What m_stream leads to.
    ExtAudioDeviceInfo m_opened;
    PulseRef<pa_stream> m_stream;
    /// The server has confirmed m_stream.
    bool m_isOpen = false;
    bool m_isFailureLogged = false;
    /// While the stream is being opened: how long that may take. Else: until the next attempt.
    QTimer m_timer{this};
    int m_volume = 0;
    PulseRef<pa_operation> m_volumeRequest;
    PulseRef<pa_operation> m_volumeQuestion;
};
