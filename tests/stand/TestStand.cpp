#include "desk/DeskTest.h"
#include "desk/Stand.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSignalSpy>
#include <QWebSocket>

#include <csignal>

namespace {

QJsonObject json(const char *text) {
    return QJsonDocument::fromJson(text).object();
}

/// A client of the stand that keeps what it receives.
class Client {
public:
    explicit Client(const Stand &stand) {
        QObject::connect(&socket, &QWebSocket::textMessageReceived, &socket,
                         [this](const QString &text) { received.append(describe(text)); });
        QObject::connect(&socket, &QWebSocket::binaryMessageReceived, &socket,
                         [this](const QByteArray &frame) { speechBytes += frame.size(); });
        QSignalSpy connected(&socket, &QWebSocket::connected);
        socket.open(QUrl(QStringLiteral("ws://127.0.0.1:%1/").arg(stand.port())));
        connected.wait(5000);
    }

    void send(int type, const QJsonValue &data) {
        const QJsonObject envelope{{QStringLiteral("MessageType"), type},
                                   {QStringLiteral("Data"), data}};
        socket.sendTextMessage(QString::fromUtf8(QJsonDocument(envelope).toJson()));
    }
    void startMode(const QJsonValue &mode) { send(1, QJsonObject{{QStringLiteral("Type"), mode}}); }

    QWebSocket socket;
    QStringList received;
    int speechBytes = 0;

private:
    /// A message in short: "2:1/0" is mode 1 in state 0, "3:text!" a final
    /// result.
    static QString describe(const QString &text) {
        const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
        const QJsonValue value = object[QStringLiteral("Data")];
        const QJsonObject data = value.toObject();
        const QString type = QString::number(object[QStringLiteral("MessageType")].toInt());
        if (type == QLatin1String("2")) {
            return QStringLiteral("2:%1/%2")
                .arg(data[QStringLiteral("Mode")].toInt())
                .arg(data[QStringLiteral("State")].toInt());
        }
        if (type == QLatin1String("3")) {
            const bool isFinal = data[QStringLiteral("IsFinal")].toBool();
            return QStringLiteral("3:%1%2%3")
                .arg(data[QStringLiteral("Text")].toString(), isFinal ? "!" : "?",
                     data[QStringLiteral("CommandId")].toString());
        }
        return type + QLatin1Char(':') + data[QStringLiteral("Key")].toString() +
               data[QStringLiteral("Value")].toString() + value.toString();
    }
};

} // namespace

/// The built program, on its ports.
class TestStand : public QObject {
    Q_OBJECT

private slots:
    void refusesTlsAtOnce_data();
    void refusesTlsAtOnce();
    void answersHttp_data();
    void answersHttp();
    void explainsBadStarts_data();
    void explainsBadStarts();
    void walksThroughTheModes();
    void matchesCommandsInEveryMode_data();
    void matchesCommandsInEveryMode();
    void leadsThroughAForm();
    void speaks();
    void bringsFaultsAbout();
    void refusesConnectionsOnDemand();
    void failsTheThemesOnDemand_data();
    void failsTheThemesOnDemand();
    void endsWithStatusZero_data();
    void endsWithStatusZero();
};

void TestStand::refusesTlsAtOnce_data() {
    QTest::addColumn<bool>("rest");
    QTest::newRow("rest port") << true;
    QTest::newRow("websocket port") << false;
}

void TestStand::refusesTlsAtOnce() {
    QFETCH(bool, rest);
    Stand stand;
    QTcpSocket socket;
    QSignalSpy closed(&socket, &QTcpSocket::disconnected);
    socket.connectToHost(QHostAddress::LocalHost, rest ? stand.restPort() : stand.port());
    QVERIFY(socket.waitForConnected());
    socket.write(QByteArray::fromHex("160301020001000 1fc0303"));
    QVERIFY(!closed.isEmpty() || closed.wait(1000));
    QVERIFY(!stand.waitFor(QStringLiteral("tls")).isEmpty());
    // The port goes on taking plain connections.
    Client client(stand);
    QVERIFY(!stand.waitFor(QStringLiteral("connected")).isEmpty());
}

