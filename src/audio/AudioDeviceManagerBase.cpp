#include "audio/AudioDeviceManagerBase.h"

#include "audio/AudioListManager.h"
#include "audio/SoundStream.h"
#include "core/LoggingCategories.h"

namespace {
/// The first device of a new list that is not in the old one, the wanted one before all others; -1
/// if none is new.
int indexOfAdded(const QList<ExtAudioDeviceInfo> &newList, const QList<ExtAudioDeviceInfo> &oldList,
                 const QString &wantedName) {
    int added = -1;
    for (int i = 0; i < newList.size(); ++i) {
        if (oldList.contains(newList[i]))
            continue;
        if (newList[i].deviceName() == wantedName)
            return i;
        if (added < 0)
            added = i;
    }
    return added;
}
} // namespace

AudioDeviceManagerBase::AudioDeviceManagerBase(AudioListManager *listManager, QObject *parent)
    : QObject(parent), m_listManager(listManager) {
    connect(listManager, &AudioListManager::DeviceListChanged, this,
            &AudioDeviceManagerBase::audiolistmanager_DeiceListChanged, Qt::QueuedConnection);
}

void AudioDeviceManagerBase::ConnectStream(SoundStream *stream) {
    connect(this, &AudioDeviceManagerBase::OpenRequested, stream, &SoundStream::Open,
            Qt::QueuedConnection);
    connect(this, &AudioDeviceManagerBase::CloseRequested, stream, &SoundStream::Close,
            Qt::QueuedConnection);
    connect(this, &AudioDeviceManagerBase::VolumeRequested, stream, &SoundStream::SetVolume,
            Qt::QueuedConnection);
    connect(stream, &SoundStream::StateChanged, this, &AudioDeviceManagerBase::OnDeviceStateChanged,
            Qt::QueuedConnection);
}

void AudioDeviceManagerBase::StartDevice() {
    if (!m_currentDevice.isNull())
        emit OpenRequested(m_currentDevice);
}

void AudioDeviceManagerBase::OnDeviceStateChanged(QAudio::State state) {
    if (state == QAudio::StoppedState)
        emit DeviceStopped();
}

void AudioDeviceManagerBase::set_IsTrackChanges(bool isTrackChanges) {
    if (m_isTrackChanges == isTrackChanges)
        return;
    m_isTrackChanges = isTrackChanges;
    emit IsTrackChangesChanged();
}

void AudioDeviceManagerBase::SelectDevice(const QString &name) {
    m_wantedName = name;
    if (!m_isListKnown)
        return;
    SwitchTo(qMax(0, IndexOfName(name)));
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::set_SelectedIndex(int index) {
    const bool isInRange = index >= 0 && index < m_deviceList.size();
    if (isInRange ? index == m_selectedIndex : m_selectedIndex < 0)
        return;
    SwitchTo(index);
    if (isInRange)
        m_wantedName = m_currentDevice.deviceName();
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::audiolistmanager_DeiceListChanged() {
    try {
        const QList<ExtAudioDeviceInfo> newList = m_listManager->DeviceList();
        if (m_isListKnown)
            TakeOverList(newList);
        else
            TakeOverFirstList(newList);
    } catch (const std::exception &error) {
        qCCritical(audiodevlog).nospace() << "Audio device manager error: " << error.what();
    } catch (...) {
        qCCritical(audiodevlog) << "Audio device manager unknown error";
    }
}

void AudioDeviceManagerBase::TakeOverFirstList(const QList<ExtAudioDeviceInfo> &newList) {
    m_isListKnown = true;
    m_sinceStart.start();
    m_deviceList = newList;
    SwitchTo(qMax(0, IndexOfName(m_wantedName)));
    emit DeviceListChanged();
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::TakeOverList(const QList<ExtAudioDeviceInfo> &newList) {
    if (m_deviceList.isEmpty())
        m_sinceStart.start();
    const int added = indexOfAdded(newList, m_deviceList, m_wantedName);
    m_deviceList = newList;
    const int current = m_deviceList.indexOf(m_currentDevice);
    const int wanted = IndexOfName(m_wantedName);
    const bool isPlugged = added >= 0 && m_sinceStart.elapsed() >= m_startLimitMs;
    const bool isFollowing = m_isTrackChanges && isPlugged;
    // One that only stands in for the wanted device gives way to it.
    const int next = isFollowing ? added : wanted >= 0 ? wanted : current >= 0 ? current : added;
    const bool isSwitched = next < 0 || next != current;
    if (isSwitched)
        SwitchTo(qMax(0, next));
    else
        m_selectedIndex = current;
    if (isFollowing)
        m_wantedName = m_currentDevice.deviceName();
    emit DeviceListChanged();
    emit SelectedIndexChanged();
    if (m_isTrackChanges && isSwitched)
        emit DeviceNotification();
}

int AudioDeviceManagerBase::IndexOfName(const QString &name) const {
    for (int i = 0; i < m_deviceList.size(); ++i) {
        if (m_deviceList[i].deviceName() == name)
            return i;
    }
    return -1;
}

void AudioDeviceManagerBase::SwitchTo(int index) {
    StopDevice();
    const bool isInRange = index >= 0 && index < m_deviceList.size();
    m_selectedIndex = isInRange ? index : -1;
    m_currentDevice = isInRange ? m_deviceList[index] : ExtAudioDeviceInfo();
    StartDevice();
}
