#include "audio/RecordingDeviceManager.h"

#include "audio/LevelCalc.h"
#include "core/Exception.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QMetaMethod>

namespace {
/// A stream that the sound server has killed goes on signalling, but gives nothing and reports no
/// error. A device that starts may take 2 seconds until its first sound.
constexpr int maxSilenceMs = 5000;

constexpr int sampleRate = 16000;
} // namespace

RecordingDeviceManager::RecordingDeviceManager(AudioListManager *listManager, QObject *parent)
    : AudioDeviceManager(listManager, parent), m_format(speechFormat(sampleRate)) {}

void RecordingDeviceManager::LoadSettings() {
    const RecordingDeviceSettings settings;
    set_Gain(settings.Gain);
    set_IsTrackChanges(settings.TrackChanges);
    SelectDevice(settings.Name);
}

void RecordingDeviceManager::SaveSettings() {
    RecordingDeviceSettings settings;
    settings.Gain = m_gain;
    // A microphone that is only unplugged stays the user's choice.
    if (!CurrentDevice().isNull())
        settings.Name = CurrentDevice().deviceName();
    settings.TrackChanges = IsTrackChanges();
    settings.sync();
}

ExtAudioDeviceInfo RecordingDeviceManager::DefaultDevice() const {
    return ExtAudioDeviceInfo(QAudioDeviceInfo::defaultInputDevice(), QStringLiteral("default"));
}

void RecordingDeviceManager::set_Gain(int gain) {
    static const QMetaMethod method =
        staticMetaObject.method(staticMetaObject.indexOfMethod("internal_set_Gain(int)"));
    method.invoke(this, Qt::AutoConnection, Q_ARG(int, gain));
}

void RecordingDeviceManager::internal_set_Gain(int gain) {
    if (Device())
        Device()->setVolume(gain / 100.0);
    if (m_gain == gain)
        return;
    m_gain = gain;
    emit GainChanged(gain);
}

void RecordingDeviceManager::read_Gain() {
    if (!Device())
        return;
    const int gain = qRound(Device()->volume() * 100.0);
    if (m_gain == gain)
        return;
    m_gain = gain;
    emit GainChanged(gain);
}

QAudioInput *RecordingDeviceManager::CreateDevice(const ExtAudioDeviceInfo &device) {
    if (!device.isFormatSupported(m_format))
        qCDebug(audiodevlog) << "Unsupported format";
    auto *input = new QAudioInput(device, m_format, this);
    connect(input, &QObject::destroyed, input,
            [description = device.Description()](const QObject *object) {
                qCDebug(audiodevlog).noquote().nospace()
                    << "Delete audio input " << description << " "
                    << static_cast<const void *>(object);
            });
    qCDebug(audiodevlog).noquote().nospace() << "Created audio input " << device.Description()
                                             << " " << static_cast<const void *>(input);
    return input;
}

void RecordingDeviceManager::OnDeviceStart() {
    RecordingDeviceSettings settings;
    connect(Device(), &QAudioInput::stateChanged, this,
            &RecordingDeviceManager::OnDeviceStateChanged, queuedAndUnique);
    m_sinceVolumePollMs = 0;
    Device()->setNotifyInterval(settings.DataInterval);
    Device()->setBufferSize(settings.BufferSize);
    set_Gain(m_gain);
    m_soundSource = Device()->start();
    m_sinceSound.start();
    qCDebug(audiodevlog).nospace() << "Audio buffer size:   " << Device()->bufferSize();
    qCDebug(audiodevlog).nospace() << "Audio data interval: " << Device()->notifyInterval();
    settings.sync();
    if (!m_soundSource)
        throw Exception(QStringLiteral("Device error: %1 on %2")
                            .arg(Device()->error())
                            .arg(Device()->objectName()));
    ConnectSoundSource(settings.UseNotifyEvent);
}

void RecordingDeviceManager::ConnectSoundSource(bool useNotifyEvent) {
    if (!useNotifyEvent) {
        m_dataConnection = connect(m_soundSource, &QIODevice::readyRead, this,
                                   &RecordingDeviceManager::OnNotifyInterval, queuedAndUnique);
        return;
    }
    m_dataConnection = connect(Device(), &QAudioInput::notify, this,
                               &RecordingDeviceManager::OnNotifyInterval, queuedAndUnique);
    // Qt notifies only once the device is active, which the first read makes it.
    m_soundSource->readAll();
}

void RecordingDeviceManager::OnDeviceStop() {
    disconnect(m_dataConnection);
    m_soundSource = nullptr;
    emit DeviceStopped();
}

void RecordingDeviceManager::OnDeviceStateChanged(QAudio::State state) {
    auto *input = qobject_cast<QAudioInput *>(sender());
    if (!input || state != QAudio::StoppedState)
        return;
    // The signal is queued, so it may come from a device that was stopped earlier.
    if (input != Device())
        input->deleteLater();
    else if (input->error() != QAudio::NoError)
        FailDevice(input->error());
    else
        CloseDevice();
}

void RecordingDeviceManager::FailDevice(QAudio::Error error) {
    qCDebug(audiodevlog).nospace() << "device error: " << static_cast<int>(error);
    const QAudioInput *failed = Device();
    emit DeviceError(error);
    // A receiver may have closed it or chosen another one.
    if (Device() != failed)
        return;
    CloseDevice();
    Reopen();
}

void RecordingDeviceManager::OnNotifyInterval() {
    if (!m_soundSource)
        return;
    const QByteArray block = m_soundSource->readAll();
    if (block.isEmpty()) {
        ReopenIfSilent();
        return;
    }
    m_sinceSound.start();
    if (m_isMuted)
        return;
    const int level = LevelCalc::GetSoundLevel(reinterpret_cast<const short *>(block.constData()),
                                               block.size() / static_cast<int>(sizeof(short)));
    emit SoundAvailable(block);
    UpdateLevel(level);
    PollGain();
}

void RecordingDeviceManager::ReopenIfSilent() {
    if (m_sinceSound.hasExpired(maxSilenceMs))
        FailDevice(QAudio::IOError);
}

void RecordingDeviceManager::UpdateLevel(int level) {
    if (m_currentLevel == level)
        return;
    m_currentLevel = level;
    emit CurrentLevelChanged(level);
}

void RecordingDeviceManager::PollGain() {
    m_sinceVolumePollMs += RecordingDeviceSettings().DataInterval;
    if (m_sinceVolumePollMs < m_volumePollPeriodMs)
        return;
    read_Gain();
    m_sinceVolumePollMs = 0;
}
