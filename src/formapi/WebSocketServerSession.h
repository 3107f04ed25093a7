#pragma once

#include "connection/WebSocketConnection.h"

#include <QWebSocketProtocol>

/// One client of the local WebSocket server. Lives on the server's thread.
class WebSocketServerSession : public WebSocketConnection {
    Q_OBJECT

public:
    /// @param socket  becomes a child
    WebSocketServerSession(QWebSocket *socket, QObject *parent);

    /// Closes the socket; disconnected() has been emitted when this returns, and comes only once.
    void end(QWebSocketProtocol::CloseCode code);
    bool hasEnded() const { return m_hasEnded; }

public slots:
    virtual void textMessageReceived(const QString &) {}
    virtual void binaryMessageReceived(const QByteArray &) {}

private:
    bool m_hasEnded = false;
};
