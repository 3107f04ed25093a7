#pragma once

#include <QJsonObject>
#include <QObject>
#include <QTcpServer>

#include <functional>

class EventLog;
class QTcpSocket;

/// The control connection: a JSON object a line in both directions, on loopback. A client gets the
/// events from the first one on, and between them an answer to each of its commands: "event" is
/// then "done" or "refused" (with the reason in "text"), and "id" is that of the command.
class ControlServer : public QObject {
    Q_OBJECT

public:
    /// Carries a command out; its result becomes part of the answer. Throws Exception to refuse.
    using Execute = std::function<QJsonObject(const QJsonObject &)>;

    ControlServer(EventLog *log, Execute execute, QObject *parent);

    /// @param port  0 for any free one
    /// @throws Exception  the port cannot be had
    void listen(quint16 port);
    quint16 port() const { return m_server.serverPort(); }

private:
    void accept();
    void read(QTcpSocket *socket);
    QJsonObject answer(const QByteArray &line) const;

    EventLog *m_log;
    Execute m_execute;
    QTcpServer m_server;
};
