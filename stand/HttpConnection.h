#pragma once

#include "stand/HttpRequest.h"

#include <QObject>

class QTcpSocket;

/// One HTTP request on one connection: it is read, answered, and the connection is closed.
/// Deletes itself with the end of the connection.
class HttpConnection : public QObject {
    Q_OBJECT

public:
    /// @param socket  becomes a child of this object
    HttpConnection(QTcpSocket *socket, QObject *parent);

    /// To be called once, and only after requested().
    /// @param status  HTTP status code
    void answer(int status, const QByteArray &body);

signals:
    void requested(const HttpRequest &request);

private:
    void read();

    QTcpSocket *m_socket;
    QByteArray m_bytes;
};
