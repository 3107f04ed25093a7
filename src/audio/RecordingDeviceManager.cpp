#include "audio/RecordingDeviceManager.h"

#include "audio/LevelCalc.h"
#include "audio/RecordingStream.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QMetaMethod>

#include <utility>

RecordingDeviceManager::RecordingDeviceManager(AudioListManager *listManager, QObject *parent)
    : AudioDeviceManagerBase(listManager, parent) {}

void RecordingDeviceManager::UseStream(RecordingStream *stream) {
    ConnectStream(stream);
    connect(stream, &RecordingStream::Failed, this, &RecordingDeviceManager::DeviceError,
            Qt::QueuedConnection);
    connect(stream, &RecordingStream::VolumeChanged, this, &RecordingDeviceManager::UpdateGain,
            Qt::QueuedConnection);
    connect(stream, &RecordingStream::SoundRecorded, this, &RecordingDeviceManager::TakeBlock,
            Qt::DirectConnection);
}

void RecordingDeviceManager::LoadSettings() {
    const RecordingDeviceSettings settings;
    set_Gain(settings.Gain);
    set_IsTrackChanges(settings.TrackChanges);
    SelectDevice(settings.Name);
}

void RecordingDeviceManager::SaveSettings() {
    RecordingDeviceSettings settings;
    settings.Gain = m_gain;
    if (!WantedName().isEmpty())
        settings.Name = WantedName();
    settings.TrackChanges = IsTrackChanges();
    settings.sync();
}

void RecordingDeviceManager::set_Gain(int gain) {
    static const QMetaMethod method =
        staticMetaObject.method(staticMetaObject.indexOfMethod("internal_set_Gain(int)"));
    method.invoke(this, Qt::AutoConnection, Q_ARG(int, gain));
}

void RecordingDeviceManager::internal_set_Gain(int gain) {
    emit VolumeRequested(gain);
    UpdateGain(gain);
}

void RecordingDeviceManager::UpdateGain(int gain) {
    if (m_gain == gain)
        return;
    m_gain = gain;
    emit GainChanged(gain);
}

void RecordingDeviceManager::TakeBlock(const QByteArray &block) {
    if (m_isMuted)
        return;
    const int level = LevelCalc::GetSoundLevel(reinterpret_cast<const short *>(block.constData()),
                                               block.size() / static_cast<int>(sizeof(short)));
    emit SoundAvailable(block);
    if (std::exchange(m_lastLevel, level) != level)
        QMetaObject::invokeMethod(this, [this, level] { UpdateLevel(level); });
}

void RecordingDeviceManager::UpdateLevel(int level) {
    if (m_currentLevel == level)
        return;
    m_currentLevel = level;
    emit CurrentLevelChanged(level);
}
