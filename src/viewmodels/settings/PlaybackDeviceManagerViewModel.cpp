#include "viewmodels/settings/PlaybackDeviceManagerViewModel.h"

#include "audio/PlaybackDeviceManager.h"

PlaybackDeviceManagerViewModel::PlaybackDeviceManagerViewModel(PlaybackDeviceManager *manager,
                                                               QObject *parent)
    : AudioDeviceListViewModel(manager, parent), m_playback(manager) {}

void PlaybackDeviceManagerViewModel::Load() {
    AudioDeviceListViewModel::Load();
    connect(m_playback, &PlaybackDeviceManager::CurrentLevelChanged, this,
            &PlaybackDeviceManagerViewModel::changed_CurrentLevel, Qt::UniqueConnection);
    emit changed_CurrentLevel();
}

void PlaybackDeviceManagerViewModel::Apply() {
    AudioDeviceListViewModel::Apply();
    m_playback->SaveSettings();
}

int PlaybackDeviceManagerViewModel::get_CurrentLevel() const {
    return m_playback->CurrentLevel();
}
