#include "stand/StandService.h"

#include "connection/messages/MessageType.h"
#include "connection/messages/ServerListDTO.h"
#include "core/Exception.h"
#include "stand/AcousticEngine.h"
#include "stand/CountingEngine.h"
#include "stand/ScriptedEngine.h"
#include "stand/SphinxDecoder.h"
#include "themes/ClientThemeInfo.h"

#include <QDateTime>

namespace {

const QString kBase64 = QStringLiteral("base64");
const QString kClaim = QStringLiteral("Claim");
const QString kList = QStringLiteral("list");
const QString kMode = QStringLiteral("mode");
const QString kPort = QStringLiteral("port");
const QString kRest = QStringLiteral("rest");
const QString kServers = QStringLiteral("Servers");
const QString kText = QStringLiteral("text");
const QString kTheme = QStringLiteral("Theme");
constexpr int kMaxTextCharacters = 64 * 1024 * 1024;

QJsonArray defaultThemes() {
    QJsonArray themes;
    const auto add = [&themes](const QString &id, const QString &name) {
        QJsonObject theme = ClientThemeInfo().toJson().toObject();
        theme.insert(QStringLiteral("Id"), id);
        theme.insert(QStringLiteral("Name"), name);
        theme.insert(QStringLiteral("Version"), QStringLiteral("1.0"));
        theme.insert(QStringLiteral("Description"),
                     QStringLiteral("Демонстрационный словарь: 284 слова, не для работы"));
        themes.append(theme);
    };
    add(QStringLiteral("therapy"), QStringLiteral("Терапия"));
    add(QStringLiteral("cardiology"), QStringLiteral("Кардиология"));
    add(QStringLiteral("surgery"), QStringLiteral("Хирургия"));
    return themes;
}

/// A list of servers may be given whole or as the bare array of servers.
QJsonObject wholeList(const QJsonObject &command) {
    if (command[kList].isObject())
        return command[kList].toObject();
    QJsonObject list{{QStringLiteral("ServerList"), command[kList].toArray()}};
    list.insert(QStringLiteral("TimeStamp"),
                QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    list.insert(QStringLiteral("RecommendedServer"), command[QStringLiteral("recommended")]);
    return list;
}

PlainListener::Mode listenerMode(const QJsonObject &command) {
    const QString mode = command[kMode].toString();
    if (mode == QLatin1String("accept"))
        return PlainListener::Mode::Accept;
    if (mode == QLatin1String("refuse"))
        return PlainListener::Mode::Refuse;
    if (mode == QLatin1String("silent"))
        return PlainListener::Mode::Silent;
    throw Exception(
        QStringLiteral("unknown mode \"%1\"; there are: accept, refuse, silent").arg(mode));
}

/// Whether a command is meant for a port: for all of them unless it names one.
bool concerns(const QJsonObject &command, quint16 port) {
    return !command.contains(kPort) || command[kPort].toInt() == port;
}

/// The services, out of one kind, that a command is meant for.
/// @throws Exception  it names a port that none of them has
template <typename Service>
std::vector<Service *> concerned(const std::vector<std::unique_ptr<Service>> &services,
                                 const QJsonObject &command) {
    std::vector<Service *> found;
    for (const auto &service : services) {
        if (concerns(command, service->listener().port()))
            found.push_back(service.get());
    }
    if (found.empty())
        throw Exception(QStringLiteral("unknown port %1").arg(command[kPort].toInt()));
    return found;
}

quint16 wantedPort(const QJsonValue &value) {
    const int port = value.toInt();
    if (port < 0 || port > 65535)
        throw Exception(QStringLiteral("%1 is no port").arg(port));
    return static_cast<quint16>(port);
}

} // namespace

StandService::StandService(const StandOptions &options, QObject *parent)
    : QObject(parent),
      m_options(options),
      m_log(!options.quiet),
      m_themes(defaultThemes()),
      m_control(
          &m_log, [this](const QJsonObject &command) { return execute(command); }, this) {}

void StandService::start() {
    // Loading takes a twentieth of a second and shows at once whether the model is there.
    if (m_options.engine == StandOptions::Engine::Acoustic)
        SphinxDecoder check(m_options.modelFolder);
    QJsonObject ports = openPorts(m_options.port, m_options.restPort);
    if (m_options.controlPort) {
        m_control.listen(*m_options.controlPort);
        ports.insert(QStringLiteral("control"), m_control.port());
    }
    m_log.add(QStringLiteral("ready"), ports);
    for (const QJsonObject &command : m_options.script.startCommands())
        execute(command);
}

QString StandService::readyLine() const {
    QString line = QStringLiteral("ready: websocket %1, rest %2")
                       .arg(m_sockets.front()->listener().port())
                       .arg(m_rests.front()->listener().port());
    if (m_options.controlPort)
        line += QStringLiteral(", control %1").arg(m_control.port());
    return line;
}

QJsonObject StandService::execute(const QJsonObject &command) {
    const QString name = command[QStringLiteral("do")].toString();
    const auto found = commands().constFind(name);
    if (found == commands().constEnd()) {
        throw Exception(QStringLiteral("unknown command \"%1\"; there are: %2")
                            .arg(name, commands().keys().join(QStringLiteral(", "))));
    }
    return (this->**found)(command);
}

const QMap<QString, StandService::Command> &StandService::commands() {
    static const QMap<QString, Command> table{
        {QStringLiteral("answers"), &StandService::setAnswers},
        {QStringLiteral("claim"), &StandService::setClaim},
        {QStringLiteral("close"), &StandService::close},
        {QStringLiteral("drop"), &StandService::drop},
        {QStringLiteral("ignorePings"), &StandService::ignorePings},
        {QStringLiteral("message"), &StandService::sendMessage},
        {QStringLiteral("open"), &StandService::open},
        {QStringLiteral("raw"), &StandService::sendRaw},
        {QStringLiteral("rest"), &StandService::setRestMode},
        {QStringLiteral("result"), &StandService::sendResult},
        {QStringLiteral("send"), &StandService::send},
        {QStringLiteral("sendBinary"), &StandService::sendBinary},
        {QStringLiteral("servers"), &StandService::setServers},
        {QStringLiteral("speak"), &StandService::speak},
        {QStringLiteral("state"), &StandService::state},
        {QStringLiteral("themes"), &StandService::setThemes},
        {QStringLiteral("websocket"), &StandService::setSocketMode},
    };
    return table;
}

QJsonObject StandService::toSessions(const QJsonObject &command, const ToSession &act) {
    int reached = 0;
    for (SocketService *service : concerned(m_sockets, command)) {
        for (RecognitionSession *session : service->sessions()) {
            act(session);
            ++reached;
        }
    }
    if (reached == 0)
        throw Exception("no client is connected");
    return QJsonObject{{QStringLiteral("sessions"), reached}};
}

QJsonObject StandService::send(const QJsonObject &command) {
    const QString text = command[kText].toString();
    const int times = command[QStringLiteral("times")].toInt(1);
    if (times < 0 || qint64(times) * text.size() > kMaxTextCharacters)
        throw Exception("that is too much text");
    const QString whole = text.repeated(times);
    return toSessions(command, [&](RecognitionSession *session) { session->sendText(whole); });
}

QJsonObject StandService::sendBinary(const QJsonObject &command) {
    const QByteArray bytes = QByteArray::fromBase64(command[kBase64].toString().toLatin1());
    return toSessions(command, [&](RecognitionSession *session) { session->sendBinary(bytes); });
}

QJsonObject StandService::sendRaw(const QJsonObject &command) {
    const QByteArray bytes = QByteArray::fromBase64(command[kBase64].toString().toLatin1());
    return toSessions(command, [&](RecognitionSession *session) { session->sendRaw(bytes); });
}

QJsonObject StandService::sendMessage(const QJsonObject &command) {
    const int type = command[QStringLiteral("type")].toInt();
    const QJsonValue data = command[QStringLiteral("data")];
    return toSessions(command,
                      [&](RecognitionSession *session) { session->sendMessage(type, data); });
}

QJsonObject StandService::sendResult(const QJsonObject &command) {
    const QJsonObject result{
        {QStringLiteral("Text"), command[kText].toString()},
        {QStringLiteral("IsFinal"), command[QStringLiteral("final")].toBool(true)},
        {QStringLiteral("CommandId"), command[QStringLiteral("commandId")].toString()},
        {QStringLiteral("Words"), command[QStringLiteral("words")].toArray()}};
    return toSessions(command, [&](RecognitionSession *session) {
        session->sendMessage(MessageType::Result, result);
    });
}

QJsonObject StandService::speak(const QJsonObject &command) {
    if (!SpeechSource::isAvailable())
        throw Exception("espeak-ng is not installed");
    const QString text = command[kText].toString();
    return toSessions(command, [&](RecognitionSession *session) { session->speak(text); });
}

QJsonObject StandService::drop(const QJsonObject &command) {
    return toSessions(command, [](RecognitionSession *session) { session->drop(); });
}

QJsonObject StandService::close(const QJsonObject &command) {
    return toSessions(command, [](RecognitionSession *session) { session->close(); });
}

QJsonObject StandService::ignorePings(const QJsonObject &command) {
    return toSessions(command, [](RecognitionSession *session) { session->ignoreIncoming(); });
}

QJsonObject StandService::setAnswers(const QJsonObject &command) {
    RecognitionSession::Answers answers;
    answers.enabled = command[QStringLiteral("enabled")].toBool(true);
    answers.lateMs = command[QStringLiteral("lateMs")].toInt();
    for (SocketService *service : concerned(m_sockets, command))
        service->setAnswers(answers);
    return QJsonObject();
}

QJsonObject StandService::setSocketMode(const QJsonObject &command) {
    const PlainListener::Mode mode = listenerMode(command);
    for (SocketService *service : concerned(m_sockets, command))
        service->listener().setMode(mode);
    return QJsonObject();
}

QJsonObject StandService::setRestMode(const QJsonObject &command) {
    const PlainListener::Mode mode = listenerMode(command);
    for (RestService *service : concerned(m_rests, command))
        service->listener().setMode(mode);
    return QJsonObject();
}

QJsonObject StandService::setThemes(const QJsonObject &command) {
    return answerFor(kTheme, command);
}

QJsonObject StandService::setServers(const QJsonObject &command) {
    QJsonObject whole = command;
    if (command.contains(kList))
        whole.insert(kList, wholeList(command));
    return answerFor(kServers, whole);
}

QJsonObject StandService::setClaim(const QJsonObject &command) {
    return answerFor(kClaim, command);
}

QJsonObject StandService::answerFor(const QString &path, const QJsonObject &command) {
    for (RestService *service : concerned(m_rests, command))
        service->setAnswer(path, command);
    return QJsonObject();
}

QJsonObject StandService::open(const QJsonObject &command) {
    return openPorts(wantedPort(command[kPort]), wantedPort(command[kRest]));
}

QJsonObject StandService::state(const QJsonObject &) {
    QJsonArray sessions;
    for (const auto &service : m_sockets) {
        for (const RecognitionSession *session : service->sessions()) {
            sessions.append(QJsonObject{{kPort, service->listener().port()},
                                        {kMode, session->mode()},
                                        {QStringLiteral("bytes"), session->soundBytes()}});
        }
    }
    return QJsonObject{{QStringLiteral("sessions"), sessions}};
}

QJsonObject StandService::openPorts(quint16 port, quint16 restPort) {
    RecognitionSession::Services services{&m_log, [this] { return makeEngine(); },
                                          [this] { return m_themes; }, nullptr};
    auto socket = std::make_unique<SocketService>(services, nullptr);
    auto rest = std::make_unique<RestService>(&m_log, nullptr);
    socket->listener().listen(port);
    rest->listener().listen(restPort);
    m_sockets.push_back(std::move(socket));
    m_rests.push_back(std::move(rest));

    RestService &opened = *m_rests.back();
    opened.setData(kServers, defaultServers());
    opened.setData(kTheme, m_themes);
    opened.setData(kClaim, QJsonObject());
    return QJsonObject{{kPort, m_sockets.back()->listener().port()},
                       {kRest, opened.listener().port()}};
}

std::unique_ptr<RecognitionEngine> StandService::makeEngine() {
    if (m_options.engine == StandOptions::Engine::Acoustic)
        return std::make_unique<AcousticEngine>(m_options.modelFolder);
    if (m_options.engine == StandOptions::Engine::Counting)
        return std::make_unique<CountingEngine>(&m_lastCounted);
    auto engine = std::make_unique<ScriptedEngine>(m_options.script);
    connect(
        engine.get(), &ScriptedEngine::commandReached, this, [this](const QJsonObject &command) {
            try {
                execute(command);
            } catch (const Exception &problem) {
                m_log.add(QStringLiteral("failed"), {{kText, QString::fromUtf8(problem.what())}});
            }
        });
    return engine;
}

QJsonObject StandService::defaultServers() const {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    ServerInfoDTO server(QJsonObject{{QStringLiteral("CanAcceptClient"), true}});
    server.setServerId(QStringLiteral("stand"));
    server.setConnectionString(QStringLiteral("127.0.0.1;%1;%2")
                                   .arg(m_sockets.front()->listener().port())
                                   .arg(m_rests.front()->listener().port()));
    server.setLastUpdateDate(now);
    ServerListDTO list;
    list.setServerList({server});
    list.setTimeStamp(now);
    QJsonObject object = list.toJson().toObject();
    // The record only reads this key: to write it is the balancer's part.
    object.insert(QStringLiteral("VacEnabled"), true);
    return object;
}
