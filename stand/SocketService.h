#pragma once

#include "stand/PlainListener.h"
#include "stand/RecognitionSession.h"

#include <QHash>
#include <QPointer>
#include <QWebSocketServer>

class QTcpSocket;

/// One WebSocket port with its sessions.
class SocketService : public QObject {
    Q_OBJECT

public:
    /// @param services  the service puts its own answers in
    SocketService(RecognitionSession::Services services, QObject *parent);
    /// Breaks the connections.
    ~SocketService() override;

    PlainListener &listener() { return m_listener; }
    /// For the sessions that are and those to come.
    void setAnswers(const RecognitionSession::Answers &answers) { m_answers = answers; }
    QList<RecognitionSession *> sessions() const;

private:
    void accept(QTcpSocket *transport);
    void takeConnection();

    RecognitionSession::Answers m_answers;
    RecognitionSession::Services m_services;
    PlainListener m_listener;
    QWebSocketServer m_server;
    /// Connections before the end of the handshake, by the client's port.
    QHash<quint16, QPointer<QTcpSocket>> m_handshakes;
};
