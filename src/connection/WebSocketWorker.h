#pragma once

#include "core/workers/BaseWorker.h"

#include <memory>

class AsrManager;
class AutoReplaceManager;
class ExecutableCommandsManager;
class LaunchManager;
class LocalAvocadoManager;
class ResultManager;
class UserCommandsManager;
class WebSocketClient;
class WebSocketProxyServer;

/// Gives the WebSocket client its thread, and owns the managers that speak through it. The managers
/// stay on the thread that made the worker, the main thread.
class WebSocketWorker : public BaseWorker {
    Q_OBJECT

public:
    /// Neither is owned; both outlive this object.
    WebSocketWorker(AutoReplaceManager *autoReplaceManager,
                    UserCommandsManager *userCommandsManager);
    ~WebSocketWorker() override;

    WebSocketClient *wsClient() const { return m_client; }
    AsrManager *asrManager() const { return m_asrManager.get(); }
    ResultManager *resultManager() const { return m_resultManager.get(); }
    LocalAvocadoManager *localAvocadoManager() const { return m_localAvocadoManager.get(); }
    /// The interface for web forms; listens from the worker's start on.
    WebSocketProxyServer *webSocketServer() const { return m_webSocketServer.get(); }
    LaunchManager *launchManager() const { return m_launchManager.get(); }

public slots:
    /// Announces the commands and the personal words. Runs on the main thread, as the managers do.
    void onConnected();

protected:
    void process(CancellationCondition *cancellation) override;

private:
    WebSocketClient *m_client;
    std::unique_ptr<AsrManager> m_asrManager;
    std::unique_ptr<LaunchManager> m_launchManager;
    std::unique_ptr<ExecutableCommandsManager> m_executableCommandsManager;
    std::unique_ptr<ResultManager> m_resultManager;
    std::unique_ptr<LocalAvocadoManager> m_localAvocadoManager;
    std::unique_ptr<WebSocketProxyServer> m_webSocketServer;
};
