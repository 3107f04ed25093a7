#include "viewmodels/settings/AudioDeviceListViewModel.h"

#include "audio/AudioDeviceManagerBase.h"

#include <QScopedValueRollback>

#include <stdexcept>

AudioDeviceListViewModel::AudioDeviceListViewModel(AudioDeviceManagerBase *manager, QObject *parent)
    : SettingsViewModel(parent), m_manager(manager) {
    if (!manager)
        throw std::invalid_argument("Device manager in null");
}

void AudioDeviceListViewModel::Load() {
    SettingsViewModel::Load();
    connect(m_manager, &AudioDeviceManagerBase::DeviceListChanged, this,
            &AudioDeviceListViewModel::onDeviceListChanged, Qt::UniqueConnection);
    connect(m_manager, &AudioDeviceManagerBase::SelectedIndexChanged, this,
            &AudioDeviceListViewModel::changed_SelectedDeviceIndex, Qt::UniqueConnection);
    connect(m_manager, &AudioDeviceManagerBase::IsTrackChangesChanged, this,
            &AudioDeviceListViewModel::changed_IsTrackChanges, Qt::UniqueConnection);
    m_loadedTrackChanges = m_manager->IsTrackChanges();
    m_loadedName = selectedName();
    m_loadedWantedName = m_manager->WantedName();
    onDeviceListChanged();
}

void AudioDeviceListViewModel::Unload() {
    disconnect(m_manager, nullptr, this, nullptr);
    SettingsViewModel::Unload();
}

void AudioDeviceListViewModel::Cancel() {
    SettingsViewModel::Cancel();
    m_manager->set_IsTrackChanges(m_loadedTrackChanges);
    // Devices that came and went meanwhile have changed nothing about the user's choice.
    if (m_manager->WantedName() != m_loadedWantedName)
        m_manager->SelectDevice(m_loadedWantedName);
}

bool AudioDeviceListViewModel::IsChanged() {
    return SettingsViewModel::IsChanged() || m_manager->IsTrackChanges() != m_loadedTrackChanges ||
           m_manager->WantedName() != m_loadedWantedName;
}

QString AudioDeviceListViewModel::selectedName() const {
    return m_manager->CurrentDevice().deviceName();
}

int AudioDeviceListViewModel::get_SelectedDeviceIndex() const {
    return m_manager->SelectedIndex();
}

void AudioDeviceListViewModel::set_SelectedDeviceIndex(int index) {
    if (!m_isListChanging)
        m_manager->set_SelectedIndex(index);
}

bool AudioDeviceListViewModel::get_IsTrackChanges() const {
    return m_manager->IsTrackChanges();
}

void AudioDeviceListViewModel::set_IsTrackChanges(bool isTrackChanges) {
    m_manager->set_IsTrackChanges(isTrackChanges);
}

void AudioDeviceListViewModel::onDeviceListChanged() {
    const QScopedValueRollback<bool> changing(m_isListChanging, true);
    m_devices.clear();
    const QList<ExtAudioDeviceInfo> devices = m_manager->DeviceList();
    for (const ExtAudioDeviceInfo &device : devices)
        m_devices << device.Description();
    emit changed_Devices();
    // A view that has begun again at its first row is to go back.
    emit changed_SelectedDeviceIndex();
}
