#include "formapi/WebSocketServer.h"

#include "formapi/WebSocketServerSession.h"

#include <QDebug>
#include <QWebSocket>
#include <QWebSocketCorsAuthenticator>
#include <QWebSocketServer>

#include <utility>

WebSocketServer::WebSocketServer(QObject *parent)
    : QObject(parent),
      m_server(new QWebSocketServer(QStringLiteral("Qt Server"), QWebSocketServer::NonSecureMode,
                                    this)) {
    connect(m_server, &QWebSocketServer::closed, this, &WebSocketServer::closed);
    connect(m_server, &QWebSocketServer::newConnection, this, &WebSocketServer::newConnection);
    connect(m_server, &QWebSocketServer::originAuthenticationRequired, this,
            [this](QWebSocketCorsAuthenticator *authenticator) {
                authenticator->setAllowed(admits(authenticator->origin()));
            });
    connect(this, &WebSocketServer::start, this, &WebSocketServer::onStart);
    connect(this, &WebSocketServer::stop, this, &WebSocketServer::onStop);
}

WebSocketServer::~WebSocketServer() {
    onStop();
}

quint16 WebSocketServer::port() const {
    return m_server->serverPort();
}

void WebSocketServer::onStart(int port) {
    if (m_server->listen(QHostAddress::LocalHost, static_cast<quint16>(port))) {
        m_failedPort = 0;
        return;
    }
    qWarning().noquote() << "Forms cannot connect, port" << port << "-" << m_server->errorString();
    if (std::exchange(m_failedPort, port) != port)
        emit listenFailed(port);
}

void WebSocketServer::onStop() {
    m_server->close();
    deleteAllSessions(QWebSocketProtocol::CloseCodeGoingAway);
}

QWebSocket *WebSocketServer::nextSocket() {
    return m_server->nextPendingConnection();
}

WebSocketServerSession *WebSocketServer::createSession() {
    QWebSocket *socket = nextSocket();
    return socket ? new WebSocketServerSession(socket, this) : nullptr;
}

void WebSocketServer::newConnection() {
    WebSocketServerSession *session = createSession();
    if (!session)
        return;
    connect(session, &WebSocketConnection::disconnected, this,
            &WebSocketServer::sessionDisconnected);
    m_sessions.append(session);
}

void WebSocketServer::sessionDisconnected() {
    auto *session = qobject_cast<WebSocketServerSession *>(sender());
    if (m_sessions.removeOne(session))
        session->deleteLater();
}

void WebSocketServer::deleteAllSessions(QWebSocketProtocol::CloseCode code) {
    const QList<WebSocketServerSession *> sessions = std::exchange(m_sessions, {});
    for (WebSocketServerSession *session : sessions) {
        // Not in the list any more, so that it is deleted here only.
        session->end(code);
        session->deleteLater();
    }
}
