#pragma once

#include "audio/AudioDeviceManager.h"

#include <QAudioFormat>
#include <QAudioOutput>
#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QPointer>

/// Plays speech and signals: 22050 Hz, one channel, 16-bit signed little-endian.
///
/// The device stays open for the whole life of the program. Blocks are played in the order in which
/// they come, and a block that is being played outlives a device that goes: the next one plays the
/// rest. Lives on the main thread; set_Volume may be called from any thread.
class PlaybackDeviceManager : public AudioDeviceManager<QAudioOutput> {
    Q_OBJECT

public:
    /// @param listManager  list of the output devices, not owned, outlives this object
    PlaybackDeviceManager(AudioListManager *listManager, QObject *parent);
    ~PlaybackDeviceManager() override { DestroyDevices(); }

    /// Takes volume, tracking and the wanted device from the settings file.
    void LoadSettings();
    /// Stores the same three. With no device selected the stored name stays.
    void SaveSettings();

    ExtAudioDeviceInfo DefaultDevice() const override;

    /// Output volume in percent; 0 until the settings are loaded.
    int Volume() const { return m_volume; }
    void set_Volume(int volume);

    /// Level of the last block queued, 0 to 100; 0 while nothing sounds.
    int CurrentLevel() const { return m_currentLevel; }

public slots:
    void OnDeviceStateChanged(QAudio::State state) override;
    void internal_set_Volume(int vol);
    /// Takes over the volume of the open device, which others may have changed.
    void read_Volume();
    /// Plays a WAV file of this device's format with a header of 44 bytes; one that cannot be read
    /// plays nothing.
    void playSoundFile(const QString &filePath);
    /// Queues a block. Without an open device it is dropped.
    void playSound(const QByteArray &_data);

signals:
    void VolumeChanged(int vol);
    void CurrentLevelChanged(int level);

protected:
    void OnDeviceStart() override;
    void OnDeviceStop() override;
    QAudioOutput *CreateDevice(const ExtAudioDeviceInfo &device) override;

private:
    /// The block without a last half of a sample, which is kept for the next one.
    QByteArray WholeSamples(QByteArray block);
    void Enqueue(const QByteArray &block);
    /// Hands the device as much as it takes.
    void WriteDataToStream();
    void KeepPlaying();
    /// Fills the device's buffer up: PulseAudio begins only when it is full, and would keep a short
    /// sound to itself until another one comes.
    void WriteSilence();
    void UpdateVolume(int volume);
    void UpdateLevel(int level);

    QAudioFormat m_format;
    int m_volume = 0;
    int m_currentLevel = 0;
    /// Qt deletes it when the sound server is lost, before it tells so.
    QPointer<QIODevice> m_outputStream;
    QList<QByteArray> m_queue;
    /// Bytes of all blocks in the queue, of which the first m_written have been handed over.
    qint64 m_queuedBytes = 0;
    int m_written = 0;
    QByteArray m_halfSample;
    QElapsedTimer m_sinceHalfSample;
    /// How much the device would have taken at its last notice, -1 once it was handed something;
    /// the same again means that it has not begun.
    int m_roomBefore = -1;
};
