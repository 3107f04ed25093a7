#pragma once

#include "connection/messages/UserNotification.h"
#include "formapi/WebSocketServer.h"

#include <QStringList>

class AsrManager;
class ResultManager;
class WebSocketClient;
class WebSocketProxyServerSession;

/// The local interface for web forms: one form at a time, the latest. With AllowedOrigins set,
/// other pages are refused. Main thread.
class WebSocketProxyServer : public WebSocketServer {
    Q_OBJECT

public:
    /// What is handed in is not owned and outlives this object.
    WebSocketProxyServer(WebSocketClient *client, ResultManager *resultManager,
                         AsrManager *asrManager, QObject *parent);
    ~WebSocketProxyServer() override;

    /// The form's session, or null.
    WebSocketProxyServerSession *currentSession() const;

signals:
    /// A page has connected that has not been named since the program began.
    void notifyUser(const UserNotification &notification);

protected slots:
    WebSocketServerSession *createSession() override;
    /// Ends the former form's session first, and then any recognition.
    void newConnection() override;

protected:
    bool admits(const QString &origin) override;

private:
    void announce(const QString &origin);

    WebSocketClient *m_client;
    ResultManager *m_resultManager;
    AsrManager *m_asrManager;
    /// Those that the user knows of, the latest last.
    QStringList m_knownOrigins;
};
