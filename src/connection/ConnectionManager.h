#pragma once

#include "connection/ConnectionStateInfo.h"
#include "connection/ServersConnectionSource.h"
#include "connection/messages/UserNotification.h"
#include "core/workers/BaseWorker.h"

#include <atomic>

class AsrManager;
class QTimer;
class RecordingDeviceManager;
class WebSocketClient;

/// Keeps the client connected: asks the balancer for servers, tries them in turn, brings a new
/// connection to the point where recognition can start, and starts over when it is lost.
///
/// A worker with a thread of its own, on which all slots run but two: onUserNotification runs on
/// the socket's thread, SoundAvailable on that of its sender. state() may be read from any thread.
/// The collaborators are not owned and outlive this object.
class ConnectionManager : public BaseWorker {
    Q_OBJECT

public:
    ConnectionManager(WebSocketClient *webSocketClient, AsrManager *asrManager,
                      RecordingDeviceManager *recordingDevice);

    ConnectionState state() const { return m_state; }

    /// The pause before a new pass, milliseconds; to be set before the worker starts.
    void setReconnectDelay(int milliseconds) { m_reconnectDelay = milliseconds; }

public slots:
    void onWebSocketConnected();
    void onWebSocketDisconnect();
    void onDisconnectRequested();
    /// As onDisconnectRequested(), unless that connection has ended by now.
    void onLinkDead(int connectionNumber);
    void onUserNotification(const UserNotification &notification);
    void onReceivedVACSettingsFromBalancer(bool enableVAC, bool receivedFromBalancer);
    void onThemeCheckSuccess();
    void onNetworkSettingsChanged();
    /// Hands a block of microphone sound on to the server, while the server is to have it.
    void SoundAvailable(const QByteArray &data);
    void onStop() override;

signals:
    void stateChanged(ConnectionStateInfo stateInfo);
    void themeCheckRequested();
    void disconnected();
    void vacStateChanged(bool enableVAC, bool receivedFromBalancer);
    /// No server is left in this pass.
    void outOfServers();

protected:
    void process(CancellationCondition *cancellation) override;

private:
    void startConnection();
    void tryStartNextWsConnection();
    void giveUpPass();
    bool tryStartServer(const ServerInfoDTO &server);
    bool openServer(const ServerInfoDTO &server);
    void logServerError(int stateOnEntry, const QString &reason) const;
    bool addressServer(const ServerInfoDTO &server);
    void applyState(ConnectionState newState, const QString &message = QString());
    void publishState(ConnectionState oldState, const QString &message);
    void onModeStarted();
    void checkThemes();
    bool isCancelled() const;
    void setDone();
    void logFailure(const char *what, const QString &text) const;

    int m_reconnectDelay = 30000;
    std::atomic<ConnectionState> m_state{ConnectionState::Disconnected};
    WebSocketClient *m_webSocketClient;
    AsrManager *m_asrManager;
    RecordingDeviceManager *m_recordingDevice;
    CancellationCondition *m_cancellation = nullptr;
    ServersConnectionSource m_serversSource;
    /// The server last tried.
    QString m_currentServerId;
    std::atomic<bool> m_themesChecked{false};
    /// The socket was asked to open and has not reported its end yet.
    bool m_isSocketInUse = false;
    QTimer *m_reconnectTimer;
};
