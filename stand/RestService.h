#pragma once

#include "stand/PlainListener.h"

#include <QJsonObject>
#include <QMap>

class EventLog;
class HttpConnection;
struct HttpRequest;

/// One REST port: the balancer's list of servers, the server's list of themes, and its box for
/// claims, each with faults on demand.
class RestService : public QObject {
    Q_OBJECT

public:
    RestService(EventLog *log, QObject *parent);

    PlainListener &listener() { return m_listener; }

    /// What "Data" of an answer holds while no fault is asked for.
    /// @param path  "Servers", "Theme" or "Claim"
    void setData(const QString &path, const QJsonValue &data) { m_data.insert(path, data); }

    /// Sets how a path is answered from now on, by "mode":
    /// "normal" (also: "list" replaces the data), "fail" (an error object), "empty" (an empty
    /// list), "garbage" ("text" as the body), "status" ("status" as the HTTP status), "late"
    /// (after "delayMs", 10,000 unless given), "silent" (never).
    /// @throws Exception  there is no such mode
    void setAnswer(const QString &path, const QJsonObject &command);

private:
    void accept(QTcpSocket *socket);
    void serve(HttpConnection *connection, const HttpRequest &request);
    void answerPath(HttpConnection *connection, const QString &path);

    EventLog *m_log;
    PlainListener m_listener;
    QMap<QString, QJsonValue> m_data;
    QMap<QString, QJsonObject> m_answers; ///< the last command for each path
};
