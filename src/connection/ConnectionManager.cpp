#include "connection/ConnectionManager.h"

#include "audio/RecordingDeviceManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "core/LoggingCategories.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/ServersConnectionSettings.h"
#include "recognition/AsrManager.h"

#include <QDebug>
#include <QThread>
#include <QTimer>

namespace {

void printThreadName(const char *text) {
    qInfo().noquote() << text << "thread name:" << QThread::currentThread()->objectName();
}

int number(ConnectionState state) {
    return static_cast<int>(state);
}

} // namespace

ConnectionManager::ConnectionManager(WebSocketClient *webSocketClient, AsrManager *asrManager,
                                     RecordingDeviceManager *recordingDevice)
    : m_webSocketClient(webSocketClient),
      m_asrManager(asrManager),
      m_recordingDevice(recordingDevice),
      m_reconnectTimer(new QTimer(this)) {
    qRegisterMetaType<ConnectionStateInfo>("ConnectionStateInfo");
    m_serversSource.setListRefreshTimeout(ServersConnectionSettings().ServersListRefreshMinTimeout);
    m_reconnectTimer->setSingleShot(true);

    connect(m_reconnectTimer, &QTimer::timeout, this, &ConnectionManager::startConnection);
    connect(webSocketClient, &WebSocketConnection::connected, this,
            &ConnectionManager::onWebSocketConnected);
    connect(webSocketClient, &WebSocketConnection::disconnected, this,
            &ConnectionManager::onWebSocketDisconnect);
    // Takes effect before the next frame is parsed. A blocking call to this thread would never
    // return while the thread waits for a REST answer or has ended, hence the direct one.
    connect(webSocketClient->messageProcessor(), &DataMessageProcessor::userNotified, this,
            &ConnectionManager::onUserNotification, Qt::DirectConnection);
    connect(&m_serversSource, &ServersConnectionSource::ReceivedVACSettingsFromBalancer, this,
            &ConnectionManager::onReceivedVACSettingsFromBalancer, Qt::DirectConnection);
    connect(this, &ConnectionManager::stateChanged, asrManager,
            &AsrManager::connectionStateChanged);
    connect(this, &ConnectionManager::outOfServers, asrManager, &AsrManager::resetModes);
}

bool ConnectionManager::isCancelled() const {
    return !m_cancellation || m_cancellation->isCanceled;
}

void ConnectionManager::setDone() {
    if (!m_cancellation) {
        m_isDone = true;
        return;
    }
    const QMutexLocker locker(&m_cancellation->mutex);
    m_isDone = true;
}

void ConnectionManager::process(CancellationCondition *cancellation) {
    m_cancellation = cancellation;
    if (isCancelled())
        return;
    printThreadName("process run");
    startConnection();
}

void ConnectionManager::startConnection() {
    qInfo() << "Connection: start connection";
    // First: where the socket of the life before has not ended yet, that end leads on from here.
    m_serversSource.Reset();
    if (m_state != ConnectionState::Failed && m_state != ConnectionState::Disconnected)
        return;
    m_reconnectTimer->stop();
    qInfo() << "Connection:  balancer request";
    applyState(ConnectionState::BalancerRequested);
    tryStartNextWsConnection();
}

void ConnectionManager::tryStartNextWsConnection() {
    m_currentServerId.clear();
    applyState(ConnectionState::WsConnectionRequested);
    auto server = m_serversSource.GetNextServer();
    for (; server && !isCancelled(); server = m_serversSource.GetNextServer()) {
        const DisconnectStatus status = m_serversSource.storage().GetStatus(server->serverId());
        qInfo().noquote().nospace() << "Connection: server status " << server->connectionString()
                                    << " " << static_cast<int>(status);
        if (status == DisconnectStatus::None && tryStartServer(*server))
            return;
    }
    if (isCancelled()) {
        // No socket will report an end, so the next start must not wait for one.
        applyState(ConnectionState::Disconnected);
        setDone();
        return;
    }
    giveUpPass();
}

