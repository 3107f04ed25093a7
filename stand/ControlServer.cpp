#include "stand/ControlServer.h"

#include "core/Exception.h"
#include "stand/EventLog.h"

#include <QJsonDocument>
#include <QTcpSocket>

namespace {
constexpr qint64 kMaxLineBytes = 64 * 1024 * 1024;
const QString kId = QStringLiteral("id");
const QString kText = QStringLiteral("text");
} // namespace

ControlServer::ControlServer(EventLog *log, Execute execute, QObject *parent)
    : QObject(parent), m_log(log), m_execute(std::move(execute)) {
    connect(&m_server, &QTcpServer::newConnection, this, &ControlServer::accept);
}

void ControlServer::listen(quint16 port) {
    if (!m_server.listen(QHostAddress::LocalHost, port)) {
        throw Exception(QStringLiteral("cannot listen on the control port %1 of 127.0.0.1: %2")
                            .arg(port)
                            .arg(m_server.errorString()));
    }
}

void ControlServer::accept() {
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(m_log, &EventLog::added, socket,
                [socket](const QByteArray &line) { socket->write(line + '\n'); });
        for (const QByteArray &line : m_log->lines())
            socket->write(line + '\n');
    }
}

void ControlServer::read(QTcpSocket *socket) {
    while (socket->canReadLine()) {
        const QJsonObject object = answer(socket->readLine());
        socket->write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    }
    if (socket->bytesAvailable() > kMaxLineBytes)
        socket->abort();
}

QJsonObject ControlServer::answer(const QByteArray &line) const {
    QJsonParseError error;
    const QJsonObject command = QJsonDocument::fromJson(line, &error).object();
    QJsonObject answer;
    try {
        if (error.error != QJsonParseError::NoError)
            throw Exception(QStringLiteral("not JSON: %1").arg(error.errorString()));
        answer = m_execute(command);
        answer.insert(QStringLiteral("event"), QStringLiteral("done"));
    } catch (const Exception &problem) {
        answer.insert(QStringLiteral("event"), QStringLiteral("refused"));
        answer.insert(kText, QString::fromUtf8(problem.what()));
    }
    answer.insert(kId, command[kId]);
    return answer;
}
