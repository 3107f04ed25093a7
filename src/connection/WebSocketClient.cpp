#include "connection/WebSocketClient.h"

#include "connection/DataMessageProcessor.h"
#include "connection/rest/ConnectionHelper.h"

#include <QDebug>
#include <QNetworkRequest>
#include <QTcpSocket>
#include <QTimer>
#include <QUrl>
#include <QWebSocket>

WebSocketClient::WebSocketClient(QObject *parent)
    : WebSocketConnection(parent, nullptr),
      m_connectTimer(new QTimer(this)),
      m_messageProcessor(new DataMessageProcessor(this)),
      m_cookiesSource(std::make_unique<CookiesSource>()) {
    connect(socket(), &QWebSocket::binaryMessageReceived, m_messageProcessor,
            &DataMessageProcessor::onBinaryMessageReceived);
    connect(socket(), &QWebSocket::textMessageReceived, m_messageProcessor,
            &DataMessageProcessor::onTextMessageReceived);
    connect(socket(), &QWebSocket::textMessageReceived, m_messageProcessor,
            &DataMessageProcessor::textMessageReceived);
    connect(this, &WebSocketClient::startTimer, this, &WebSocketClient::onStartTimer);
    connect(this, &WebSocketClient::open, this, &WebSocketClient::onOpen);
    connect(socket(), &QWebSocket::connected, m_connectTimer, &QTimer::stop);
    connect(socket(), &QWebSocket::connected, this, &WebSocketClient::sendAtOnce);
    connect(socket(), &QWebSocket::disconnected, m_connectTimer, &QTimer::stop);
    connect(socket(), &QWebSocket::disconnected, this, [this] { m_hasEnded = true; });
    connect(m_connectTimer, &QTimer::timeout, this, &WebSocketClient::onConnectTimeout);
    // Behind the base's own connection, so the socket has been asked to close by now. One that
    // still has unsent bytes waits for a peer that may never read them; whoever ends the connection
    // waits for that, on the main thread perhaps.
    connect(this, &WebSocketConnection::close, this, [this] {
        if (socket()->state() != QAbstractSocket::UnconnectedState)
            m_connectTimer->start(m_closeTimeoutMs);
    });
    connect(socket(), &QWebSocket::pong, this, &WebSocketClient::onPong);
}

void WebSocketClient::onOpen(const QString &ipAddress, int port, bool useTls) {
    const QString scheme = useTls ? QStringLiteral("wss") : QStringLiteral("ws");
    const QUrl url(QStringLiteral("%1://%2:%3/").arg(scheme, ipAddress).arg(port),
                   QUrl::TolerantMode);
    qInfo().noquote().nospace() << "Connection web socket url " << url.toString();
    if (socket()->state() != QAbstractSocket::UnconnectedState)
        return;
    socket()->setProxy(ConnectionHelper::configuredProxy(url));
    socket()->ignoreSslErrors();
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::CookieHeader,
                      QVariant::fromValue(m_cookiesSource->getCookies()));
    m_hasEnded = false;
    socket()->open(request);
    if (socket()->state() != QAbstractSocket::UnconnectedState) {
        emit startTimer();
    } else if (!m_hasEnded) {
        // The socket refuses such an address without a word, and somebody waits for its end.
        keepErrorString();
        emit disconnected();
    }
}

void WebSocketClient::sendAtOnce() {
    // Otherwise a request behind a block of sound waits for the server to acknowledge the sound.
    const auto sockets = socket()->findChildren<QTcpSocket *>();
    for (QTcpSocket *tcpSocket : sockets)
        tcpSocket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void WebSocketClient::onConnectTimeout() {
    if (socket()->state() == QAbstractSocket::ClosingState)
        socket()->abort();
    else
        onClose();
}

void WebSocketClient::onStartTimer() {
    qInfo() << "Websocket client timer start";
    m_connectTimer->start(m_connectTimeoutMs);
}

void WebSocketClient::onPing() {
    m_pongReceived = false;
    // Between two connections the bytes of a ping would fall into the handshake of the next.
    if (socket()->state() == QAbstractSocket::ConnectedState)
        socket()->ping();
}

void WebSocketClient::onPong() {
    m_pongReceived = true;
}
