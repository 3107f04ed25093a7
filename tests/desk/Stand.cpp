#include "Stand.h"

#include "VirtualDesk.h"
#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/ClientConnectionSettings.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace {

constexpr int kAnswerMs = 20000;

[[noreturn]] void fail(const QString &text) {
    throw std::runtime_error(text.toStdString());
}

template <typename T>
void point(T &&settings, const Stand &stand) {
    settings.Ip = "127.0.0.1";
    settings.Port = int(stand.port());
    settings.RestPort = int(stand.restPort());
    settings.UseTls = false;
    settings.sync();
}

} // namespace

Stand::Stand(const QJsonObject &script, const QStringList &arguments) {
    start(script, arguments);
    const QString line = readReadyLine();
    static const QRegularExpression form("^ready: websocket (\\d+), rest (\\d+), control (\\d+)");
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        fail(QString("the stand does not start: %1").arg(line));
    m_port = match.captured(1).toUShort();
    m_restPort = match.captured(2).toUShort();
    QObject::connect(&m_control, &QTcpSocket::readyRead, &m_control, [this] { readLines(); });
    m_control.connectToHost(QHostAddress::LocalHost, match.captured(3).toUShort());
    if (!m_control.waitForConnected(kAnswerMs))
        fail(QString("no control connection: %1").arg(m_control.errorString()));
    m_control.setSocketOption(QAbstractSocket::LowDelayOption, 1);
}

void Stand::start(const QJsonObject &script, const QStringList &arguments) {
    const QString file = m_folder.filePath("script.json");
    VirtualDesk::write(file, QJsonDocument(script).toJson());
    const QString any = "0";
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QCoreApplication::applicationDirPath() + "/vellumar-stand",
                    QStringList{"--port", any, "--rest-port", any, "--control", any, "--quiet",
                                "--script", file} +
                        arguments);
    if (!m_process.waitForStarted(kAnswerMs))
        fail(m_process.errorString());
}

QString Stand::readReadyLine() {
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kAnswerMs))
            return QString::fromUtf8(m_process.readAll());
    }
    return QString::fromUtf8(m_process.readLine());
}

QString Stand::connectionString() const {
    return QString("127.0.0.1;%1;%2").arg(m_port).arg(m_restPort);
}

void Stand::offerServers(int count) {
    QJsonArray servers{QJsonObject{{"ServerId", "0"}, {"ConnectionString", connectionString()}}};
    for (int id = 1; id < count; ++id) {
        const QJsonObject opened = tell("open");
        const QString ports =
            QString("%1;%2").arg(opened["port"].toInt()).arg(opened["rest"].toInt());
        servers.append(QJsonObject{{"ServerId", QString::number(id)},
                                   {"ConnectionString", "127.0.0.1;" + ports}});
    }
    tell({{"do", "servers"}, {"mode", "normal"}, {"list", servers}});
}

void Stand::writeSettings() const {
    point(BalancerConnectionSettings(), *this);
    point(ClientConnectionSettings(), *this);
}

QJsonObject Stand::tell(QJsonObject command) {
    const int id = ++m_lastId;
    command.insert("id", id);
    m_control.write(QJsonDocument(command).toJson(QJsonDocument::Compact) + '\n');
    if (!runUntil([&] { return m_answer["id"].toInt() == id; }, kAnswerMs))
        fail("the stand does not answer");
    if (m_answer["event"] != "done")
        fail(QString("the stand refuses: %1").arg(m_answer["text"].toString()));
    return m_answer;
}

void Stand::sayResult(const QString &text, bool isFinal, const QString &commandId) {
    tell(QJsonObject{
        {"do", "result"}, {"text", text}, {"final", isFinal}, {"commandId", commandId}});
}

void Stand::suspend() const {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP);
}

void Stand::resume() const {
    ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
}

int Stand::count(const QString &event) const {
    return static_cast<int>(
        std::count_if(m_events.cbegin(), m_events.cend(),
                      [&](const QJsonObject &one) { return one["event"].toString() == event; }));
}

QJsonObject Stand::waitFor(const QString &event, const Predicate &fits, int timeoutMs) {
    const int from = m_position;
    QJsonObject found;
    const auto look = [&] {
        while (found.isEmpty() && m_position < m_events.size()) {
            const QJsonObject &next = m_events[m_position++];
            if (next["event"].toString() == event && (!fits || fits(next)))
                found = next;
        }
        return !found.isEmpty();
    };
    if (runUntil(look, timeoutMs))
        return found;
    qInfo() << "the stand saw no" << event << "but" << m_events.mid(from);
    // What did not fit this wait may fit the next one.
    m_position = from;
    return QJsonObject();
}

QJsonObject Stand::waitForMessage(int type, int timeoutMs) {
    const auto fits = [type](const QJsonObject &event) { return event["type"].toInt() == type; };
    return waitFor("message", fits, timeoutMs);
}

void Stand::forget() {
    // A round trip brings everything that the stand has seen so far.
    tell("state");
    m_position = m_events.size();
}

void Stand::readLines() {
    while (m_control.canReadLine()) {
        const QJsonObject object = QJsonDocument::fromJson(m_control.readLine()).object();
        const bool isAnswer = object.contains("id");
        if (isAnswer)
            m_answer = object;
        else
            m_events.append(object);
    }
}

bool Stand::runUntil(const std::function<bool()> &done, int timeoutMs) {
    QEventLoop loop;
    QTimer timer;
    bool isOver = false;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        isOver = true;
        loop.quit();
    });
    QObject::connect(&m_control, &QTcpSocket::readyRead, &loop, &QEventLoop::quit);
    QObject::connect(&m_control, &QTcpSocket::disconnected, &loop, &QEventLoop::quit);
    timer.start(timeoutMs);
    while (!done()) {
        if (isOver || m_control.state() != QTcpSocket::ConnectedState)
            return false;
        loop.exec();
    }
    return true;
}
