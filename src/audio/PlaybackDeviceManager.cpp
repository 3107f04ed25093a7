#include "audio/PlaybackDeviceManager.h"

#include "audio/LevelCalc.h"
#include "core/Exception.h"
#include "core/settings/PlaybackDeviceSettings.h"

#include <QFile>
#include <QMetaMethod>

#include <utility>

namespace {
constexpr int wavHeaderBytes = 44;
constexpr int sampleBytes = 2;
constexpr int sampleRate = 22050;
/// Longer than the main thread may be kept while a sample is on its way in two halves.
constexpr int halfSampleLifeMs = 10000;
/// Twenty minutes of speech. A device that takes nothing must not fill the memory.
constexpr qint64 maxQueuedBytes = 20LL * 60 * sampleRate * sampleBytes;
} // namespace

PlaybackDeviceManager::PlaybackDeviceManager(AudioListManager *listManager, QObject *parent)
    : AudioDeviceManager(listManager, parent), m_format(speechFormat(sampleRate)) {}

void PlaybackDeviceManager::LoadSettings() {
    const PlaybackDeviceSettings settings;
    set_Volume(settings.Volume);
    set_IsTrackChanges(settings.TrackChanges);
    SelectDevice(settings.Name);
}

void PlaybackDeviceManager::SaveSettings() {
    PlaybackDeviceSettings settings;
    settings.Volume = m_volume;
    // A device that is only unplugged stays the user's choice.
    if (!CurrentDevice().isNull())
        settings.Name = CurrentDevice().deviceName();
    settings.TrackChanges = IsTrackChanges();
    settings.sync();
}

ExtAudioDeviceInfo PlaybackDeviceManager::DefaultDevice() const {
    return ExtAudioDeviceInfo(QAudioDeviceInfo::defaultOutputDevice(), QStringLiteral("default"));
}

void PlaybackDeviceManager::set_Volume(int volume) {
    static const QMetaMethod method =
        staticMetaObject.method(staticMetaObject.indexOfMethod("internal_set_Volume(int)"));
    method.invoke(this, Qt::AutoConnection, Q_ARG(int, volume));
}

void PlaybackDeviceManager::internal_set_Volume(int vol) {
    if (Device())
        Device()->setVolume(vol / 100.0);
    UpdateVolume(vol);
}

void PlaybackDeviceManager::read_Volume() {
    if (Device())
        UpdateVolume(qRound(Device()->volume() * 100.0));
}

void PlaybackDeviceManager::UpdateVolume(int volume) {
    if (m_volume == volume)
        return;
    m_volume = volume;
    emit VolumeChanged(volume);
}

QAudioOutput *PlaybackDeviceManager::CreateDevice(const ExtAudioDeviceInfo &device) {
    if (!device.isFormatSupported(m_format))
        qCDebug(audiodevlog) << "Unsupported format";
    auto *output = new QAudioOutput(device, m_format, this);
    connect(output, &QObject::destroyed, output,
            [description = device.Description()](const QObject *object) {
                qCDebug(audiodevlog).noquote().nospace()
                    << "Delete audio output " << description << " "
                    << static_cast<const void *>(object);
            });
    qCDebug(audiodevlog).noquote().nospace() << "Created audio output " << device.Description()
                                             << " " << static_cast<const void *>(output);
    return output;
}

void PlaybackDeviceManager::OnDeviceStart() {
    connect(Device(), &QAudioOutput::stateChanged, this,
            &PlaybackDeviceManager::OnDeviceStateChanged, queuedAndUnique);
    Device()->setNotifyInterval(m_volumePollPeriodMs);
    connect(Device(), &QAudioOutput::notify, this, &PlaybackDeviceManager::read_Volume,
            queuedAndUnique);
    connect(Device(), &QAudioOutput::notify, this, &PlaybackDeviceManager::KeepPlaying,
            queuedAndUnique);
    set_Volume(PlaybackDeviceSettings().Volume);
    m_outputStream = Device()->start();
    m_currentLevel = 0;
    if (!m_outputStream) {
        throw Exception(QStringLiteral("Device error: %1 on %2")
                            .arg(Device()->error())
                            .arg(Device()->objectName()));
    }
}

