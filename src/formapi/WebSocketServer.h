#pragma once

#include <QList>
#include <QObject>
#include <QWebSocketProtocol>

class QWebSocket;
class QWebSocketServer;
class WebSocketServerSession;

/// A WebSocket server on the loopback address, generic over its sessions, which it owns.
///
/// Lives on the thread that made it; start and stop may be emitted from any thread. A port that
/// cannot be had leaves the server quiet, but for a signal.
class WebSocketServer : public QObject {
    Q_OBJECT

public:
    explicit WebSocketServer(QObject *parent);
    ~WebSocketServer() override;

    /// The port that it listens on, 0 while it does not.
    quint16 port() const;

signals:
    void start(int port);
    /// Also closes every session.
    void stop();
    void closed();
    /// The port cannot be had. Not repeated for the same port before it could be.
    void listenFailed(int port);

protected slots:
    /// @return null if the client has gone already
    virtual WebSocketServerSession *createSession();
    virtual void newConnection();
    virtual void sessionDisconnected();

protected:
    /// @param origin  of the page that would connect; empty for a program
    /// @return false to answer with 403
    virtual bool admits(const QString & /*origin*/) { return true; }
    /// The socket of the next client, the caller's to keep; null if there is none.
    QWebSocket *nextSocket();
    /// @param code  tells the clients whether it is worth to connect again
    void deleteAllSessions(QWebSocketProtocol::CloseCode code);
    const QList<WebSocketServerSession *> &sessions() const { return m_sessions; }

private:
    void onStart(int port);
    void onStop();

    QWebSocketServer *m_server;
    int m_failedPort = 0;
    QList<WebSocketServerSession *> m_sessions;
};
