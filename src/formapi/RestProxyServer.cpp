#include "formapi/RestProxyServer.h"

#include "connection/rest/RestClient.h"
#include "connection/rest/RestRequest.h"
#include "core/Exception.h"
#include "core/LoggingCategories.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/FormApiSettings.h"
#include "formapi/HttpTarget.h"
#include "formapi/RequestRefusal.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>

#include <sys/socket.h>
#include <utility>

namespace {

/// After so long without another piece what has come of the header lines is taken for all of them.
constexpr int pauseMs = 1000;
/// A client that says nothing at all, or nothing more of its body, is given up after this.
constexpr int silenceMs = 10000;
/// So long the client has to take notice that its request is refused.
constexpr int refusedMs = 10000;
/// An answer that is not taken until then is given up.
constexpr int maximumWriteMs = 7000;
/// Others wait for this thread while an answer is taken: so long in all, and so long for a piece.
constexpr int patientWriteMs = 1000;
constexpr int writePauseMs = 200;
/// Far more than a browser opens; the program needs its file handles for other things.
constexpr int maximumConnections = 100;
/// Requests on their way in and answers on their way out, of all connections together.
constexpr qint64 maximumHeldBytes = 64LL * 1024 * 1024;
/// A page is not to fill the disk.
constexpr int maximumLoggedBytes = 64 * 1024;

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

RequestRefusal tooSlow() {
    return {"408 Request Timeout", RestProxyServer::tr("Запрос не получен вовремя"),
            QStringLiteral("The request has not come in time")};
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
    request.url = HttpTarget(parts[1].trimmed()).path;
    if (lineFeed >= 0)
        request.body = bytes.mid(parseHeaderLines(bytes, lineFeed + 1, &request.headers));
    return request;
}

} // namespace

RestProxyServer::RestProxyServer(std::chrono::milliseconds requestTime)
    : m_requestTime(requestTime) {
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
        m_failedPort = 0;
    } else {
        qCWarning(restProxyLog).noquote().nospace()
            << "Error while starting listen to http://localhost:" << port << "/ \n"
            << errorString();
        // Each connection to a server tries again.
        if (std::exchange(m_failedPort, port) != port)
            emit listenFailed(port);
    }
}

void RestProxyServer::incomingConnection(qintptr descriptor) {
    auto *socket = new QTcpSocket(this);
    socket->setSocketDescriptor(descriptor, QAbstractSocket::ConnectedState, QIODevice::ReadWrite);
    connect(socket, &QTcpSocket::readyRead, this, &RestProxyServer::onReadyRead);
    connect(socket, &QTcpSocket::disconnected, this, &RestProxyServer::onDisconnected);
    Connection connection;
    connection.deadline = QDeadlineTimer(m_requestTime);
    connection.pause = new QTimer(socket);
    connection.pause->setSingleShot(true);
    connect(connection.pause, &QTimer::timeout, this, [this, socket] { onPause(socket); });
    connection.pause->start(silenceMs);
    m_connections.insert(socket, connection);
    if (m_connections.size() > maximumConnections)
        socket->abort();
}

void RestProxyServer::onReadyRead() {
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    const QByteArray piece = socket->readAll();
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end() || connection->isAnswered)
        return;
    const bool hadHead = connection->request.hasHead();
    if (!take(socket, piece))
        return;
    if (connection->request.isComplete()) {
        answer(socket);
        return;
    }
    if (!hadHead && connection->request.isContinueExpected())
        socket->write("HTTP/1.1 100 Continue\r\n\r\n");
    connection->pause->start(connection->request.hasHead() ? silenceMs : pauseMs);
}

bool RestProxyServer::take(QTcpSocket *socket, const QByteArray &piece) {
    const auto connection = m_connections.find(socket);
    HttpRequestBuffer &request = connection->request;
    const bool hadHead = request.hasHead();
    request.append(piece);
    std::optional<RequestRefusal> refusal;
    if (!hadHead && request.hasHead())
        refusal = refusalOf(request, socket->localPort());
    if (!refusal && heldBytes() > maximumHeldBytes)
        refusal = {"503 Service Unavailable", tr("Слишком много запросов. Повторите позже"),
                   QStringLiteral("All requests together are longer than 64 MB")};
    if (!refusal && !request.isComplete() && connection->deadline.hasExpired())
        refusal = tooSlow();
    if (refusal)
        refuse(socket, *refusal);
    return !refusal;
}

void RestProxyServer::onPause(QTcpSocket *socket) {
    auto connection = m_connections.find(socket);
    if (connection == m_connections.end())
        return;
    if (connection->isAnswered) {
        socket->abort();
        return;
    }
    // This thread may have been busy with another request: what has come meanwhile counts.
    if (socket->waitForReadyRead(0))
        return;
    connection = m_connections.find(socket);
    if (connection == m_connections.end())
        return;
    if (connection->request.bytes().isEmpty()) {
        socket->abort();
    } else if (take(socket, connection->request.hasHead() ? "" : "\n\n")) {
        if (connection->request.isComplete())
            answer(socket);
        else
            refuse(socket, tooSlow());
    }
}

void RestProxyServer::onDisconnected() {
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    m_connections.remove(socket);
    socket->close();
    socket->deleteLater();
}

void RestProxyServer::answer(QTcpSocket *socket) {
    Connection &connection = m_connections[socket];
    connection.isAnswered = true;
    connection.pause->stop();
    const QByteArray request = readdress(connection.request.takeBytes());
    qCDebug(restProxyLog).noquote() << request.left(maximumLoggedBytes);
    if (!leadsBackHere())
        socket->write(parseHeaders(request, proxyRequest));
    finish(socket);
}

void RestProxyServer::refuse(QTcpSocket *socket, const RequestRefusal &refusal) {
    Connection &connection = m_connections[socket];
    connection.isAnswered = true;
    connection.request.takeBytes();
    connection.pause->start(refusedMs);
    socket->write(errorAnswer(refusal.status, refusal.text, refusal.debugText, refusal.debugText));
    socket->flush();
    // To close it while the client still sends would reset the connection, answer and all.
    ::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
}

void RestProxyServer::finish(QTcpSocket *socket) {
    // The next request takes this thread for as long as its answer takes.
    const QDeadlineTimer patience(patientWriteMs);
    while (socket->bytesToWrite() > 0 && !patience.hasExpired() &&
           !m_thread.isInterruptionRequested() && socket->waitForBytesWritten(writePauseMs)) {
    }
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end())
        return;
    connection->pause->start(maximumWriteMs);
    if (heldBytes() > maximumHeldBytes)
        socket->abort();
    else
        socket->disconnectFromHost();
}

qint64 RestProxyServer::heldBytes() const {
    qint64 sum = 0;
    for (auto connection = m_connections.begin(); connection != m_connections.end(); ++connection)
        sum += connection->request.bytes().size() + connection.key()->bytesToWrite();
    return sum;
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
    qCDebug(restProxyLog).noquote() << "Body:\n" << body.left(maximumLoggedBytes);
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
