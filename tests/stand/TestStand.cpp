#include "desk/DeskTest.h"
#include "desk/Stand.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QProcess>
#include <QSignalSpy>
#include <QWebSocket>

#include <csignal>

namespace {

QJsonObject json(const char *text) {
    return QJsonDocument::fromJson(text).object();
}

/// What the stand answers to a request, which comes in two pieces, as over a network.
QByteArray ask(const Stand &stand, const QByteArray &request) {
    QTcpSocket socket;
    QSignalSpy closed(&socket, &QTcpSocket::disconnected);
    socket.connectToHost(QHostAddress::LocalHost, stand.restPort());
    socket.waitForConnected();
    socket.write(request.left(request.size() / 2));
    socket.waitForBytesWritten();
    socket.write(request.mid(request.size() / 2));
    if (closed.isEmpty())
        closed.wait(patienceMs);
    return socket.readAll();
}

/// A client of the stand that keeps what it receives.
class Client {
public:
    explicit Client(const Stand &stand) {
        QObject::connect(&socket, &QWebSocket::textMessageReceived, &socket,
                         [this](const QString &text) { received.append(describe(text)); });
        QSignalSpy connected(&socket, &QWebSocket::connected);
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/").arg(stand.port())));
        connected.wait(patienceMs);
    }

    void send(int type, const QJsonValue &data) {
        const QJsonObject envelope{{"MessageType", type}, {"Data", data}};
        socket.sendTextMessage(QString::fromUtf8(QJsonDocument(envelope).toJson()));
    }
    void startMode(const QJsonValue &mode) { send(1, QJsonObject{{"Type", mode}}); }

    QWebSocket socket;
    QStringList received;

private:
    /// A message in short: "2:1/0" is mode 1 in state 0, "3:text!" a final
    /// result.
    static QString describe(const QString &text) {
        const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
        const QJsonValue value = object["Data"];
        const QJsonObject data = value.toObject();
        const QString type = QString::number(object["MessageType"].toInt());
        if (type == "2") {
            return QStringLiteral("2:%1/%2").arg(data["Mode"].toInt()).arg(data["State"].toInt());
        }
        if (type == "3") {
            const bool isFinal = data["IsFinal"].toBool();
            return QStringLiteral("3:%1%2%3")
                .arg(data["Text"].toString(), isFinal ? "!" : "?", data["CommandId"].toString());
        }
        return type + QLatin1Char(':') + data["Key"].toString() + data["Value"].toString() +
               value.toString();
    }
};

} // namespace

/// The built program, on its ports.
class TestStand : public QObject {
    Q_OBJECT

private slots:
    void refusesBadRequests_data();
    void refusesBadRequests();
    void answersAsTold();
    void explainsBadStarts_data();
    void explainsBadStarts();
    void walksThroughTheModes();
    void matchesCommandsInEveryMode_data();
    void matchesCommandsInEveryMode();
    void leadsThroughAForm();
    void endsWithStatusZero();
};

void TestStand::refusesBadRequests_data() {
    columns<QString, int>("request", "status");
    row("wrong method", "GET /api/Claim HTTP/1.1\r\n\r\n", 405);
    row("unknown path", "GET /api/Thema HTTP/1.1\r\n\r\n", 404);
    row("no HTTP", "hello\r\n\r\n", 400);
    row("negative length", "POST /api/Claim HTTP/1.1\r\nContent-Length: -1\r\n\r\n", 400);
    row("endless head", QString(70000, 'a'), 413);
}

void TestStand::refusesBadRequests() {
    QFETCH(QString, request);
    QFETCH(int, status);
    static Stand stand;
    const QByteArray answer = ask(stand, request.toUtf8());
    QVERIFY2(answer.startsWith("HTTP/1.1 " + QByteArray::number(status)), answer.constData());
}

void TestStand::answersAsTold() {
    Stand stand;
    const QByteArray request = "GET /api/Theme HTTP/1.1\r\n\r\n";
    stand.tell(json(R"({"do":"themes","mode":"status","status":503})"));
    QVERIFY(ask(stand, request).startsWith("HTTP/1.1 503"));
    stand.tell(json(R"({"do":"themes","mode":"late","delayMs":50})"));
    QVERIFY(ask(stand, request).contains("therapy"));
    QVERIFY_EXCEPTION_THROWN(stand.tell("fly"), std::runtime_error);
}

