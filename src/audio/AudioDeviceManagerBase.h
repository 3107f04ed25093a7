#pragma once

#include "audio/ExtAudioDeviceInfo.h"

#include <QAudio>
#include <QAudioFormat>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QTimer>

class AudioListManager;

/// Keeps one audio device selected and open while devices come and go.
///
/// Lives on the main thread, all of it.
class AudioDeviceManagerBase : public QObject {
    Q_OBJECT

public:
    /// @param listManager  source of the device list, not owned, outlives this object
    AudioDeviceManagerBase(AudioListManager *listManager, QObject *parent);

    /// The device that the system prefers.
    virtual ExtAudioDeviceInfo DefaultDevice() const = 0;
    /// Closes the device; the selection stays.
    virtual void StopDevice() = 0;
    /// Opens the current device. A device that does not open is tried again once a second, until
    /// StopDevice.
    virtual void StartDevice() = 0;

    QList<ExtAudioDeviceInfo> DeviceList() const { return m_deviceList; }
    /// A null device if none is selected.
    ExtAudioDeviceInfo CurrentDevice() const { return m_currentDevice; }
    /// Position of the current device in the list, -1 if none is selected.
    int SelectedIndex() const { return m_selectedIndex; }
    /// Selects the entry; an index out of range selects nothing.
    void set_SelectedIndex(int index);
    /// Whether a newly plugged device becomes the current one.
    bool IsTrackChanges() const { return m_isTrackChanges; }
    void set_IsTrackChanges(bool isTrackChanges);

    /// Selects the first device of this name, or the first of all if there is none. Before the
    /// first list the name is only kept for it.
    void SelectDevice(const QString &name);
    /// The sound server is gone. Until the list is looked at anew nobody knows which devices there
    /// are, and nothing is opened.
    void OnServerLost() { m_isListStale = true; }

public slots:
    void audiolistmanager_DeiceListChanged();
    virtual void OnDeviceStateChanged(QAudio::State state) = 0;

signals:
    void DeviceListChanged();
    void SelectedIndexChanged();
    /// The current device is another one, which the user did not ask for.
    void DeviceNotification();
    void IsTrackChangesChanged();
    void DeviceError(QAudio::Error error);
    void DeviceStopped();

protected:
    static constexpr auto queuedAndUnique =
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::UniqueConnection);

    /// One channel, 16-bit signed little-endian.
    /// @param sampleRate  Hz
    static QAudioFormat speechFormat(int sampleRate);

    virtual void OnDeviceStart() = 0;
    virtual void OnDeviceStop() = 0;
    /// @return the device object, a child of this one, or null
    virtual QObject *CreateDevice(const ExtAudioDeviceInfo &device) = 0;

    /// Opens the device anew: at once after a second of life, otherwise after a second, so that a
    /// device that goes on failing does not take the whole main thread.
    void Reopen();
    /// Opens the device after a second, unless it is stopped before.
    void ReopenLater() { m_reopenTimer.start(); }
    /// To be called whenever an attempt to open begins or is called off.
    void CancelReopen() { m_reopenTimer.stop(); }
    /// From here on nothing reaches this object any more, not even what is on its way.
    void Disconnect();
    void MarkStart() { m_sinceStart.start(); }

private:
    void OnListRefreshed();
    /// Opens the device, or waits on until it is known to exist: Qt waits for ever for one that
    /// does not.
    void TryToReopen();
    void TakeOverList(const QList<ExtAudioDeviceInfo> &newList);
    void TakeOverFirstList(const QList<ExtAudioDeviceInfo> &newList);
    int IndexOfName(const QString &name) const;
    /// Makes the entry current; an index out of range clears the current device.
    void MakeCurrent(int index);

    AudioListManager *m_listManager;
    QList<ExtAudioDeviceInfo> m_deviceList;
    ExtAudioDeviceInfo m_currentDevice;
    int m_selectedIndex = -1;
    bool m_isTrackChanges = false;
    bool m_isListKnown = false;
    bool m_isListStale = false;
    QString m_wantedName;
    QTimer m_reopenTimer{this};
    QElapsedTimer m_sinceStart;
};
