#include "formapi/RestProxyServer.h"

#include "connection/rest/RestClient.h"
#include "connection/rest/RestRequest.h"
#include "core/Exception.h"
#include "core/LoggingCategories.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/FormApiSettings.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>

namespace {

/// After so long without another piece what has come of a request is taken for all of it.
constexpr int pauseMs = 1000;
/// A connection on which nothing has come at all is given up after this.
constexpr int silenceMs = 10000;
/// An answer that is not taken until then is given up: others wait for this thread.
constexpr int maximumWriteMs = 7000;
/// Far more than a browser opens; the program needs its file handles for other things.
constexpr int maximumConnections = 100;

/// Headers that concern the connection to this server, or the form of a body that is handed on in
/// another one.
bool isOwnMatter(const QByteArray &name) {
    static const QList<QByteArray> names{"accept-encoding", "connection",        "content-length",
                                         "expect",          "keep-alive",        "te",
                                         "trailer",         "transfer-encoding", "upgrade"};
    return names.contains(name.toLower()) || name.toLower().startsWith("proxy-");
}

QByteArray httpAnswer(const QByteArray &status, const QByteArray &json) {
    return "HTTP/1.1 " + status +
           "\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " +
           QByteArray::number(json.size()) + "\r\nConnection: close\r\n\r\n" + json;
}

QByteArray errorAnswer(const QByteArray &status, const QString &text, const QString &debugText,
                       const QString &warning) {
    qCWarning(restProxyLog).noquote() << warning;
    return httpAnswer(status, RestProxyServer::serializeJson(createErrorResult(text, debugText)));
}

/// To a body in chunks, which cannot be handed on.
QByteArray lengthRequired() {
    return errorAnswer("411 Length Required", RestProxyServer::tr("Некорректный формат запроса"),
                       QStringLiteral("BadRequest"), QStringLiteral("A body without a length"));
}

/// A request taken apart.
struct Request {
    QByteArray method;
    QByteArray url;
    RestProxyServer::Headers headers;
    QByteArray body;
};

/// Reads the header lines from a place on.
/// @return where the body begins
int parseHeaderLines(const QByteArray &bytes, int position, RestProxyServer::Headers *headers) {
    while (position < bytes.size()) {
        const int lineFeed = bytes.indexOf('\n', position);
        const int lineEnd = lineFeed < 0 ? bytes.size() : lineFeed;
        const QByteArray line = bytes.mid(position, lineEnd - position);
        const int colon = line.indexOf(':');
        if (colon < 0)
            return line.trimmed().isEmpty() ? qMin(lineEnd + 1, bytes.size()) : position;
        headers->insert(line.left(colon).trimmed(), line.mid(colon + 1).trimmed());
        position = lineEnd + 1;
    }
    return bytes.size();
}

/// @throws Exception  there is no method, or no address
Request parseRequest(const QByteArray &bytes) {
    const int lineFeed = bytes.indexOf('\n');
    const QByteArray line = bytes.left(lineFeed < 0 ? bytes.size() : lineFeed).trimmed();
    const QList<QByteArray> parts = line.split(' ');
    if (parts.size() < 2)
        throw Exception("The request line has no address");
    Request request;
    request.method = parts[0].trimmed();
    request.url = parts[1].trimmed();
    if (lineFeed >= 0)
        request.body = bytes.mid(parseHeaderLines(bytes, lineFeed + 1, &request.headers));
    return request;
}

} // namespace

RestProxyServer::RestProxyServer() {
    m_thread.setObjectName(QStringLiteral("RestProxy"));
    // An object is to be destroyed on its own thread, so it comes back before that thread ends.
    connect(
        &m_thread, &QThread::finished, this,
        [this] {
            close();
            const auto sockets = findChildren<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly);
            for (QTcpSocket *socket : sockets)
                socket->disconnect(this);
            qDeleteAll(sockets);
            moveToThread(QCoreApplication::instance()->thread());
        },
        Qt::DirectConnection);
    m_thread.start(QThread::InheritPriority);
    moveToThread(&m_thread);
}

RestProxyServer::~RestProxyServer() {
    // A request that waits for its answer gives up.
    m_thread.requestInterruption();
    m_thread.quit();
    m_thread.wait();
}

void RestProxyServer::onWsConnectionState(const ConnectionStateInfo &stateInfo) {
    if (stateInfo.is(ConnectionState::WsConnected))
        restartServer();
    else if (stateInfo.is(ConnectionState::Disconnected) && isListening())
        close();
}

void RestProxyServer::onSettingsChanged() {
    restartServer();
}

void RestProxyServer::restartServer() {
    if (isListening())
        close();
    const int port = FormApiSettings().RestPort;
    if (listen(QHostAddress::LocalHost, static_cast<quint16>(port))) {
        qCInfo(restProxyLog).noquote().nospace()
            << "Start listen to http://localhost:" << port << "/";
    } else {
        qCWarning(restProxyLog).noquote().nospace()
            << "Error while starting listen to http://localhost:" << port << "/ \n"
            << errorString();
    }
}

