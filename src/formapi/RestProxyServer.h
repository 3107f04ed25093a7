#pragma once

#include "connection/ConnectionStateInfo.h"
#include "formapi/HttpRequestBuffer.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QMap>
#include <QTcpServer>
#include <QThread>

#include <chrono>
#include <functional>

class QTimer;
struct RequestRefusal;

/// Hands the HTTP requests of web forms on this machine to the recognition server of the moment,
/// and its answers back. One request a connection, one at a time; each may take as long as a REST
/// request may. What no page of this machine's user should send is refused before anything of it is
/// handed on.
///
/// Listens on the loopback address, and only while the client is connected to a server. Lives on a
/// thread of its own, "RestProxy"; to be made and destroyed on the main thread.
class RestProxyServer : public QTcpServer {
    Q_OBJECT

public:
    using Headers = QMap<QByteArray, QByteArray>;
    using Handler = std::function<QByteArray(const QByteArray &method, const QByteArray &url,
                                             const Headers &headers, const QByteArray &body)>;

    /// @param requestTime  in which a request has to be there as a whole
    explicit RestProxyServer(std::chrono::milliseconds requestTime = std::chrono::minutes(1));
    ~RestProxyServer() override;

    /// Takes a request apart and calls the handler.
    /// @return the handler's answer, or one that tells what is wrong
    static QByteArray parseHeaders(const QByteArray &request, const Handler &handler);
    /// Sends a request to the recognition server; blocks until its answer is there.
    static QByteArray proxyRequest(const QByteArray &method, const QByteArray &url,
                                   const Headers &headers, const QByteArray &body);
    static QByteArray serializeJson(const QJsonObject &object);

public slots:
    void onWsConnectionState(const ConnectionStateInfo &stateInfo);
    void onSettingsChanged();

signals:
    /// The port cannot be had. Not repeated for the same port before it could be.
    void listenFailed(int port);

protected:
    void incomingConnection(qintptr descriptor) override;

private slots:
    void onReadyRead();
    void onDisconnected();

private:
    struct Connection {
        HttpRequestBuffer request;
        /// When the request has to be there; looked at with each piece of it.
        QDeadlineTimer deadline;
        /// Lives with the socket.
        QTimer *pause = nullptr;
        /// What still comes is of no interest.
        bool isAnswered = false;
    };

    void restartServer();
    /// Adds to a request.
    /// @return false if it is refused, and answered so
    bool take(QTcpSocket *socket, const QByteArray &piece);
    /// Nothing has come for a while.
    void onPause(QTcpSocket *socket);
    void answer(QTcpSocket *socket);
    void refuse(QTcpSocket *socket, const RequestRefusal &refusal);
    /// Waits until the client has taken the answer, as long as it takes some of it.
    void finish(QTcpSocket *socket);
    /// What all connections together keep in memory.
    qint64 heldBytes() const;
    /// The recognition server would be this server.
    static bool leadsBackHere();
    /// Puts the recognition server's address where the request names this machine.
    static QByteArray readdress(QByteArray request);

    QThread m_thread;
    int m_failedPort = 0;
    std::chrono::milliseconds m_requestTime;
    QHash<QTcpSocket *, Connection> m_connections;
};
