#pragma once

#include "audio/AudioDeviceManagerBase.h"
#include "core/LoggingCategories.h"

#include <QCoreApplication>
#include <QDebug>

#include <memory>

/// Opens and closes the device object of one direction.
/// @tparam T  QAudioInput or QAudioOutput
template <typename T>
class AudioDeviceManager : public AudioDeviceManagerBase {
public:
    AudioDeviceManager(AudioListManager *listManager, QObject *parent)
        : AudioDeviceManagerBase(listManager, parent) {}

    void StopDevice() override {
        CancelReopen();
        if (!m_device)
            return;
        try {
            m_device->stop();
            CloseDevice();
        } catch (const std::exception &error) {
            qCDebug(audiodevlog) << error.what();
        }
    }

    void StartDevice() override {
        CancelReopen();
        const ExtAudioDeviceInfo device = CurrentDevice();
        if (device.isNull())
            return;
        MarkStart();
        try {
            m_device = CreateDevice(device);
            if (m_device)
                OnDeviceStart();
            else
                qCWarning(audiodevlog).noquote().nospace()
                    << "Cannot create audio device " << device.deviceName();
        } catch (const std::exception &error) {
            qCDebug(audiodevlog) << error.what();
            StopDevice();
            ReopenLater();
        }
    }

protected:
    void OnDeviceStart() override {}
    void OnDeviceStop() override {}
    T *CreateDevice(const ExtAudioDeviceInfo &device) override = 0;

    /// The live device, null while none is open.
    T *Device() const { return m_device; }
    /// Deletes the live device and those that wait for it. To be called by the destructor of the
    /// derived class: Qt's devices handle events while they are destroyed, and their signals need
    /// a whole receiver.
    void DestroyDevices() {
        StopDevice();
        Disconnect();
        while (T *device = this->template findChild<T *>(QString(), Qt::FindDirectChildrenOnly)) {
            device->disconnect(this);
            // Otherwise the events that it handles in its destructor would delete it once more.
            QCoreApplication::removePostedEvents(device, QEvent::DeferredDelete);
            const std::unique_ptr<T> destroyedHere(device);
        }
    }
    /// Forgets the live device, which has stopped already.
    void CloseDevice() {
        OnDeviceStop();
        m_device->deleteLater();
        m_device = nullptr;
    }

    /// How often the volume of the open device is read, in milliseconds.
    const int m_volumePollPeriodMs = 100;

private:
    T *m_device = nullptr;
};
