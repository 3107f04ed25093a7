#pragma once

#include <QObject>
#include <QThread>

#include <memory>

class AudioListManager;
class PlaybackDeviceManager;
class PlaybackStream;
class PulseConnection;
class RecordingDeviceManager;
class RecordingStream;

/// The sound of the program: the device lists, the devices, and the thread "AudioManager", on which
/// all that has to do with the sound server runs. Everything here belongs to the main thread, which
/// never waits for that server.
class PulseAudioManager : public QObject {
    Q_OBJECT

public:
    explicit PulseAudioManager(QObject *parent = nullptr);
    ~PulseAudioManager() override;

    /// Loads the settings of the devices and connects to the sound server.
    void Start();
    /// Closes the devices and ends the thread; may be called again. A thread that does not end is
    /// left behind, with all that it may touch.
    void Stop();

    AudioListManager *InputListManager() const { return m_inputListManager; }
    AudioListManager *OutputListManager() const { return m_outputListManager; }
    RecordingDeviceManager *RecordingDevice() const { return m_recordingDevice.get(); }
    PlaybackDeviceManager *PlaybackDevice() const { return m_playbackDevice.get(); }

private:
    std::unique_ptr<QThread> m_thread;
    /// Each with its list and its stream as children; on the thread while that runs.
    std::unique_ptr<PulseConnection> m_input;
    std::unique_ptr<PulseConnection> m_output;
    AudioListManager *m_inputListManager;
    AudioListManager *m_outputListManager;
    std::unique_ptr<RecordingDeviceManager> m_recordingDevice;
    std::unique_ptr<PlaybackDeviceManager> m_playbackDevice;
};
