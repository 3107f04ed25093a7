#include "connection/WebSocketConnection.h"

#include "connection/messages/JsonConvertable.h"
#include "connection/rest/SslCertificateVerification.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutexLocker>
#include <QSslConfiguration>
#include <QWebSocket>

namespace {

/// Far more than the longest result; a frame above it closes the connection instead of filling
/// the memory.
constexpr quint64 maximumFrameBytes = 64ULL * 1024 * 1024;

} // namespace

WebSocketConnection::WebSocketConnection(QObject *parent, QWebSocket *socket)
    : QObject(parent),
      m_socket(socket ? socket : new QWebSocket(QString(), QWebSocketProtocol::VersionLatest)) {
    m_socket->setParent(this);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(configuredPeerVerifyMode());
    m_socket->setSslConfiguration(configuration);
    m_socket->setMaxAllowedIncomingFrameSize(maximumFrameBytes);
    m_socket->setMaxAllowedIncomingMessageSize(maximumFrameBytes);

    connect(m_socket, &QWebSocket::connected, this, &WebSocketConnection::connected);
    connect(m_socket, &QWebSocket::disconnected, this, &WebSocketConnection::keepErrorString);
    connect(m_socket, &QWebSocket::disconnected, this, &WebSocketConnection::disconnected);
    connect(m_socket, &QWebSocket::bytesWritten, this, &WebSocketConnection::countUnsentBytes);
    connect(m_socket, &QWebSocket::disconnected, this, &WebSocketConnection::countUnsentBytes);

    // These count on the sender's thread, before the text is queued.
    connect(
        this, &WebSocketConnection::sendText, this,
        [this](const QString &text) { m_queuedBytes += text.size(); }, Qt::DirectConnection);
    connect(
        this, &WebSocketConnection::sendBytes, this,
        [this](const QByteArray &bytes) { m_queuedBytes += bytes.size(); }, Qt::DirectConnection);
    connect(this, &WebSocketConnection::sendText, this, &WebSocketConnection::onSendText);
    connect(this, &WebSocketConnection::sendBytes, this, &WebSocketConnection::onSendBytes);
    connect(this, &WebSocketConnection::close, this, &WebSocketConnection::onClose);
}

void WebSocketConnection::sendJson(int type, const QJsonValue &data) {
    const QJsonObject envelope{
        {QStringLiteral("MessageType"), type},
        // An object leaves out what is not defined.
        {QStringLiteral("Data"), data.isUndefined() ? QJsonValue() : data},
    };
    emit sendText(QString::fromUtf8(QJsonDocument(envelope).toJson(QJsonDocument::Compact)));
}

void WebSocketConnection::sendObject(int type, const QJsonValue &jsonObject) {
    sendJson(type, jsonObject);
}

void WebSocketConnection::sendData(int type, const JsonConvertable *object) {
    sendJson(type, object->toJson());
}

void WebSocketConnection::sendDataBytes(const QByteArray &bytes) {
    emit sendBytes(bytes);
}

void WebSocketConnection::onSendText(const QString &text) {
    m_socket->sendTextMessage(text);
    m_queuedBytes -= text.size();
    countUnsentBytes();
}

void WebSocketConnection::onSendBytes(const QByteArray &bytes) {
    m_socket->sendBinaryMessage(bytes);
    m_queuedBytes -= bytes.size();
    countUnsentBytes();
}

void WebSocketConnection::countUnsentBytes() {
    m_unsentBytes = m_socket->bytesToWrite();
}

void WebSocketConnection::onClose() {
    qInfo() << "Webocket close called";
    // One that is not through with connecting would close as soon as it is, whenever that may be.
    if (m_socket->state() == QAbstractSocket::ConnectingState) {
        m_socket->abort();
        return;
    }
    try {
        m_socket->close(QWebSocketProtocol::CloseCodeNormal, QString());
    } catch (...) {
        qInfo() << "Webocket close exception, calling websocket.abort";
        m_socket->abort();
    }
}

void WebSocketConnection::keepErrorString() {
    const QMutexLocker locker(&m_errorMutex);
    m_errorString = m_socket->errorString();
}

QString WebSocketConnection::errorString() const {
    const QMutexLocker locker(&m_errorMutex);
    return m_errorString;
}
