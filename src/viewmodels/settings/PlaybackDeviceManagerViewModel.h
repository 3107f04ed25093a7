#pragma once

#include "viewmodels/settings/AudioDeviceListViewModel.h"

class PlaybackDeviceManager;

/// Speaker and its level. Main thread.
class PlaybackDeviceManagerViewModel : public AudioDeviceListViewModel {
    Q_OBJECT
    /// Level of what is played, 0 to 100.
    Q_PROPERTY(int CurrentLevel READ get_CurrentLevel NOTIFY changed_CurrentLevel)

public:
    /// @param manager  not owned, outlives this object
    /// @throws std::invalid_argument  the manager is null
    PlaybackDeviceManagerViewModel(PlaybackDeviceManager *manager, QObject *parent);

    void Load() override;
    void Apply() override;

    int get_CurrentLevel() const;

signals:
    void changed_CurrentLevel();

private:
    PlaybackDeviceManager *m_playback;
};