void TestStand::answersHttp_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("themes") << QByteArray("GET /api/Theme HTTP/1.1\r\nHost: a\r\n\r\n")
                            << QByteArray("200") << QByteArray("\"Id\":\"therapy\"");
    QTest::newRow("servers") << QByteArray("POST /api/Servers?clientId=%41 "
                                           "HTTP/1.1\r\nContent-Length: 0\r\n\r\n")
                             << QByteArray("200")
                             << QByteArray("\"ConnectionString\":\"127.0.0.1;");
    QTest::newRow("claim with a body")
        << QByteArray("POST /api/Claim HTTP/1.1\r\nContent-Length: 2\r\n\r\n{}")
        << QByteArray("200") << QByteArray("\"Error\":null");
    QTest::newRow("wrong method") << QByteArray("GET /api/Claim HTTP/1.1\r\n\r\n")
                                  << QByteArray("405") << QByteArray();
    QTest::newRow("unknown path") << QByteArray("GET /api/Thema HTTP/1.1\r\n\r\n")
                                  << QByteArray("404") << QByteArray();
    QTest::newRow("no HTTP") << QByteArray("hello\r\n\r\n") << QByteArray("400") << QByteArray();
    QTest::newRow("negative length")
        << QByteArray("POST /api/Claim HTTP/1.1\r\nContent-Length: -1\r\n\r\n") << QByteArray("400")
        << QByteArray();
    QTest::newRow("endless head") << QByteArray(70000, 'a') << QByteArray("413") << QByteArray();
}

void TestStand::answersHttp() {
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, status);
    QFETCH(QByteArray, body);
    static Stand stand;
    QTcpSocket socket;
    QSignalSpy closed(&socket, &QTcpSocket::disconnected);
    socket.connectToHost(QHostAddress::LocalHost, stand.restPort());
    QVERIFY(socket.waitForConnected());
    // In two pieces, as a network may deliver it.
    socket.write(request.left(request.size() / 2));
    QVERIFY(socket.waitForBytesWritten());
    socket.write(request.mid(request.size() / 2));
    QVERIFY(!closed.isEmpty() || closed.wait(5000));
    const QByteArray answer = socket.readAll();
    QVERIFY2(answer.startsWith("HTTP/1.1 " + status), answer.constData());
    QVERIFY2(answer.contains(body), answer.constData());
}

void TestStand::explainsBadStarts_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const QStringList ports{"--port", "0", "--rest-port", "0"};
    QTest::newRow("unknown option") << QStringList{"--prot", "1"} << "'prot'";
    QTest::newRow("port out of range") << QStringList{"--port", "70000"} << "--port wants";
    QTest::newRow("unknown engine") << QStringList{"--engine", "magic"} << "no engine \"magic\"";
    QTest::newRow("no model") << ports + QStringList{"--model", "/nowhere"}
                              << "/nowhere/model/mdef";
    QTest::newRow("no script") << QStringList{"--script", "/nowhere.json"} << "/nowhere.json";
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
}

void TestStand::matchesCommandsInEveryMode_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("dictated");
    QTest::newRow("voice activation") << 1 << QString();
    QTest::newRow("dictation") << 2 << "3:текст!";
    QTest::newRow("form") << 3 << "209:текст";
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
    client.send(105, QStringLiteral("a"));
    client.socket.sendBinaryMessage(QByteArray(2, 0));
    client.send(107, 0);
    const QStringList expected{"2:4/0",       "2:4/1", "200:",  "202:a", "201:aкашель", "202:b",
                               "201:bодышка", "2:4/3", "2:4/2", "2:0/0", "2:0/1"};
    QTRY_COMPARE(client.received, expected);
}

void TestStand::speaks() {
    Stand stand;
    Client client(stand);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    client.send(21, QJsonObject());
    QTRY_VERIFY(client.received.contains("22:"));
    stand.tell(json(R"({"do":"speak","text":"Проверка синтеза речи."})"));
    // A second of speech at the least, without the header of a file.
    QTRY_VERIFY(client.speechBytes > 44100);
    QCOMPARE(client.speechBytes % 2, 0);
}

