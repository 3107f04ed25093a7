#pragma once

#include "connection/messages/MISInfo.h"
#include "formapi/WebSocketServerSession.h"

#include <QJsonObject>

class AsrManager;
class ResultManager;
class WebSocketClient;

/// Stands between one web form and the one connection to the recognition server: translates
/// between the numbers of both, formats what goes into fields, and keeps the target mode up to
/// date, so that the form can be described to another server without its help.
///
/// Main thread. What is no message of a form is dropped without an answer.
class WebSocketProxyServerSession : public WebSocketServerSession {
    Q_OBJECT

public:
    /// Tells the server of the form's identity. The managers are not owned.
    /// @param socket  becomes a child
    WebSocketProxyServerSession(QWebSocket *socket, WebSocketClient *client,
                                ResultManager *resultManager, AsrManager *asrManager,
                                QObject *parent);

public slots:
    /// A frame from the form.
    void textMessageReceived(const QString &message) override;
    /// A frame from the server.
    void proxyTextMessageReceived(const QString &message);
    /// Formats the value of a text field.
    void processValuedElement(QJsonObject &object);

private:
    void takeIdentity();
    void onDisconnected();
    /// What a message of the form means for the target mode.
    /// @return the data to send on
    QJsonValue updateTarget(int code, const QJsonValue &data);
    void startForm(const QJsonObject &description);
    QJsonValue endForm();
    /// What a message of the server means here, and the data to send on.
    QJsonValue translateData(int code, const QJsonValue &data);
    void limitBacklog();

    WebSocketClient *m_client;
    ResultManager *m_resultManager;
    AsrManager *m_asrManager;
    MISInfo m_misInfo;
};