void PlaybackDeviceManager::OnDeviceStop() {
    disconnect(Device(), &QAudioOutput::notify, this, nullptr);
    m_outputStream = nullptr;
    emit DeviceStopped();
}

void PlaybackDeviceManager::OnDeviceStateChanged(QAudio::State state) {
    qCInfo(audiodevlog).nospace() << "State: " << state;
    const auto *output = qobject_cast<QAudioOutput *>(sender());
    if (output && state != QAudio::ActiveState)
        UpdateLevel(0);
    if (state == QAudio::IdleState)
        WriteDataToStream();
    // The list of devices may be the same after the sound server was lost.
    if (output && output == Device() && state == QAudio::StoppedState &&
        output->error() != QAudio::NoError) {
        CloseDevice();
        Reopen();
    }
}

void PlaybackDeviceManager::UpdateLevel(int level) {
    if (m_currentLevel == level)
        return;
    m_currentLevel = level;
    emit CurrentLevelChanged(level);
}

void PlaybackDeviceManager::playSoundFile(const QString &filePath) {
    try {
        QFile file(filePath);
        if (!file.open(QIODevice::ReadOnly) || !file.seek(wavHeaderBytes)) {
            qCWarning(audiodevlog).noquote()
                << "Cannot play" << filePath << "-" << file.errorString();
            return;
        }
        // A signal may come between two blocks of speech that share a sample.
        const QByteArray half = std::exchange(m_halfSample, {});
        playSound(file.readAll());
        m_halfSample = half;
        // Nothing follows a signal that would make PulseAudio begin.
        WriteSilence();
    } catch (const std::exception &error) {
        qCDebug(audiodevlog) << error.what();
    }
}

void PlaybackDeviceManager::playSound(const QByteArray &_data) {
    // Also of what is dropped, or the rest would be made of halves of two samples.
    const QByteArray block = WholeSamples(_data);
    const int level = LevelCalc::GetSoundLevel(reinterpret_cast<const short *>(block.constData()),
                                               block.size() / sampleBytes);
    if (m_outputStream && !block.isEmpty()) {
        Enqueue(block);
        WriteDataToStream();
    }
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

void PlaybackDeviceManager::Enqueue(const QByteArray &block) {
    if (m_queuedBytes + block.size() > maxQueuedBytes) {
        qCWarning(audiodevlog) << "Too much sound waits to be played, dropped:" << block.size();
        return;
    }
    m_queuedBytes += block.size();
    m_queue.append(block);
}

void PlaybackDeviceManager::KeepPlaying() {
    // A device that were filled only when it runs empty would fall silent between two fillings.
    WriteDataToStream();
    const int room = m_outputStream ? Device()->bytesFree() : 0;
    if (m_queue.isEmpty() && room == m_roomBefore)
        WriteSilence();
    m_roomBefore = room;
}

void PlaybackDeviceManager::WriteSilence() {
    const int room = m_outputStream ? Device()->bytesFree() / sampleBytes * sampleBytes : 0;
    if (m_queue.isEmpty() && room > 0)
        m_outputStream->write(QByteArray(room, '\0'));
}

void PlaybackDeviceManager::WriteDataToStream() {
    while (m_outputStream && !m_queue.isEmpty()) {
        const QByteArray &block = m_queue.constFirst();
        // Qt keeps PulseAudio's lock for ever after a write that fails, as one without room does.
        const int room = Device()->bytesFree() / sampleBytes * sampleBytes;
        if (room < sampleBytes)
            return;
        const qint64 taken = m_outputStream->write(block.constData() + m_written,
                                                   qMin(room, block.size() - m_written));
        if (taken < 1)
            return;
        m_written += static_cast<int>(taken);
        m_roomBefore = -1;
        if (m_written < block.size())
            continue;
        m_queuedBytes -= block.size();
        m_queue.removeFirst();
        m_written = 0;
    }
}
