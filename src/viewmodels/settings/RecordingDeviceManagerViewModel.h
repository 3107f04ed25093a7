#pragma once

#include "viewmodels/settings/AudioDeviceListViewModel.h"

class RecordingDeviceManager;

/// Microphone, its gain and its level. Main thread.
class RecordingDeviceManagerViewModel : public AudioDeviceListViewModel {
    Q_OBJECT
    /// Level of the last block of sound, 0 to 100.
    Q_PROPERTY(int CurrentLevel READ get_CurrentLevel NOTIFY changed_CurrentLevel)
    /// Input volume in percent; takes effect at once, and is stored by Apply().
    Q_PROPERTY(int Gain READ get_Gain WRITE set_Gain NOTIFY changed_Gain)
    /// The microphone that was in use when the page was opened still is.
    Q_PROPERTY(
        bool IsLastDeviceActive READ get_IsLastDeviceActive NOTIFY changed_IsLastDeviceActive)

public:
    /// @param manager  not owned, outlives this object
    /// @throws std::invalid_argument  the manager is null
    RecordingDeviceManagerViewModel(RecordingDeviceManager *manager, QObject *parent);

    void Load() override;
    void Apply() override;
    void Cancel() override;
    bool IsChanged() override;

    int get_CurrentLevel() const;
    int get_Gain() const;
    void set_Gain(int gain);
    bool get_IsLastDeviceActive() const { return selectedName() == loadedName(); }

signals:
    void changed_CurrentLevel();
    void changed_Gain();
    void changed_IsLastDeviceActive();

private:
    RecordingDeviceManager *m_recording;
    int m_loadedGain = 0;
    QString m_storedName;
    bool m_storedTrackChanges = false;
};