void TestStand::explainsBadStarts_data() {
    columns<QStringList, QString>("arguments", "complaint");
    const QStringList ports{"--port", "0", "--rest-port", "0"};
    row("unknown option", QStringList{"--prot", "1"}, "'prot'");
    row("port out of range", QStringList{"--port", "70000"}, "--port wants");
    row("unknown engine", QStringList{"--engine", "magic"}, "no engine \"magic\"");
    row("no model", ports + QStringList{"--model", "/nowhere"}, "/nowhere/model/mdef");
    row("no script", QStringList{"--script", "/nowhere.json"}, "/nowhere.json");
}

void TestStand::explainsBadStarts() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/vellumar-stand", arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    const QString words = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(words.contains(complaint), qPrintable(words));
}

void TestStand::walksThroughTheModes() {
    Stand stand(json(R"({"steps":[{"atBytes":2,"text":"раз","final":false},
                                  {"atStop":true,"text":"раз два"}]})"));
    Client client(stand);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    client.startMode(0);
    client.startMode(QJsonValue());
    client.socket.sendBinaryMessage(QByteArray(2, 0));
    client.startMode(QJsonValue());
    client.startMode(7);
    client.startMode(1);
    const QStringList expected{"2:0/0", "2:0/1", "2:0/3",      "2:0/2", "2:2/0", "2:2/1", "3:раз?",
                               "2:2/1", "2:2/3", "3:раз два!", "2:2/2", "2:1/0", "2:1/1"};
    QTRY_COMPARE(client.received, expected);
    QCOMPARE(stand.waitFor("sound")["bytes"].toInt(), 2);
    client.send(21, QJsonObject());
    QTRY_VERIFY(client.received.contains("22:"));
}

void TestStand::matchesCommandsInEveryMode_data() {
    columns<int, QString>("mode", "dictated");
    row("voice activation", 1, "");
    row("dictation", 2, "3:текст!");
    row("form", 3, "209:текст");
}

void TestStand::matchesCommandsInEveryMode() {
    QFETCH(int, mode);
    QFETCH(QString, dictated);
    Stand stand(json(R"({"steps":[{"atBytes":2,"text":"текст"},
                                  {"atBytes":2,"text":"начать распознавание в"}]})"));
    Client client(stand);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    client.send(11,
                json(R"({"Commands":[{"Id":"c1","Pattern":"Начать распознавание","Type":1}]})"));
    client.startMode(mode);
    client.socket.sendBinaryMessage(QByteArray(2, 0));
    QTRY_VERIFY(client.received.contains("3:начать распознавание в!c1"));
    const QStringList results = client.received.filter("текст");
    QCOMPARE(results.join(','), dictated);
}

void TestStand::leadsThroughAForm() {
    Stand stand(json(R"({"steps":[{"atBytes":2,"text":"кашель"},
                                  {"atBytes":2,"text":"следующее поле"},
                                  {"atBytes":2,"text":"одышка"}]})"));
    Client client(stand);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    client.send(106,
                json(R"({"Mode":1,"Childs":[{"Key":"g","Childs":[{"Key":"a"}]},{"Key":"b"}]})"));
    client.send(105, "a");
    client.socket.sendBinaryMessage(QByteArray(2, 0));
    client.send(107, 0);
    const QStringList expected{"2:4/0",       "2:4/1", "200:",  "202:a", "201:aкашель", "202:b",
                               "201:bодышка", "2:4/3", "2:4/2", "2:0/0", "2:0/1"};
    QTRY_COMPARE(client.received, expected);
}

void TestStand::endsWithStatusZero() {
    for (const int signal : {SIGTERM, SIGINT}) {
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + "/vellumar-stand",
                      {"--port", "0", "--rest-port", "0", "--quiet"});
        QVERIFY(process.waitForReadyRead());
        QVERIFY(process.readAll().startsWith("ready: websocket "));
        ::kill(static_cast<pid_t>(process.processId()), signal);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
    }
}

DESK_CORE_TEST_MAIN(TestStand)
#include "TestStand.moc"
