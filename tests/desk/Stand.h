#pragma once

#include "DeskProcess.h"

#include <QJsonObject>
#include <QList>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <functional>

/// A `vellumar-stand` of the test's own, on free ports, with everything that arrives at it.
///
/// Events are those of the stand's control connection (see its README): "connected", "message",
/// "sound", "disconnected", "rest", "tls". Waiting runs the event loop, so client objects on the
/// same thread go on working. To be used from the main thread; the destructor ends the process.
class Stand {
public:
    using Predicate = std::function<bool(const QJsonObject &)>;

    /// Starts a stand with the scripted engine and returns when it listens.
    /// @param script     see the stand's README; an empty one recognises nothing by itself
    /// @param arguments  further options, `--engine acoustic` for example
    /// @throws std::runtime_error  the stand does not come up; its own words are in the text
    explicit Stand(const QJsonObject &script = {}, const QStringList &arguments = {});

    quint16 port() const { return m_port; }
    quint16 restPort() const { return m_restPort; }
    /// Address, WebSocket port and REST port, as lists of servers have it.
    QString connectionString() const;
    /// Opens further ports and has the balancer offer that many servers, this one first.
    void offerServers(int count);
    /// Points the client's settings at this stand.
    void writeSettings() const;

    /// Carries a control command out and returns the answer.
    /// @throws std::runtime_error  the stand refuses, or does not answer
    QJsonObject tell(QJsonObject command);
    QJsonObject tell(const QString &command) { return tell(QJsonObject{{"do", command}}); }
    /// Sends a result to the client.
    void sayResult(const QString &text, bool isFinal = true, const QString &commandId = {});

    /// Lets the stand do nothing at all, not even read, until it is resumed.
    void suspend() const;
    void resume() const;

    /// All events so far, the oldest first.
    const QList<QJsonObject> &events() const { return m_events; }
    int count(const QString &event) const;

    /// The first event of this kind behind the one that the last wait found; an empty object, and
    /// a line with what came instead, if none comes in time.
    QJsonObject waitFor(const QString &event, const Predicate &fits = {}, int timeoutMs = 20000);
    /// The same for a message of the client by its number.
    QJsonObject waitForMessage(int type, int timeoutMs = 20000);
    /// Lets the next wait look at what comes from now on only.
    void forget();
    /// Lets the next wait begin at the first event again.
    void rewind() { m_position = 0; }

private:
    void start(const QJsonObject &script, const QStringList &arguments);
    QString readReadyLine();
    void readLines();
    bool runUntil(const std::function<bool()> &done, int timeoutMs);

    QTemporaryDir m_folder;
    DeskProcess m_process;
    QTcpSocket m_control;
    quint16 m_port = 0;
    quint16 m_restPort = 0;
    int m_lastId = 0;
    int m_position = 0;
    QList<QJsonObject> m_events;
    QJsonObject m_answer;
};
