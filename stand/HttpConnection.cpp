#include "stand/HttpConnection.h"

#include <QTcpSocket>

namespace {

QByteArray reasonOf(int status) {
    switch (status) {
    case 200:
        return QByteArrayLiteral("OK");
    case 400:
        return QByteArrayLiteral("Bad Request");
    case 404:
        return QByteArrayLiteral("Not Found");
    case 405:
        return QByteArrayLiteral("Method Not Allowed");
    case 413:
        return QByteArrayLiteral("Payload Too Large");
    default:
        return QByteArrayLiteral("Error");
    }
}

} // namespace

HttpConnection::HttpConnection(QTcpSocket *socket, QObject *parent)
    : QObject(parent), m_socket(socket) {
    socket->setParent(this);
    connect(socket, &QTcpSocket::readyRead, this, &HttpConnection::read);
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    // The first bytes came before this object, so nothing more may announce them.
    QMetaObject::invokeMethod(this, &HttpConnection::read, Qt::QueuedConnection);
}

void HttpConnection::read() {
    m_bytes += m_socket->readAll();
    HttpRequest request;
    const HttpRequest::Progress progress = request.parse(m_bytes);
    if (progress == HttpRequest::Progress::Incomplete)
        return;
    disconnect(m_socket, &QTcpSocket::readyRead, this, nullptr);
    if (progress == HttpRequest::Progress::Complete)
        emit requested(request);
    else
        answer(progress == HttpRequest::Progress::TooLarge ? 413 : 400, QByteArray());
}

void HttpConnection::answer(int status, const QByteArray &body) {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reasonOf(status);
    head += "\r\nContent-Type: application/json; charset=utf-8\r\nConnection: close";
    // Web pages ask too, through the client's proxy.
    head += "\r\nAccess-Control-Allow-Origin: *";
    head += "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n";
    m_socket->write(head + body);
    m_socket->disconnectFromHost();
}