void RestProxyServer::incomingConnection(qintptr descriptor) {
    auto *socket = new QTcpSocket(this);
    socket->setSocketDescriptor(descriptor, QAbstractSocket::ConnectedState, QIODevice::ReadWrite);
    connect(socket, &QTcpSocket::readyRead, this, &RestProxyServer::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &RestProxyServer::onDisconnected);
    m_requests.insert(socket, HttpRequestBuffer());
    if (m_requests.size() > maximumConnections) {
        socket->abort();
        return;
    }
    auto *pause = new QTimer(socket);
    pause->setSingleShot(true);
    connect(pause, &QTimer::timeout, this, [this, socket] {
        if (m_requests.value(socket).bytes().isEmpty())
            socket->abort();
        else
            answer(socket);
    });
    pause->start(silenceMs);
}

void RestProxyServer::onReadyRead() {
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    const auto request = m_requests.find(socket);
    if (request == m_requests.end()) {
        socket->readAll();
        return;
    }
    const bool wasContinueExpected = request->isContinueExpected();
    request->append(socket->readAll());
    if (request->isComplete()) {
        answer(socket);
        return;
    }
    if (request->isContinueExpected() && !wasContinueExpected)
        socket->write("HTTP/1.1 100 Continue\r\n\r\n");
    socket->findChild<QTimer *>()->start(pauseMs);
}

void RestProxyServer::onDisconnected() {
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    m_requests.remove(socket);
    socket->close();
    socket->deleteLater();
}

void RestProxyServer::answer(QTcpSocket *socket) {
    socket->findChild<QTimer *>()->stop();
    const HttpRequestBuffer buffer = m_requests.take(socket);
    const QByteArray request = readdress(buffer.bytes());
    qCDebug(restProxyLog).noquote() << request;
    if (!leadsBackHere())
        socket->write(buffer.isChunked() ? lengthRequired() : parseHeaders(request, proxyRequest));
    finish(socket);
}

void RestProxyServer::finish(QTcpSocket *socket) {
    // Before the next request takes this thread for as long as its answer takes.
    const QDeadlineTimer limit(maximumWriteMs);
    while (socket->bytesToWrite() > 0 && socket->state() == QAbstractSocket::ConnectedState &&
           !limit.hasExpired() && !m_thread.isInterruptionRequested())
        socket->waitForBytesWritten(pauseMs);
    if (socket->bytesToWrite() > 0)
        socket->abort();
    else
        socket->disconnectFromHost();
}

QByteArray RestProxyServer::readdress(QByteArray request) {
    const QByteArray address = ClientConnectionSettings().Ip.get().toUtf8();
    request.replace("localhost", address);
    request.replace("127.0.0.1", address);
    return request;
}

bool RestProxyServer::leadsBackHere() {
    const ClientConnectionSettings server;
    return server.isLocalhost() && server.RestPort.get() == FormApiSettings().RestPort.get();
}

QByteArray RestProxyServer::parseHeaders(const QByteArray &request, const Handler &handler) {
    const QString badRequest = tr("Некорректный формат запроса");
    Request parsed;
    try {
        parsed = parseRequest(request);
    } catch (const std::exception &error) {
        const QString text = QString::fromUtf8(error.what());
        return errorAnswer("400 Bad Request", badRequest, text, text);
    } catch (...) {
        return errorAnswer("400 Bad Request", badRequest, QStringLiteral("BadRequest"),
                           QStringLiteral("Unknown error"));
    }
    const QString badGateway = tr("Ошибка подключения к серверу");
    try {
        return handler(parsed.method, parsed.url, parsed.headers, parsed.body);
    } catch (const std::exception &error) {
        const QString text = QString::fromUtf8(error.what());
        return errorAnswer("502 Bad Gateway", badGateway, text, text);
    } catch (...) {
        return errorAnswer("502 Bad Gateway", badGateway, QString(),
                           QStringLiteral("Unknown error"));
    }
}

QByteArray RestProxyServer::proxyRequest(const QByteArray &method, const QByteArray &url,
                                         const Headers &headers, const QByteArray &body) {
    qCDebug(restProxyLog).noquote() << "Method:" << method << "UrlPart:" << url;
    const ClientConnectionSettings server;
    qCDebug(restProxyLog).noquote().nospace()
        << "Target: " << server.Ip.get() << ":" << server.RestPort.get();
    RestClient client;
    client.initialize(server.Ip, server.RestPort, server.UseTls);
    Headers handedOn;
    for (auto header = headers.cbegin(); header != headers.cend(); ++header) {
        if (!isOwnMatter(header.key()))
            handedOn.insert(header.key(), header.value());
    }
    client.addHeaders(handedOn);
    // The form's address stands for itself.
    client.setApiPrefix(QStringLiteral("/"));
    qCDebug(restProxyLog).noquote() << "Body:\n" << body;
    const QString path = QString::fromUtf8(url);
    const QString answer = method == "POST"
                               ? client.executeClearHttp(path, Method::Post, body, {})
                               : client.executeClearHttp(path, Method::Get, QByteArray(), {});
    return answer.toUtf8();
}

QByteArray RestProxyServer::serializeJson(const QJsonObject &object) {
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Indented);
    qCDebug(restProxyLog).noquote() << text;
    return text;
}
