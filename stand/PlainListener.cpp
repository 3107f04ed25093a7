#include "stand/PlainListener.h"

#include "core/Exception.h"

#include <QTcpSocket>

namespace {
constexpr char kTlsHandshake = 0x16;
}

PlainListener::PlainListener(QObject *parent) : QObject(parent) {
    connect(&m_server, &QTcpServer::newConnection, this, &PlainListener::acceptAll);
}

void PlainListener::listen(quint16 port) {
    if (!m_server.listen(QHostAddress::LocalHost, port)) {
        throw Exception(QStringLiteral("cannot listen on port %1 of 127.0.0.1: %2")
                            .arg(port)
                            .arg(m_server.errorString()));
    }
    m_port = m_server.serverPort();
}

void PlainListener::setMode(Mode mode) {
    m_mode = mode;
    if (mode == Mode::Refuse)
        m_server.close();
    else if (!m_server.isListening())
        listen(m_port);
}

void PlainListener::acceptAll() {
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        if (m_mode == Mode::Silent)
            continue;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { look(socket); });
        if (socket->bytesAvailable() > 0)
            look(socket);
    }
}

void PlainListener::look(QTcpSocket *socket) {
    disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
    char first = 0;
    socket->peek(&first, 1);
    if (first == kTlsHandshake) {
        emit tlsRefused();
        socket->abort();
        return;
    }
    emit accepted(socket);
}
