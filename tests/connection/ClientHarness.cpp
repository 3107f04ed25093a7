#include "ClientHarness.h"

#include "Patience.h"
#include "Stand.h"
#include "connection/ConnectionHeartbeat.h"
#include "connection/WebSocketClient.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QFile>

ClientHarness::ClientHarness(const Stand &stand) {
    QFile::remove(Settings(QString()).fileName());
    Settings(QString()).sync();
    stand.writeSettings();
    ConnectionManagerSettings().QuietConnectionEnabled = true;
    ASRSettings().SelectedTheme = "therapy";
    // Any port that is free: other tests run beside this one.
    FormApiSettings().Port = 0;
    FormApiSettings().RestPort = 0;

    m_worker = new WebSocketWorker(&m_autoReplace, &m_userCommands);
    m_userCommands.set_AsrManager(m_worker->asrManager());
    m_socketService = std::make_unique<SubService>(m_worker, true);
    m_manager = new ConnectionManager(m_worker->wsClient(), m_worker->asrManager(), &m_recording);
    m_managerService = std::make_unique<SubService>(m_manager, true);
    m_heartbeat = new ConnectionHeartbeat(m_worker->wsClient());
    m_heartbeatService = std::make_unique<SubService>(m_heartbeat, false);
    connect(m_heartbeat, &ConnectionHeartbeat::timeout, m_manager, &ConnectionManager::onLinkDead);
    connect(m_manager, &ConnectionManager::disconnected, m_worker->resultManager(),
            &ResultManager::flushResult);
    connect(m_manager, &ConnectionManager::stateChanged, this, &ClientHarness::onStateChanged);
}

ClientHarness::~ClientHarness() {
    stop();
}

void ClientHarness::start() {
    m_socketService->Start();
    m_managerService->Start();
}

void ClientHarness::stop() {
    m_heartbeatService->Stop();
    m_managerService->Stop();
    m_socketService->Stop();
}

bool ClientHarness::open() {
    start();
    return waitFor(ConnectionState::Ready);
}

bool ClientHarness::dictate() {
    asr()->startRecognition();
    return QTest::qWaitFor([&] { return asr()->currentState() == AsrState::Started; }, patienceMs);
}

void ClientHarness::onStateChanged(const ConnectionStateInfo &info) {
    m_states << info.state();
    if (info.is(ConnectionState::Failed))
        m_message = info.message();
    if (info.is(ConnectionState::WsConnected))
        m_heartbeatService->Start();
    else if (info.is(ConnectionState::Disconnected))
        m_heartbeatService->Stop();
}

QList<int> ClientHarness::messages(const Stand &stand) {
    QList<int> types;
    for (const QJsonObject &event : stand.events()) {
        if (event["event"] == "connected")
            types.clear();
        else if (event["event"] == "message")
            types << event["type"].toInt();
    }
    return types;
}

void ClientHarness::enableVoice(bool isAvailable) {
    LaunchSettings settings;
    settings.GlobalEnableVAC = isAvailable;
    settings.VoiceActivationEnabled = true;
    settings.VoiceDeactivationEnabled = true;
}

bool ClientHarness::waitFor(ConnectionState state, int timeoutMs) {
    return QTest::qWaitFor([&] { return m_states.contains(static_cast<int>(state)); }, timeoutMs);
}
