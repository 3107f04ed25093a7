#pragma once

#include "audio/AudioDeviceManagerBase.h"

#include <QByteArray>

#include <atomic>

class RecordingStream;

/// Records the microphone: 16000 Hz, one channel, 16-bit signed little-endian.
///
/// Records for the whole life of the program; the receivers of SoundAvailable decide what becomes
/// of the sound. Lives on the main thread; set_Gain and setMuted may be called from any thread.
class RecordingDeviceManager : public AudioDeviceManagerBase {
    Q_OBJECT

public:
    /// @param listManager  list of the input devices, not owned, outlives this object
    RecordingDeviceManager(AudioListManager *listManager, QObject *parent);

    /// Takes the sound from this stream, not owned, which may live on another thread.
    void UseStream(RecordingStream *stream);

    /// Takes gain, tracking and the wanted device from the settings file.
    void LoadSettings();
    /// Stores the same three; the device only if the user has chosen one.
    void SaveSettings();

    /// Input volume in percent; 0 until the settings are loaded.
    int Gain() const { return m_gain; }
    void set_Gain(int gain);

    /// Level of the last block, 0 to 100.
    int CurrentLevel() const { return m_currentLevel; }

    /// While muted, recorded blocks are thrown away, with no level and no SoundAvailable.
    void setMuted(bool isMuted) { m_isMuted = isMuted; }
    /// Any thread.
    bool isMuted() const { return m_isMuted; }

public slots:
    void internal_set_Gain(int gain);

signals:
    void GainChanged(int gain);
    void CurrentLevelChanged(int level);
    /// One block of whatever size the device had ready. Emitted on the thread of the sound, so that
    /// it does not wait for the main thread.
    void SoundAvailable(QByteArray data);

private:
    /// On the thread of the sound.
    void TakeBlock(const QByteArray &block);
    void UpdateGain(int gain);
    void UpdateLevel(int level);

    int m_gain = 0;
    int m_currentLevel = 0;
    /// Of the last block, as the thread of the sound knows it.
    int m_lastLevel = 0;
    std::atomic_bool m_isMuted{false};
};
