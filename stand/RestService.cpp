#include "stand/RestService.h"

#include "core/Exception.h"
#include "stand/EventLog.h"
#include "stand/HttpConnection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>

namespace {

const QString kData = QStringLiteral("Data");
const QString kError = QStringLiteral("Error");
const QString kList = QStringLiteral("list");
const QString kMode = QStringLiteral("mode");
const QString kPrefix = QStringLiteral("/api/");
constexpr int kLateMs = 10000;

QByteArray methodOf(const QString &path) {
    return path == QLatin1String("Theme") ? QByteArrayLiteral("GET") : QByteArrayLiteral("POST");
}

QByteArray envelope(const QJsonValue &data) {
    const QJsonObject object{{kError, QJsonValue()}, {kData, data}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray failure() {
    const QJsonObject error{{QStringLiteral("Text"), QStringLiteral("Сервис недоступен")},
                            {QStringLiteral("DebugText"), QStringLiteral("a fault on demand")}};
    const QJsonObject object{{kError, error}, {kData, QString()}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

RestService::RestService(EventLog *log, QObject *parent) : QObject(parent), m_log(log) {
    connect(&m_listener, &PlainListener::accepted, this, &RestService::accept);
    connect(&m_listener, &PlainListener::tlsRefused, this, [this] {
        m_log->add(QStringLiteral("tls"), {{QStringLiteral("port"), m_listener.port()}});
    });
}

void RestService::setAnswer(const QString &path, const QJsonObject &command) {
    static const QStringList modes{QStringLiteral("normal"), QStringLiteral("fail"),
                                   QStringLiteral("empty"),  QStringLiteral("garbage"),
                                   QStringLiteral("status"), QStringLiteral("late"),
                                   QStringLiteral("silent")};
    const QString mode = command[kMode].toString(modes.first());
    if (!modes.contains(mode)) {
        throw Exception(QStringLiteral("unknown mode \"%1\"; there are: %2")
                            .arg(mode, modes.join(QStringLiteral(", "))));
    }
    if (command.contains(kList))
        m_data.insert(path, command[kList]);
    m_answers.insert(path, command);
}

void RestService::accept(QTcpSocket *socket) {
    auto *connection = new HttpConnection(socket, this);
    connect(connection, &HttpConnection::requested, this,
            [this, connection](const HttpRequest &request) { serve(connection, request); });
}

void RestService::serve(HttpConnection *connection, const HttpRequest &request) {
    QJsonObject event = request.toJson();
    event.insert(QStringLiteral("port"), m_listener.port());
    m_log->add(QStringLiteral("rest"), event);

    const QString path = request.path.mid(kPrefix.size());
    if (!request.path.startsWith(kPrefix) || !m_data.contains(path))
        connection->answer(404, QByteArray());
    else if (request.method != methodOf(path))
        connection->answer(405, QByteArray());
    else
        answerPath(connection, path);
}

void RestService::answerPath(HttpConnection *connection, const QString &path) {
    const QJsonObject command = m_answers.value(path);
    const QString mode = command[kMode].toString();
    if (mode == QLatin1String("silent"))
        return;
    if (mode == QLatin1String("fail"))
        connection->answer(200, failure());
    else if (mode == QLatin1String("empty"))
        connection->answer(200, envelope(QJsonArray()));
    else if (mode == QLatin1String("garbage"))
        connection->answer(200, command[QStringLiteral("text")].toString().toUtf8());
    else if (mode == QLatin1String("status"))
        connection->answer(command[QStringLiteral("status")].toInt(500), QByteArray());
    else if (mode == QLatin1String("late"))
        QTimer::singleShot(
            command[QStringLiteral("delayMs")].toInt(kLateMs), connection,
            [this, connection, path] { connection->answer(200, envelope(m_data.value(path))); });
    else
        connection->answer(200, envelope(m_data.value(path)));
}
