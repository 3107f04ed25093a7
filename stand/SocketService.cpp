#include "stand/SocketService.h"

#include "stand/EventLog.h"

#include <QTcpSocket>
#include <QWebSocket>

SocketService::SocketService(RecognitionSession::Services services, QObject *parent)
    : QObject(parent),
      m_services(std::move(services)),
      m_server(QStringLiteral("vellumar-stand"), QWebSocketServer::NonSecureMode) {
    m_services.answers = &m_answers;
    connect(&m_listener, &PlainListener::accepted, this, &SocketService::accept);
    connect(&m_listener, &PlainListener::tlsRefused, this, [this] {
        m_services.log->add(QStringLiteral("tls"), {{QStringLiteral("port"), m_listener.port()}});
    });
    connect(&m_server, &QWebSocketServer::newConnection, this, &SocketService::takeConnection);
}

SocketService::~SocketService() {
    // Before the members that the sessions use.
    qDeleteAll(sessions());
}

QList<RecognitionSession *> SocketService::sessions() const {
    return findChildren<RecognitionSession *>(QString(), Qt::FindDirectChildrenOnly);
}

void SocketService::accept(QTcpSocket *transport) {
    const quint16 clientPort = transport->peerPort();
    m_handshakes.insert(clientPort, transport);
    connect(transport, &QTcpSocket::disconnected, this, [this, clientPort] {
        if (const QPointer<QTcpSocket> failed = m_handshakes.take(clientPort))
            failed->deleteLater();
    });
    m_server.handleConnection(transport);
}

void SocketService::takeConnection() {
    while (QWebSocket *socket = m_server.nextPendingConnection()) {
        QTcpSocket *transport = m_handshakes.take(socket->peerPort());
        // Deleted with the service; the session deletes itself sooner, with its connection.
        new RecognitionSession(socket, transport, m_services, this);
    }
}
