#include "formapi/WebSocketProxyServer.h"

#include "core/settings/FormApiSettings.h"
#include "formapi/LocalAccess.h"
#include "formapi/WebSocketProxyServerSession.h"
#include "recognition/AsrManager.h"

#include <QDebug>
#include <QWebSocket>

namespace {

/// A page can have any number of names; more than these are not kept.
constexpr int maximumKnownOrigins = 100;

} // namespace

WebSocketProxyServer::WebSocketProxyServer(WebSocketClient *client, ResultManager *resultManager,
                                           AsrManager *asrManager, QObject *parent)
    : WebSocketServer(parent),
      m_client(client),
      m_resultManager(resultManager),
      m_asrManager(asrManager) {}

WebSocketProxyServer::~WebSocketProxyServer() {
    // Their last messages need all of this object.
    deleteAllSessions(QWebSocketProtocol::CloseCodeGoingAway);
}

WebSocketProxyServerSession *WebSocketProxyServer::currentSession() const {
    return sessions().isEmpty() ? nullptr
                                : static_cast<WebSocketProxyServerSession *>(sessions().first());
}

WebSocketServerSession *WebSocketProxyServer::createSession() {
    QWebSocket *socket = nextSocket();
    if (!socket)
        return nullptr;
    return new WebSocketProxyServerSession(socket, m_client, m_resultManager, m_asrManager, this);
}

void WebSocketProxyServer::newConnection() {
    deleteAllSessions(QWebSocketProtocol::CloseCodeNormal);
    WebSocketServer::newConnection();
    m_asrManager->stopRecognition();
    if (WebSocketProxyServerSession *session = currentSession())
        announce(session->socket()->origin());
}

bool WebSocketProxyServer::admits(const QString &origin) {
    if (origin.isEmpty() || isOriginAllowed(origin, FormApiSettings().AllowedOrigins))
        return true;
    qWarning().noquote() << "A web page is refused, AllowedOrigins does not name it:"
                         << shownText(origin);
    return false;
}

void WebSocketProxyServer::announce(const QString &origin) {
    if (origin.isEmpty())
        return;
    const QString name = shownText(origin);
    qInfo().noquote() << "A web page has connected:" << name;
    if (m_knownOrigins.contains(name))
        return;
    if (m_knownOrigins.size() >= maximumKnownOrigins)
        m_knownOrigins.removeFirst();
    m_knownOrigins.append(name);
    UserNotification notification(NotificationType::Information, tr("Веб-форма"),
                                  tr("Подключилась веб-страница %1").arg(name));
    notification.setForce(true);
    emit notifyUser(notification);
}
