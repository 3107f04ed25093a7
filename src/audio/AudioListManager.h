#pragma once

#include "audio/ExtAudioDeviceInfo.h"

#include <QAudio>
#include <QList>
#include <QMutex>
#include <QObject>

/// Keeps the list of audio devices of one direction, with names for display.
///
/// DeviceList() may be called from any thread; everything else belongs to this object's thread.
class AudioListManager : public QObject {
    Q_OBJECT

public:
    AudioListManager(QAudio::Mode mode, QObject *parent);

    /// A copy of the list as it was published last.
    QList<ExtAudioDeviceInfo> DeviceList() const;

    /// Brings the list up to date and publishes it if it changed. The first publication comes even
    /// with an empty list, so that those who wait for it know that there is nothing to open.
    void UpdateDeviceList();

signals:
    void DeviceListChanged();
    /// The list tells what is plugged now, changed or not. Comes behind DeviceListChanged.
    void Refreshed();

protected:
    /// The device with its description, or a null one to leave it out of the list.
    virtual ExtAudioDeviceInfo CreateExtDeviceInfo(const QAudioDeviceInfo &device) = 0;
    /// The devices that are plugged now.
    virtual QList<QAudioDeviceInfo> AvailableDevices() = 0;

    QAudio::Mode Mode() const { return m_mode; }

private:
    const QAudio::Mode m_mode;
    mutable QMutex m_mutex;
    QList<ExtAudioDeviceInfo> m_list;
    bool m_isFirstTime = true;
};
