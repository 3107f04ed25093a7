#include "audio/AudioListManager.h"

#include <QMutexLocker>

AudioListManager::AudioListManager(QAudio::Mode mode, QObject *parent)
    : QObject(parent), m_mode(mode) {}

QList<ExtAudioDeviceInfo> AudioListManager::DeviceList() const {
    const QMutexLocker locker(&m_mutex);
    return m_list;
}

void AudioListManager::UpdateDeviceList(const QList<ExtAudioDeviceInfo> &available) {
    const QList<ExtAudioDeviceInfo> oldList = DeviceList();
    if (available == oldList && !m_isFirstTime)
        return;
    QList<ExtAudioDeviceInfo> newList;
    for (const ExtAudioDeviceInfo &device : available) {
        const int known = oldList.indexOf(device);
        newList.append(known >= 0 ? oldList[known] : device);
    }
    QMutexLocker locker(&m_mutex);
    m_list.swap(newList);
    m_isFirstTime = false;
    locker.unlock();
    emit DeviceListChanged();
}
