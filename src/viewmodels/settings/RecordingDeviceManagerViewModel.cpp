#include "viewmodels/settings/RecordingDeviceManagerViewModel.h"

#include "audio/RecordingDeviceManager.h"
#include "core/settings/RecordingDeviceSettings.h"

RecordingDeviceManagerViewModel::RecordingDeviceManagerViewModel(RecordingDeviceManager *manager,
                                                                 QObject *parent)
    : AudioDeviceListViewModel(manager, parent), m_recording(manager) {
    connect(this, &AudioDeviceListViewModel::changed_SelectedDeviceIndex, this,
            &RecordingDeviceManagerViewModel::changed_IsLastDeviceActive);
}

void RecordingDeviceManagerViewModel::Load() {
    AudioDeviceListViewModel::Load();
    connect(m_recording, &RecordingDeviceManager::CurrentLevelChanged, this,
            &RecordingDeviceManagerViewModel::changed_CurrentLevel, Qt::UniqueConnection);
    connect(m_recording, &RecordingDeviceManager::GainChanged, this,
            &RecordingDeviceManagerViewModel::changed_Gain, Qt::UniqueConnection);
    m_loadedGain = m_recording->Gain();
    const RecordingDeviceSettings settings;
    m_storedName = settings.Name;
    m_storedTrackChanges = settings.TrackChanges;
    emit changed_Gain();
    emit changed_CurrentLevel();
}

void RecordingDeviceManagerViewModel::Apply() {
    AudioDeviceListViewModel::Apply();
    m_recording->SaveSettings();
}

void RecordingDeviceManagerViewModel::Cancel() {
    AudioDeviceListViewModel::Cancel();
    m_recording->set_Gain(m_loadedGain);
    // Each move of the gain has stored the other choices as well.
    RecordingDeviceSettings settings;
    settings.Name = m_storedName;
    settings.TrackChanges = m_storedTrackChanges;
    settings.sync();
}

bool RecordingDeviceManagerViewModel::IsChanged() {
    return AudioDeviceListViewModel::IsChanged() || m_recording->Gain() != m_loadedGain;
}

int RecordingDeviceManagerViewModel::get_CurrentLevel() const {
    return m_recording->CurrentLevel();
}

int RecordingDeviceManagerViewModel::get_Gain() const {
    return m_recording->Gain();
}

void RecordingDeviceManagerViewModel::set_Gain(int gain) {
    if (gain != m_recording->Gain())
        m_recording->set_Gain(gain);
}
