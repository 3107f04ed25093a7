#pragma once

#include "audio/AudioListManager.h"
#include "audio/RecordingDeviceManager.h"
#include "commands/AutoReplaceManager.h"
#include "commands/UserCommandsManager.h"
#include "connection/ConnectionManager.h"
#include "connection/WebSocketWorker.h"
#include "core/workers/SubService.h"

#include <QList>

#include <memory>

class ConnectionHeartbeat;
class Stand;

/// A list of devices on a machine without any.
class NoDevices : public AudioListManager {
public:
    NoDevices() : AudioListManager(QAudio::AudioInput, nullptr) {}
};

/// The client's side of a connection, wired as the application wires it, with its threads running.
/// Sound is what a test emits as recording()'s SoundAvailable.
class ClientHarness : public QObject {
    Q_OBJECT

public:
    /// Starts from an empty settings file that points at the stand and asks for no theme.
    explicit ClientHarness(const Stand &stand);
    ~ClientHarness() override;

    void start();
    void stop();
    /// Starts, and waits until the client is ready.
    bool open();
    /// Starts to dictate, and waits until the server has.
    bool dictate();

    ConnectionManager *manager() const { return m_manager; }
    WebSocketWorker *worker() const { return m_worker; }
    ConnectionHeartbeat *heartbeat() const { return m_heartbeat; }
    AsrManager *asr() const { return m_worker->asrManager(); }
    UserCommandsManager &userCommands() { return m_userCommands; }
    RecordingDeviceManager &recording() { return m_recording; }

    /// All states so far.
    QList<int> states() const { return m_states; }
    /// Why the last pass failed.
    QString message() const { return m_message; }
    /// The numbers of the messages behind the last handshake, in their order.
    static QList<int> messages(const Stand &stand);
    /// Allows, or does not allow, what the user has switched on: to start and stop by voice.
    static void enableVoice(bool isAvailable = true);
    bool waitFor(ConnectionState state, int timeoutMs = 20000);
    /// Lets the next waitFor look at what comes from now on.
    void forget() { m_states.clear(); }

private:
    void onStateChanged(const ConnectionStateInfo &info);

    UserCommandsManager m_userCommands;
    AutoReplaceManager m_autoReplace;
    NoDevices m_noDevices;
    RecordingDeviceManager m_recording{&m_noDevices, nullptr};
    WebSocketWorker *m_worker;
    ConnectionManager *m_manager;
    ConnectionHeartbeat *m_heartbeat;
    std::unique_ptr<SubService> m_socketService;
    std::unique_ptr<SubService> m_managerService;
    std::unique_ptr<SubService> m_heartbeatService;
    QList<int> m_states;
    QString m_message;
};
