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
    /// with an empty list, so that those who wait for it know that there is nothing to open. A
    /// device that stays keeps its description.
    /// @param available  the devices that are plugged now
    void UpdateDeviceList(const QList<ExtAudioDeviceInfo> &available);

signals:
    void DeviceListChanged();

protected:
    QAudio::Mode Mode() const { return m_mode; }
    /// Whether nothing has been published so far.
    bool IsFirstTime() const { return m_isFirstTime; }

private:
    const QAudio::Mode m_mode;
    mutable QMutex m_mutex;
    QList<ExtAudioDeviceInfo> m_list;
    bool m_isFirstTime = true;
};
