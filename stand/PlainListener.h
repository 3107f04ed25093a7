#pragma once

#include <QObject>
#include <QTcpServer>

class QTcpSocket;

/// A loopback port that takes plain connections only: what begins like a TLS handshake is refused
/// at once, so that a client that tries TLS first can go on without waiting.
class PlainListener : public QObject {
    Q_OBJECT

public:
    enum class Mode {
        Accept,
        Refuse, ///< the port is closed
        Silent, ///< connections are accepted and never answered
    };

    explicit PlainListener(QObject *parent = nullptr);

    /// @param port  0 for any free one
    /// @throws Exception  the port cannot be had
    void listen(quint16 port);
    quint16 port() const { return m_port; }

    /// @throws Exception  the port is wanted back and someone else has it
    void setMode(Mode mode);

signals:
    /// A connection whose first bytes wait in the socket. The receiver takes care of the socket.
    void accepted(QTcpSocket *socket);
    void tlsRefused();

private:
    void acceptAll();
    void look(QTcpSocket *socket);

    QTcpServer m_server;
    quint16 m_port = 0;
    Mode m_mode = Mode::Accept;
};
