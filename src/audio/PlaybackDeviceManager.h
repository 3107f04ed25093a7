#pragma once

#include "audio/AudioDeviceManagerBase.h"

#include <QByteArray>
#include <QElapsedTimer>

class PlaybackStream;

/// Plays speech and signals: 22050 Hz, one channel, 16-bit signed little-endian.
///
/// The device stays open for the whole life of the program. Blocks are played in the order in which
/// they come, and a block that is being played outlives a device that goes: the next one plays the
/// rest. Lives on the main thread; set_Volume may be called from any thread.
class PlaybackDeviceManager : public AudioDeviceManagerBase {
    Q_OBJECT

public:
    /// @param listManager  list of the output devices, not owned, outlives this object
    PlaybackDeviceManager(AudioListManager *listManager, QObject *parent);

    /// Plays through this stream, not owned, which may live on another thread.
    void UseStream(PlaybackStream *stream);

    /// Takes volume, tracking and the wanted device from the settings file.
    void LoadSettings();
    /// Stores the same three; the device only if the user has chosen one.
    void SaveSettings();

    /// Output volume in percent; 0 until the settings are loaded.
    int Volume() const { return m_volume; }
    void set_Volume(int volume);

    /// Level of the last block queued, 0 to 100; 0 while nothing sounds.
    int CurrentLevel() const { return m_currentLevel; }

public slots:
    void OnDeviceStateChanged(QAudio::State state) override;
    void internal_set_Volume(int vol);
    /// Plays a WAV file of this device's format with a header of 44 bytes; one that cannot be read
    /// plays nothing.
    void playSoundFile(const QString &filePath);
    /// Queues a block. Without an open device it is dropped.
    void playSound(const QByteArray &_data);

signals:
    void VolumeChanged(int vol);
    void CurrentLevelChanged(int level);
    /// To the stream.
    void PlayRequested(const QByteArray &block);

private:
    /// The block without a last half of a sample, which is kept for the next one.
    QByteArray WholeSamples(QByteArray block);
    void UpdateVolume(int volume);
    void UpdateLevel(int level);

    int m_volume = 0;
    int m_currentLevel = 0;
    QByteArray m_halfSample;
    QElapsedTimer m_sinceHalfSample;
};