void TestStand::bringsFaultsAbout() {
    Stand stand;
    Client client(stand);
    QSignalSpy pongs(&client.socket, &QWebSocket::pong);
    QSignalSpy gone(&client.socket, &QWebSocket::disconnected);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    client.socket.ping();
    QVERIFY(!pongs.isEmpty() || pongs.wait(5000));

    stand.tell(json(R"({"do":"answers","enabled":false})"));
    client.startMode(2);
    QCOMPARE(stand.waitForMessage(1)["data"].toObject()["Type"].toInt(), 2);
    stand.tell(json(R"({"do":"send","text":"[","times":3})"));
    QTRY_COMPARE(client.received, QStringList{"0:"});

    stand.tell("ignorePings");
    client.socket.ping();
    stand.sayResult("ещё слышно");
    QTRY_COMPARE(client.received.last(), QString("3:ещё слышно!"));
    QCOMPARE(pongs.count(), 1);
    stand.tell("drop");
    QVERIFY(!gone.isEmpty() || gone.wait(5000));
    QVERIFY_EXCEPTION_THROWN(stand.tell("drop"), std::runtime_error);
    QVERIFY_EXCEPTION_THROWN(stand.tell("fly"), std::runtime_error);
}

void TestStand::refusesConnectionsOnDemand() {
    Stand stand;
    stand.tell(json(R"({"do":"websocket","mode":"refuse"})"));
    QTcpSocket socket;
    QSignalSpy connected(&socket, &QTcpSocket::connected);
    socket.connectToHost(QHostAddress::LocalHost, stand.port());
    QTRY_COMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
    QVERIFY(connected.isEmpty());
    stand.tell(json(R"({"do":"websocket","mode":"accept"})"));
    const Client client(stand);
    QVERIFY(!stand.waitFor("connected").isEmpty());
    const QJsonObject ports = stand.tell("open");
    QVERIFY(ports["port"].toInt() > 0 && ports["port"].toInt() != stand.port());
}

void TestStand::failsTheThemesOnDemand_data() {
    QTest::addColumn<QJsonObject>("command");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("error object") << json(R"({"mode":"fail"})") << QByteArray("\"DebugText\"");
    QTest::newRow("no themes") << json(R"({"mode":"empty"})") << QByteArray("\"Data\":[]");
    QTest::newRow("garbage") << json(R"({"mode":"garbage","text":"}{"})") << QByteArray("\r\n}{");
    QTest::newRow("status") << json(R"({"mode":"status","status":503})")
                            << QByteArray("HTTP/1.1 503");
    QTest::newRow("late") << json(R"({"mode":"late","delayMs":50})") << QByteArray("therapy");
    QTest::newRow("other themes") << json(R"({"list":[{"Id":"x"}]})")
                                  << QByteArray("[{\"Id\":\"x\"}]");
}

void TestStand::failsTheThemesOnDemand() {
    QFETCH(QJsonObject, command);
    QFETCH(QByteArray, answer);
    static Stand stand;
    command.insert("do", "themes");
    stand.tell(command);
    QTcpSocket socket;
    QSignalSpy closed(&socket, &QTcpSocket::disconnected);
    socket.connectToHost(QHostAddress::LocalHost, stand.restPort());
    QVERIFY(socket.waitForConnected());
    socket.write("GET /api/Theme HTTP/1.1\r\n\r\n");
    QVERIFY(!closed.isEmpty() || closed.wait(5000));
    const QByteArray whole = socket.readAll();
    QVERIFY2(whole.contains(answer), whole.constData());
}

void TestStand::endsWithStatusZero_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void TestStand::endsWithStatusZero() {
    QFETCH(int, signal);
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

int main(int argc, char **argv) {
    return runOnDesk<QCoreApplication, TestStand>(argc, argv, VirtualDesk::Folders);
}

#include "TestStand.moc"
