#pragma once

#include "stand/ControlServer.h"
#include "stand/EventLog.h"
#include "stand/RestService.h"
#include "stand/SocketService.h"
#include "stand/StandOptions.h"

#include <QJsonArray>
#include <QMap>
#include <QObject>

#include <memory>
#include <vector>

/// The whole stand: its ports, its engine, and the commands that bring faults about.
class StandService : public QObject {
    Q_OBJECT

public:
    explicit StandService(const StandOptions &options, QObject *parent = nullptr);

    /// Opens the ports and carries out the script's start commands.
    /// @throws Exception  a port or the engine cannot be had, or a start command is refused
    void start();
    /// Names the ports.
    QString readyLine() const;

    /// Carries a control command out; returns what it has to tell.
    /// @throws Exception  the command is unknown or cannot be carried out
    QJsonObject execute(const QJsonObject &command);

private:
    using Command = QJsonObject (StandService::*)(const QJsonObject &);
    using ToSession = std::function<void(RecognitionSession *)>;

    static const QMap<QString, Command> &commands();
    QJsonObject send(const QJsonObject &command);
    QJsonObject sendBinary(const QJsonObject &command);
    QJsonObject sendRaw(const QJsonObject &command);
    QJsonObject sendMessage(const QJsonObject &command);
    QJsonObject sendResult(const QJsonObject &command);
    QJsonObject speak(const QJsonObject &command);
    QJsonObject drop(const QJsonObject &command);
    QJsonObject close(const QJsonObject &command);
    QJsonObject ignorePings(const QJsonObject &command);
    QJsonObject setAnswers(const QJsonObject &command);
    QJsonObject setSocketMode(const QJsonObject &command);
    QJsonObject setRestMode(const QJsonObject &command);
    QJsonObject setThemes(const QJsonObject &command);
    QJsonObject setServers(const QJsonObject &command);
    QJsonObject setClaim(const QJsonObject &command);
    QJsonObject open(const QJsonObject &command);
    QJsonObject state(const QJsonObject &command);

    QJsonObject toSessions(const QJsonObject &command, const ToSession &act);
    QJsonObject answerFor(const QString &path, const QJsonObject &command);
    QJsonObject openPorts(quint16 port, quint16 restPort);
    std::unique_ptr<RecognitionEngine> makeEngine();
    QJsonObject defaultServers() const;

    const StandOptions m_options;
    EventLog m_log;
    QJsonArray m_themes;
    int m_lastCounted = 0;
    std::vector<std::unique_ptr<SocketService>> m_sockets;
    std::vector<std::unique_ptr<RestService>> m_rests;
    ControlServer m_control;
};
