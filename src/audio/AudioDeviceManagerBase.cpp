#include "audio/AudioDeviceManagerBase.h"

#include "audio/AudioListManager.h"
#include "core/LoggingCategories.h"

#include <QCoreApplication>

#include <utility>

namespace {
constexpr int reopenDelayMs = 1000;

/// What a new list means for the one that a manager has; -1 where there is no such entry.
struct ListComparison {
    int current = -1;
    int added = -1;
};

ListComparison compare(const QList<ExtAudioDeviceInfo> &newList,
                       const QList<ExtAudioDeviceInfo> &ownList,
                       const ExtAudioDeviceInfo &currentDevice) {
    ListComparison found;
    for (int i = 0; i < newList.size() && (found.current < 0 || found.added < 0); ++i) {
        if (newList[i] == currentDevice)
            found.current = i;
        if (!ownList.contains(newList[i]))
            found.added = i;
    }
    return found;
}
} // namespace

AudioDeviceManagerBase::AudioDeviceManagerBase(AudioListManager *listManager, QObject *parent)
    : QObject(parent), m_listManager(listManager) {
    m_reopenTimer.setSingleShot(true);
    m_reopenTimer.setInterval(reopenDelayMs);
    connect(&m_reopenTimer, &QTimer::timeout, this, &AudioDeviceManagerBase::TryToReopen);
    connect(listManager, &AudioListManager::DeviceListChanged, this,
            &AudioDeviceManagerBase::audiolistmanager_DeiceListChanged, Qt::QueuedConnection);
    connect(listManager, &AudioListManager::Refreshed, this,
            &AudioDeviceManagerBase::OnListRefreshed, Qt::QueuedConnection);
}

QAudioFormat AudioDeviceManagerBase::speechFormat(int sampleRate) {
    QAudioFormat format;
    format.setSampleRate(sampleRate);
    format.setChannelCount(1);
    format.setSampleSize(16);
    format.setSampleType(QAudioFormat::SignedInt);
    format.setByteOrder(QAudioFormat::LittleEndian);
    format.setCodec(QStringLiteral("audio/pcm"));
    return format;
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
    const int found = IndexOfName(name);
    StopDevice();
    MakeCurrent(found >= 0 ? found : 0);
    StartDevice();
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::set_SelectedIndex(int index) {
    const bool isInRange = index >= 0 && index < m_deviceList.size();
    if (isInRange ? index == m_selectedIndex : m_selectedIndex < 0)
        return;
    StopDevice();
    MakeCurrent(index);
    if (isInRange) {
        m_wantedName = m_currentDevice.deviceName();
        StartDevice();
    }
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::OnListRefreshed() {
    const bool wasStale = std::exchange(m_isListStale, false);
    if (wasStale && m_reopenTimer.isActive())
        StartDevice();
}

void AudioDeviceManagerBase::TryToReopen() {
    if (m_isListStale)
        ReopenLater();
    else
        StartDevice();
}

void AudioDeviceManagerBase::Reopen() {
    if (m_sinceStart.hasExpired(reopenDelayMs))
        TryToReopen();
    else
        ReopenLater();
}

void AudioDeviceManagerBase::Disconnect() {
    CancelReopen();
    disconnect(m_listManager, nullptr, this, nullptr);
    QCoreApplication::removePostedEvents(this);
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
    m_deviceList = newList;
    const int wanted = IndexOfName(m_wantedName);
    MakeCurrent(wanted >= 0 ? wanted : 0);
    StartDevice();
    emit DeviceListChanged();
    emit SelectedIndexChanged();
}

void AudioDeviceManagerBase::TakeOverList(const QList<ExtAudioDeviceInfo> &newList) {
    const ListComparison found = compare(newList, m_deviceList, m_currentDevice);
    if (found.current >= 0 && !(m_isTrackChanges && found.added >= 0)) {
        m_deviceList = newList;
        m_selectedIndex = found.current;
        emit DeviceListChanged();
        emit SelectedIndexChanged();
        return;
    }
    StopDevice();
    const bool wasEmpty = m_deviceList.isEmpty();
    m_deviceList = newList;
    // With no device before, as when the sound server came late, the user's choice counts as it
    // does for the first list.
    const int wanted = wasEmpty ? IndexOfName(m_wantedName) : -1;
    const int added = found.added >= 0 ? found.added : 0;
    MakeCurrent(wanted >= 0 ? wanted : added);
    StartDevice();
    emit DeviceListChanged();
    emit SelectedIndexChanged();
    if (m_isTrackChanges)
        emit DeviceNotification();
}

int AudioDeviceManagerBase::IndexOfName(const QString &name) const {
    for (int i = 0; i < m_deviceList.size(); ++i) {
        if (m_deviceList[i].deviceName() == name)
            return i;
    }
    return -1;
}

void AudioDeviceManagerBase::MakeCurrent(int index) {
    const bool isInRange = index >= 0 && index < m_deviceList.size();
    m_selectedIndex = isInRange ? index : -1;
    m_currentDevice = isInRange ? m_deviceList[index] : ExtAudioDeviceInfo();
}
