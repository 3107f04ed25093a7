#include "audio/PlaybackDeviceManager.h"

#include "audio/LevelCalc.h"
#include "audio/PlaybackStream.h"
#include "core/LoggingCategories.h"
#include "core/settings/PlaybackDeviceSettings.h"

#include <QFile>
#include <QMetaMethod>

#include <utility>

namespace {
constexpr int wavHeaderBytes = 44;
constexpr int sampleBytes = 2;
/// Longer than the main thread may be kept while a sample is on its way in two halves.
constexpr int halfSampleLifeMs = 10000;
} // namespace

PlaybackDeviceManager::PlaybackDeviceManager(AudioListManager *listManager, QObject *parent)
    : AudioDeviceManagerBase(listManager, parent) {}

void PlaybackDeviceManager::UseStream(PlaybackStream *stream) {
    ConnectStream(stream);
    connect(stream, &PlaybackStream::VolumeChanged, this, &PlaybackDeviceManager::UpdateVolume,
            Qt::QueuedConnection);
    connect(this, &PlaybackDeviceManager::PlayRequested, stream, &PlaybackStream::Play,
            Qt::QueuedConnection);
}

void PlaybackDeviceManager::LoadSettings() {
    const PlaybackDeviceSettings settings;
    set_Volume(settings.Volume);
    set_IsTrackChanges(settings.TrackChanges);
    SelectDevice(settings.Name);
}

void PlaybackDeviceManager::SaveSettings() {
    PlaybackDeviceSettings settings;
    settings.Volume = m_volume;
    if (!WantedName().isEmpty())
        settings.Name = WantedName();
    settings.TrackChanges = IsTrackChanges();
    settings.sync();
}

void PlaybackDeviceManager::set_Volume(int volume) {
    static const QMetaMethod method =
        staticMetaObject.method(staticMetaObject.indexOfMethod("internal_set_Volume(int)"));
    method.invoke(this, Qt::AutoConnection, Q_ARG(int, volume));
}

void PlaybackDeviceManager::internal_set_Volume(int vol) {
    emit VolumeRequested(vol);
    UpdateVolume(vol);
}

void PlaybackDeviceManager::UpdateVolume(int volume) {
    if (m_volume == volume)
        return;
    m_volume = volume;
    emit VolumeChanged(volume);
}

void PlaybackDeviceManager::OnDeviceStateChanged(QAudio::State state) {
    qCInfo(audiodevlog).nospace() << "State: " << state;
    if (state != QAudio::ActiveState)
        UpdateLevel(0);
    AudioDeviceManagerBase::OnDeviceStateChanged(state);
}

void PlaybackDeviceManager::UpdateLevel(int level) {
    if (m_currentLevel == level)
        return;
    m_currentLevel = level;
    emit CurrentLevelChanged(level);
}

void PlaybackDeviceManager::playSoundFile(const QString &filePath) {
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(wavHeaderBytes)) {
        qCWarning(audiodevlog).noquote() << "Cannot play" << filePath << "-" << file.errorString();
        return;
    }
    // A signal may come between two blocks of speech that share a sample.
    const QByteArray half = std::exchange(m_halfSample, {});
    playSound(file.readAll());
    m_halfSample = half;
}

void PlaybackDeviceManager::playSound(const QByteArray &_data) {
    // Also of what is dropped, or the rest would be made of halves of two samples.
    const QByteArray block = WholeSamples(_data);
    const int level = LevelCalc::GetSoundLevel(reinterpret_cast<const short *>(block.constData()),
                                               block.size() / sampleBytes);
    if (!block.isEmpty())
        emit PlayRequested(block);
    UpdateLevel(level);
}

QByteArray PlaybackDeviceManager::WholeSamples(QByteArray block) {
    // Half a sample ends the stream for PulseAudio; its other half begins the next block, unless
    // that is the begin of other speech.
    if (!m_halfSample.isEmpty() && !m_sinceHalfSample.hasExpired(halfSampleLifeMs))
        block.prepend(m_halfSample);
    m_halfSample.clear();
    if (block.size() % sampleBytes != 0) {
        m_halfSample = block.right(1);
        m_sinceHalfSample.start();
        block.chop(1);
    }
    return block;
}