void ConnectionManager::giveUpPass() {
    qInfo() << "Connection: out of servers ";
    emit outOfServers();
    applyState(ConnectionState::Failed, m_serversSource.lastServerCount() < 1
                                            ? tr("Не удалось получить список серверов")
                                            : tr("Не удалось подключиться к серверу"));
    m_reconnectTimer->start(m_reconnectDelay);
}

bool ConnectionManager::addressServer(const ServerInfoDTO &server) {
    const QStringList parts = server.connectionString().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    if (parts.size() < 3) {
        qCWarning(connectionManagerLog).noquote()
            << "Unusable connection string:" << server.connectionString();
        return false;
    }
    ClientConnectionSettings settings;
    settings.Ip.ChangeValue(parts[0]);
    settings.Port.ChangeValue(parts[1].toInt());
    settings.RestPort.ChangeValue(parts[2].toInt());
    settings.UseTls.ChangeValue(BalancerConnectionSettings().UseTls);
    return true;
}

bool ConnectionManager::tryStartServer(const ServerInfoDTO &server) {
    const int stateOnEntry = number(m_state);
    try {
        return openServer(server);
    } catch (const std::exception &error) {
        logServerError(stateOnEntry, QStringLiteral(":\n") + QString::fromUtf8(error.what()));
    } catch (...) {
        logServerError(stateOnEntry, QString());
    }
    return false;
}

bool ConnectionManager::openServer(const ServerInfoDTO &server) {
    if (!addressServer(server))
        return false;
    printThreadName("startWsConnection");
    qInfo() << "Connection:  WsConnectionRequested";
    applyState(ConnectionState::WsConnectionRequested);
    const ClientConnectionSettings settings;
    if (settings.isLocalhost() && settings.Port == FormApiSettings().Port)
        return false;
    m_currentServerId = server.serverId();
    qInfo().noquote().nospace() << "Connection: ws open " << settings.Ip.get() << ":"
                                << settings.Port.get();
    m_isSocketInUse = true;
    emit m_webSocketClient->open(settings.Ip, settings.Port, settings.UseTls);
    return true;
}

void ConnectionManager::logServerError(int stateOnEntry, const QString &reason) const {
    qCWarning(connectionManagerLog).noquote().nospace()
        << "ConnectionManager error[" << stateOnEntry << " -> " << number(m_state) << "]" << reason;
}

void ConnectionManager::logFailure(const char *what, const QString &text) const {
    qCWarning(connectionManagerLog).noquote().nospace()
        << what << text << "\n\n connection state: " << number(m_state);
}

void ConnectionManager::onWebSocketConnected() {
    printThreadName("Websocket connected");
    if (isCancelled())
        return;
    try {
        const ClientConnectionSettings settings;
        if (settings.isLocalhost() && settings.RestPort == FormApiSettings().RestPort) {
            onDisconnectRequested();
            return;
        }
        applyState(ConnectionState::WsConnected);
    } catch (const std::exception &error) {
        logFailure("Error on ws connect:", QString::fromUtf8(error.what()));
    } catch (...) {
        logFailure("Unknown error on ws connect:", QString());
    }
}

void ConnectionManager::applyState(ConnectionState newState, const QString &message) {
    const ConnectionState oldState = m_state;
    if (newState == oldState)
        return;
    m_state = newState;
    printThreadName("stateChanged");
    qInfo().nospace() << "stateChanged from " << number(oldState) << " to " << number(newState);
    if (newState == ConnectionState::Disconnected && !m_currentServerId.isEmpty() &&
        m_serversSource.storage().GetStatus(m_currentServerId) == DisconnectStatus::None) {
        m_serversSource.storage().SetStatus(m_currentServerId, DisconnectStatus::ConnectionLost);
    }
    if (newState == ConnectionState::Disconnected) {
        m_webSocketClient->endConnection();
        disconnect(m_recordingDevice, &RecordingDeviceManager::SoundAvailable, this,
                   &ConnectionManager::SoundAvailable);
        // Ahead of the state, whose receivers forget where the last words are to be typed.
        emit disconnected();
    }
    publishState(oldState, message);
    switch (newState) {
    case ConnectionState::WsConnected:
        onModeStarted();
        break;
    case ConnectionState::Ready:
        // Most blocks are not wanted, and need not wake this thread.
        connect(m_recordingDevice, &RecordingDeviceManager::SoundAvailable, this,
                &ConnectionManager::SoundAvailable, Qt::DirectConnection);
        break;
    default:
        break;
    }
}

