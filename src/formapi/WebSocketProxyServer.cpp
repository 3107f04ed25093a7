#include "formapi/WebSocketProxyServer.h"

#include "formapi/WebSocketProxyServerSession.h"
#include "recognition/AsrManager.h"

WebSocketProxyServer::WebSocketProxyServer(WebSocketClient *client, ResultManager *resultManager,
                                           AsrManager *asrManager, QObject *parent)
    : WebSocketServer(parent),
      m_client(client),
      m_resultManager(resultManager),
      m_asrManager(asrManager) {}

WebSocketProxyServer::~WebSocketProxyServer() {
    // Their last messages need all of this object.
    deleteAllSessions(QWebSocketProtocol::CloseCodeGoingAway);
}

WebSocketProxyServerSession *WebSocketProxyServer::currentSession() const {
    return sessions().isEmpty() ? nullptr
                                : static_cast<WebSocketProxyServerSession *>(sessions().first());
}

WebSocketServerSession *WebSocketProxyServer::createSession() {
    QWebSocket *socket = nextSocket();
    if (!socket)
        return nullptr;
    return new WebSocketProxyServerSession(socket, m_client, m_resultManager, m_asrManager, this);
}

void WebSocketProxyServer::newConnection() {
    deleteAllSessions(QWebSocketProtocol::CloseCodeNormal);
    WebSocketServer::newConnection();
    m_asrManager->stopRecognition();
}
