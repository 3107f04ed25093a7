#pragma once

#include "viewmodels/AppSettingsViewModel.h"
#include "viewmodels/settings/PlaybackDeviceManagerViewModel.h"
#include "viewmodels/settings/RecordingDeviceManagerViewModel.h"

/// The page "Звук": microphone and speaker. Main thread.
class AudioDeviceSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(RecordingDeviceManagerViewModel *RecordingDevice READ get_RecordingDevice CONSTANT)
    Q_PROPERTY(PlaybackDeviceManagerViewModel *PlaybackDevice READ get_PlaybackDevice CONSTANT)

public:
    /// The managers are not owned and outlive this object.
    AudioDeviceSettingsViewModel(RecordingDeviceManager *recording, PlaybackDeviceManager *playback,
                                 QObject *parent = nullptr)
        : AppSettingsViewModel(tr("Звук"), false, parent),
          m_recording(recording, this),
          m_playback(playback, this) {
        addPage(&m_recording);
        addPage(&m_playback);
    }

    RecordingDeviceManagerViewModel *get_RecordingDevice() { return &m_recording; }
    PlaybackDeviceManagerViewModel *get_PlaybackDevice() { return &m_playback; }

private:
    RecordingDeviceManagerViewModel m_recording;
    PlaybackDeviceManagerViewModel m_playback;
};
