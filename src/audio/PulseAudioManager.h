#pragma once

#include "audio/PaUtils.h"
#include "audio/PulseDeviceInfo.h"
#include "audio/QtSoundConnection.h"

#include <QAudio>
#include <QObject>
#include <QSet>
#include <QThread>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>

class PlaybackDeviceManager;
class PulseAudioListManager;
class RecordingDeviceManager;

/// The connection to PulseAudio, the device lists and the devices.
///
/// To be made and destroyed on the main thread, where the device managers live. Between Start()
/// and Stop() this object and the device lists live on the thread "AudioManager". Without
/// PulseAudio the lists are empty, and a connection is tried once a second.
class PulseAudioManager : public QObject {
    Q_OBJECT

public:
    /// @param parent  null for a manager that is to be started: it changes its thread
    explicit PulseAudioManager(QObject *parent = nullptr);
    ~PulseAudioManager() override;

    /// Loads the settings of the devices and asks for the first lists.
    void Start();
    /// Ends the thread and closes the devices; may be called again.
    void Stop();

    PulseAudioListManager *InputListManager() const { return m_inputListManager; }
    PulseAudioListManager *OutputListManager() const { return m_outputListManager; }
    RecordingDeviceManager *RecordingDevice() const { return m_recordingDevice.get(); }
    PlaybackDeviceManager *PlaybackDevice() const { return m_playbackDevice.get(); }

    /// Looks a device up by its name; blocks until PulseAudio has answered. Any thread.
    PulseDeviceInfo GetDeviceInfo(QAudio::Mode mode, const QString &name);
    PulseDeviceInfo GetInputDeviceInfo(const QString &name);
    PulseDeviceInfo GetOutputDeviceInfo(const QString &name);
    /// The names of all devices of a direction; nothing if PulseAudio does not answer. Any thread.
    std::optional<QSet<QString>> GetDeviceNames(QAudio::Mode mode);

    /// Whether Qt may be asked for its devices. Any thread.
    bool IsQtConnected() const { return m_qtConnection.IsConnected(); }

public slots:
    /// Connects, unless there is a connection.
    void Init();
    /// Gives the connection up.
    void Cleanup();
    /// Gives the connection up and connects again in a while.
    void onContextFailed();

signals:
    // Emitted on the thread of PulseAudio's main loop.
    void inputDeviceAdded(uint32_t index);
    void inputDeviceRemoved(uint32_t index);
    void inputDeviceChanged(uint32_t index);
    void outputDeviceAdded(uint32_t index);
    void outputDeviceRemoved(uint32_t index);
    void outputDeviceChanged(uint32_t index);

private:
    void StartMainLoop();
    pa_utils::ContextRef Connect();
    /// Logs why there is no connection, unless the try before failed alike.
    void reportFailure(const QString &text);
    bool WaitUntilReady(pa_context *context);
    void Subscribe(pa_context *context);
    void OnConnected();
    bool IsConnected();
    void ConnectEvents();
    void DisconnectEvents();

    static constexpr int reconnectDelayMs = 1000;

    pa_threaded_mainloop *m_mainLoop = nullptr;
    /// Null while not connected; touched under the main loop's lock only.
    pa_context *m_context = nullptr;
    QString m_lastFailure;
    QThread m_thread;
    QTimer m_reconnectTimer{this};
    /// Stays on the main thread, as Qt's engine does.
    QtSoundConnection m_qtConnection;
    PulseAudioListManager *m_inputListManager;
    PulseAudioListManager *m_outputListManager;
    std::unique_ptr<RecordingDeviceManager> m_recordingDevice;
    std::unique_ptr<PlaybackDeviceManager> m_playbackDevice;
};
