#pragma once

#include "audio/AudioDeviceManager.h"

#include <QAudioFormat>
#include <QAudioInput>
#include <QByteArray>
#include <QElapsedTimer>
#include <QPointer>

#include <atomic>

/// Records the microphone: 16000 Hz, one channel, 16-bit signed little-endian.
///
/// Records for the whole life of the program; the receivers of SoundAvailable decide what becomes
/// of the sound. Lives on the main thread; set_Gain and setMuted may be called from any thread.
class RecordingDeviceManager : public AudioDeviceManager<QAudioInput> {
    Q_OBJECT

public:
    /// @param listManager  list of the input devices, not owned, outlives this object
    RecordingDeviceManager(AudioListManager *listManager, QObject *parent);
    ~RecordingDeviceManager() override { DestroyDevices(); }

    /// Takes gain, tracking and the wanted device from the settings file.
    void LoadSettings();
    /// Stores the same three. With no device selected the stored name stays.
    void SaveSettings();

    ExtAudioDeviceInfo DefaultDevice() const override;

    /// Input volume in percent; 0 until the settings are loaded.
    int Gain() const { return m_gain; }
    void set_Gain(int gain);
    /// Takes over the volume of the open device, which others may have changed.
    void read_Gain();

    /// Level of the last block, 0 to 100.
    int CurrentLevel() const { return m_currentLevel; }

    /// While muted, recorded blocks are thrown away, with no level and no SoundAvailable.
    void setMuted(bool isMuted) { m_isMuted = isMuted; }
    /// Any thread.
    bool isMuted() const { return m_isMuted; }

public slots:
    void OnDeviceStateChanged(QAudio::State state) override;
    void internal_set_Gain(int gain);
    void OnNotifyInterval();

signals:
    void GainChanged(int gain);
    void CurrentLevelChanged(int level);
    /// One block of whatever size the device had ready.
    void SoundAvailable(QByteArray data);

protected:
    void OnDeviceStart() override;
    void OnDeviceStop() override;
    QAudioInput *CreateDevice(const ExtAudioDeviceInfo &device) override;

private:
    void ConnectSoundSource(bool useNotifyEvent);
    void ReopenIfSilent();
    void FailDevice(QAudio::Error error);
    void UpdateLevel(int level);
    void PollGain();

    QAudioFormat m_format;
    /// Qt deletes it when the sound server is lost, before it tells so.
    QPointer<QIODevice> m_soundSource;
    int m_sinceVolumePollMs = 0;
    QElapsedTimer m_sinceSound;
    int m_gain = 0;
    int m_currentLevel = 0;
    std::atomic_bool m_isMuted{false};
    QMetaObject::Connection m_dataConnection;
};
