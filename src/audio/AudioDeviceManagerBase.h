#pragma once

#include "audio/ExtAudioDeviceInfo.h"

#include <QAudio>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>

class AudioListManager;
class SoundStream;

/// Keeps one audio device selected while devices come and go, and has a stream keep it open.
///
/// The wanted device is the one that the user chose. While it is not plugged, another one takes its
/// place, until it comes back. What appears soon after there was nothing belongs to a server that
/// starts, and is not newly plugged. Lives on the main thread, all of it, and never waits for the
/// sound server: what it asks of the stream is done on the thread of the sound.
class AudioDeviceManagerBase : public QObject {
    Q_OBJECT

public:
    /// @param listManager  source of the device list, not owned, outlives this object
    AudioDeviceManagerBase(AudioListManager *listManager, QObject *parent);

    /// Closes the device; the selection stays.
    void StopDevice() { emit CloseRequested(); }
    /// Opens the current device, if there is one, and has it kept open.
    void StartDevice();

    QList<ExtAudioDeviceInfo> DeviceList() const { return m_deviceList; }
    /// A null device if none is selected.
    ExtAudioDeviceInfo CurrentDevice() const { return m_currentDevice; }
    /// The sound server's name for the device that the user chose; empty if he never did.
    QString WantedName() const { return m_wantedName; }
    /// Position of the current device in the list, -1 if none is selected.
    int SelectedIndex() const { return m_selectedIndex; }
    /// Selects the entry, as the user does; an index out of range selects nothing.
    void set_SelectedIndex(int index);
    /// Whether a newly plugged device becomes the current one.
    bool IsTrackChanges() const { return m_isTrackChanges; }
    void set_IsTrackChanges(bool isTrackChanges);
    /// How long a server that starts may take to list all its devices, in milliseconds.
    void set_StartLimit(int limitMs) { m_startLimitMs = limitMs; }

    /// Wants the device of this name, and selects it or, while there is none, the first of all.
    /// Before the first list the name is only kept for it. An empty name wants none in particular.
    void SelectDevice(const QString &name);

public slots:
    void audiolistmanager_DeiceListChanged();
    virtual void OnDeviceStateChanged(QAudio::State state);

signals:
    void DeviceListChanged();
    void SelectedIndexChanged();
    /// The current device is another one, which the user did not ask for.
    void DeviceNotification();
    void IsTrackChangesChanged();
    void DeviceError(QAudio::Error error);
    void DeviceStopped();

    /// To the stream.
    void OpenRequested(const ExtAudioDeviceInfo &device);
    void CloseRequested();
    void VolumeRequested(int percent);

protected:
    /// Has this stream do what is asked for. It may live on another thread.
    void ConnectStream(SoundStream *stream);

private:
    void TakeOverList(const QList<ExtAudioDeviceInfo> &newList);
    void TakeOverFirstList(const QList<ExtAudioDeviceInfo> &newList);
    int IndexOfName(const QString &name) const;
    /// Opens the entry in place of the current device; an index out of range opens nothing.
    void SwitchTo(int index);

    AudioListManager *m_listManager;
    QList<ExtAudioDeviceInfo> m_deviceList;
    ExtAudioDeviceInfo m_currentDevice;
    int m_selectedIndex = -1;
    bool m_isTrackChanges = false;
    bool m_isListKnown = false;
    QString m_wantedName;
    /// Since the first list, or the first with a device after an empty one.
    QElapsedTimer m_sinceStart;
    int m_startLimitMs = 5000;
};
