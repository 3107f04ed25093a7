#include "audio/AudioListManager.h"

#include <QMutexLocker>

#include <algorithm>

AudioListManager::AudioListManager(QAudio::Mode mode, QObject *parent)
    : QObject(parent), m_mode(mode) {}

QList<ExtAudioDeviceInfo> AudioListManager::DeviceList() const {
    const QMutexLocker locker(&m_mutex);
    return m_list;
}

void AudioListManager::UpdateDeviceList() {
    QList<ExtAudioDeviceInfo> oldList = DeviceList();
    QList<ExtAudioDeviceInfo> newList;
    bool changed = false;
    const QList<QAudioDeviceInfo> available = AvailableDevices();
    for (const QAudioDeviceInfo &device : available) {
        const auto known = std::find(oldList.begin(), oldList.end(), device);
        if (known != oldList.end()) {
            changed = changed || known != oldList.begin();
            newList.append(*known);
            oldList.erase(known);
            continue;
        }
        const ExtAudioDeviceInfo added = CreateExtDeviceInfo(device);
        if (added.isNull())
            continue;
        newList.append(added);
        changed = true;
    }
    changed = changed || !oldList.isEmpty();

    QMutexLocker locker(&m_mutex);
    if (!changed && !m_isFirstTime)
        return;
    m_list.swap(newList);
    m_isFirstTime = false;
    locker.unlock();
    emit DeviceListChanged();
}