void ConnectionManager::publishState(ConnectionState oldState, const QString &message) {
    ConnectionStateInfo info;
    info.setOldState(number(oldState));
    info.setState(number(m_state));
    info.setMessage(message);
    info.setBalancerHost(BalancerConnectionSettings().Ip);
    info.setServerHost(ClientConnectionSettings().Ip);
    info.setConnectionNumber(m_webSocketClient->connectionNumber());
    emit stateChanged(info);
}

void ConnectionManager::onModeStarted() {
    if (isCancelled())
        return;
    try {
        applyState(ConnectionState::ThemesRequested);
        m_asrManager->get_Themes(true);
        applyState(ConnectionState::ThemesReceived);
        if (isCancelled())
            return;
        checkThemes();
        return;
    } catch (const std::exception &error) {
        logFailure("Error on starting mode:", QString::fromUtf8(error.what()));
    } catch (...) {
        logFailure("Unknown error starting mode:", QString());
    }
    onDisconnectRequested();
}

void ConnectionManager::checkThemes() {
    if (ConnectionManagerSettings().QuietConnectionEnabled || ASRSettings().IsThemeAutoSelect ||
        m_themesChecked) {
        m_themesChecked = true;
        applyState(ConnectionState::Ready);
    } else {
        applyState(ConnectionState::ThemeCheckRequested);
        emit themeCheckRequested();
    }
}

void ConnectionManager::onThemeCheckSuccess() {
    if (isCancelled() || m_state != ConnectionState::ThemeCheckRequested)
        return;
    printThreadName("onThemeCheckSuccess");
    m_themesChecked = true;
    applyState(ConnectionState::Ready);
}

void ConnectionManager::onNetworkSettingsChanged() {
    m_themesChecked = false;
}

void ConnectionManager::onWebSocketDisconnect() {
    printThreadName("onWebSocketDisconnect");
    m_isSocketInUse = false;
    qInfo().noquote().nospace() << "webSocketError: Сервер " << ClientConnectionSettings().Ip.get()
                                << "-" << m_webSocketClient->errorString();
    applyState(ConnectionState::Disconnected);
    if (isCancelled())
        setDone();
    else
        tryStartNextWsConnection();
}

void ConnectionManager::onDisconnectRequested() {
    if (isCancelled() || m_state < ConnectionState::BalancerRequested)
        return;
    emit m_webSocketClient->close();
}

void ConnectionManager::onLinkDead(int connectionNumber) {
    if (connectionNumber == m_webSocketClient->connectionNumber())
        onDisconnectRequested();
}

void ConnectionManager::onStop() {
    printThreadName("onStop");
    if (m_reconnectTimer->isActive()) {
        m_reconnectTimer->stop();
        printThreadName("Cancelation catched!!!");
    }
    if (m_isSocketInUse) {
        emit m_webSocketClient->close();
        return;
    }
    if (m_state >= ConnectionState::BalancerRequested)
        applyState(ConnectionState::Disconnected);
    setDone();
}

void ConnectionManager::onReceivedVACSettingsFromBalancer(bool enableVAC,
                                                          bool receivedFromBalancer) {
    emit vacStateChanged(enableVAC, receivedFromBalancer);
}

void ConnectionManager::onUserNotification(const UserNotification &notification) {
    if (notification.action() == NotificationAction::Disconnect)
        m_asrManager->setEnabled(false);
}

void ConnectionManager::SoundAvailable(const QByteArray &data) {
    const auto mode = m_asrManager->getTargetModeInfo()->mode();
    if (!mode || *mode == RecognitionMode::Off || !m_asrManager->isConnected())
        return;
    const AsrState state = m_asrManager->currentState();
    const bool isWanted = *mode == RecognitionMode::TemplatedWizardForm
                              ? state != AsrState::Stopped
                              : state == AsrState::Started;
    if (isWanted)
        m_webSocketClient->sendDataBytes(data);
}
