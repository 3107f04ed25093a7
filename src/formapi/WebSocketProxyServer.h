#pragma once

#include "formapi/WebSocketServer.h"

class AsrManager;
class ResultManager;
class WebSocketClient;
class WebSocketProxyServerSession;

/// The local interface for web forms: one form at a time, the latest. Main thread.
class WebSocketProxyServer : public WebSocketServer {
    Q_OBJECT

public:
    /// What is handed in is not owned and outlives this object.
    WebSocketProxyServer(WebSocketClient *client, ResultManager *resultManager,
                         AsrManager *asrManager, QObject *parent);
    ~WebSocketProxyServer() override;

    /// The form's session, or null.
    WebSocketProxyServerSession *currentSession() const;

protected slots:
    WebSocketServerSession *createSession() override;
    /// Ends the former form's session first, and then any recognition.
    void newConnection() override;

private:
    WebSocketClient *m_client;
    ResultManager *m_resultManager;
    AsrManager *m_asrManager;
};
