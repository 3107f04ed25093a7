#pragma once

#include "connection/ConnectionStateInfo.h"
#include "formapi/HttpRequestBuffer.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QTcpServer>
#include <QThread>

#include <functional>

/// Hands the HTTP requests of web forms on this machine to the recognition server of the moment,
/// and its answers back. One request a connection, one at a time; each may take as long as a REST
/// request may.
///
/// Listens on the loopback address, and only while the client is connected to a server. Lives on a
/// thread of its own, "RestProxy"; to be made and destroyed on the main thread.
class RestProxyServer : public QTcpServer {
    Q_OBJECT

public:
    using Headers = QMap<QByteArray, QByteArray>;
    using Handler = std::function<QByteArray(const QByteArray &method, const QByteArray &url,
                                             const Headers &headers, const QByteArray &body)>;

    RestProxyServer();
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

protected:
    void incomingConnection(qintptr descriptor) override;

private slots:
    void onReadyRead();
    void onDisconnected();

private:
    void restartServer();
    void answer(QTcpSocket *socket);
    /// Waits until the client has taken the answer, or has had its time.
    void finish(QTcpSocket *socket);
    /// The recognition server would be this server.
    static bool leadsBackHere();
    /// Puts the recognition server's address where the request names this machine.
    static QByteArray readdress(QByteArray request);

    QThread m_thread;
    /// What has come so far of the requests that are not answered yet.
    QHash<QTcpSocket *, HttpRequestBuffer> m_requests;
};
