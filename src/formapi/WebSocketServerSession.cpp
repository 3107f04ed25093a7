#include "formapi/WebSocketServerSession.h"

#include <QWebSocket>

WebSocketServerSession::WebSocketServerSession(QWebSocket *socket, QObject *parent)
    : WebSocketConnection(parent, socket) {
    connect(socket, &QWebSocket::textMessageReceived, this,
            &WebSocketServerSession::textMessageReceived);
    connect(socket, &QWebSocket::binaryMessageReceived, this,
            &WebSocketServerSession::binaryMessageReceived);
    connect(this, &WebSocketConnection::disconnected, this, [this] { m_hasEnded = true; });
}

void WebSocketServerSession::end(QWebSocketProtocol::CloseCode code) {
    socket()->disconnect(this);
    socket()->close(code);
    // A client that does not read keeps its socket from closing; nobody waits for that.
    if (!m_hasEnded)
        emit disconnected();
}
