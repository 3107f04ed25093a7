#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "commands/LaunchManager.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"
#include "recognition/LocalAvocadoManager.h"
#include "recognition/ResultManager.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

constexpr int blockBytes = 6400;

/// The numbers of the client's messages, in the order in which the stand got them.
QList<int> messages(const Stand &stand) {
    QList<int> types;
    for (const QJsonObject &event : stand.events()) {
        if (event["event"].toString() == QLatin1String("message"))
            types << event["type"].toInt();
    }
    return types;
}

QJsonObject server(const QString &id, const QString &connectionString) {
    return {{"ServerId", id}, {"ConnectionString", connectionString}};
}

void offer(Stand *stand, const QJsonArray &servers) {
    stand->tell({{"do", "servers"}, {"mode", "normal"}, {"list", servers}});
}

QList<int> numbers(std::initializer_list<ConnectionState> states) {
    QList<int> result;
    for (const ConnectionState state : states)
        result << static_cast<int>(state);
    return result;
}

using CS = ConnectionState;

} // namespace

/// The client against a stand: from nothing to ready, what goes over the wire, and every way in
/// which a connection can end.
class TestConnection : public QObject {
    Q_OBJECT

private slots:
    void opensWithItsMessagesInOrder_data();
    void opensWithItsMessagesInOrder();
    void saysNothingBeforeItIsReady();
    void dictates();
    void resumesOnTheNextServer();
    void restoresAForm();
    void startsAndStopsByVoice();
    void triesAgainForever();
    void tellsWhyItFailed_data();
    void tellsWhyItFailed();
    void skipsUnusableServers_data();
    void skipsUnusableServers();
    void closesASilentConnection();
    void noticesADeadLink();
    void endsAStalledLink();
    void stopsAtAnyTime_data();
    void stopsAtAnyTime();
};

void TestConnection::opensWithItsMessagesInOrder_data() {
    QTest::addColumn<bool>("isVoiceEnabled");
    QTest::addColumn<QString>("theme");
    QTest::addColumn<QList<int>>("expected");
    QTest::addColumn<int>("mode");
    QTest::newRow("dictionary chosen") << false << "therapy" << QList<int>{13, 9, 11, 27, 1} << 0;
    QTest::newRow("no dictionary chosen") << false << "" << QList<int>{13, 11, 27, 1} << 0;
    QTest::newRow("voice activation") << true << "therapy" << QList<int>{13, 9, 11, 27, 1} << 1;
}

void TestConnection::opensWithItsMessagesInOrder() {
    QFETCH(bool, isVoiceEnabled);
    QFETCH(QString, theme);
    Stand stand;
    ClientHarness first(stand);
    LaunchSettings().GlobalEnableVAC = isVoiceEnabled;
    LaunchSettings().VoiceActivationEnabled = isVoiceEnabled;
    ASRSettings().SelectedTheme = theme;
    first.worker()->launchManager(); // made before the settings stood
    first.asr()->setIsVoiceActivationEnabled(isVoiceEnabled);
    first.start();
    QVERIFY(first.waitFor(CS::Ready));
    const QJsonObject start = stand.waitForMessage(MessageType::StartMode);
    QTEST(start["data"].toObject()["Type"].toInt(), "mode");
    QTEST(messages(stand), "expected");
    QCOMPARE(first.states(),
             numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::WsConnected,
                      CS::ThemesRequested, CS::ThemesReceived, CS::Ready}));
    stand.rewind();
    const QString cookies =
        stand.waitFor(QStringLiteral("connected"))["headers"].toObject()["cookie"].toString();
    QCOMPARE(cookies.count(QLatin1Char('=')), 21);
    QVERIFY(cookies.contains(QStringLiteral("CLIENT_APP_NAME=Quillan Client (Linux Qt)")));
}

void TestConnection::saysNothingBeforeItIsReady() {
    Stand stand;
    ClientHarness client(stand);
    ConnectionManagerSettings().QuietConnectionEnabled = false;
    QSignalSpy asked(client.manager(), &ConnectionManager::themeCheckRequested);
    client.start();
    QVERIFY(client.waitFor(CS::ThemeCheckRequested));
    QTRY_COMPARE(asked.count(), 1);
    client.asr()->changeRecognition(); // refused: not ready
    client.asr()->stopRecognition();
    client.asr()->applyRecognitionSettings();
    client.asr()->selectedTheme();
    QMetaObject::invokeMethod(client.manager(), &ConnectionManager::onThemeCheckSuccess);
    QVERIFY(client.waitFor(CS::Ready));
    stand.waitForMessage(MessageType::StartMode);
    QCOMPARE(messages(stand), QList<int>({13, 9, 11, 27, 1}));

    client.asr()->selectedTheme();
    stand.waitForMessage(MessageType::SelectTheme);
    QCOMPARE(messages(stand).mid(5), QList<int>({1, 9}));
    client.forget();
    stand.tell("drop");
    QVERIFY2(client.waitFor(CS::Failed), "the only server has failed");
    QVERIFY(!client.states().contains(static_cast<int>(CS::ThemeCheckRequested)));
}

void TestConnection::dictates() {
    Stand stand(QJsonObject{
        {"steps",
         QJsonArray{QJsonObject{{"atBytes", 2 * blockBytes}, {"text", "раз"}, {"final", false}},
                    QJsonObject{{"atBytes", 4 * blockBytes}, {"text", "раз два"}}}}});
    ClientHarness client(stand);
    QSignalSpy results(client.worker()->resultManager(), &ResultManager::resultReady);
    client.start();
    QVERIFY(client.waitFor(CS::Ready));
    const QByteArray block(blockBytes, '\1');
    emit client.recording().SoundAvailable(block); // Off: not to be sent
    client.asr()->changeRecognition();
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::Text);
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    stand.forget();
    for (int i = 0; i < 4; ++i)
        emit client.recording().SoundAvailable(block);
    QTRY_COMPARE(results.count(), 2);
    QCOMPARE(results[0], QVariantList({"Раз", false}));
    QCOMPARE(results[1], QVariantList({"Раз два", true}));
    QTRY_COMPARE(stand.count(QStringLiteral("sound")), 4);

    client.asr()->changeRecognition();
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    emit client.recording().SoundAvailable(block);
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::Off);
    stand.tell("state");
    QCOMPARE(stand.count(QStringLiteral("sound")), 4);
}

void TestConnection::resumesOnTheNextServer() {
    Stand stand;
    const QJsonObject second = stand.tell("open");
    const QString secondString =
        QStringLiteral("127.0.0.1;%1;%2").arg(second["port"].toInt()).arg(second["rest"].toInt());
    offer(&stand, {server("first", stand.connectionString()), server("second", secondString)});
    ClientHarness client(stand);
    QSignalSpy results(client.worker()->resultManager(), &ResultManager::resultReady);
    QSignalSpy lost(client.manager(), &ConnectionManager::disconnected);
    QSignalSpy modes(client.asr(), &AsrManager::currentModeOrStateChanged);
    client.start();
    QVERIFY(client.waitFor(CS::Ready));
    client.asr()->startRecognition();
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    stand.sayResult(QStringLiteral("последние слова"), false);
    QTRY_COMPARE(results.count(), 1);

    client.forget();
    modes.clear();
    stand.forget();
    stand.tell("drop");
    QVERIFY(client.waitFor(CS::Ready));
    QCOMPARE(client.states().mid(0, 2), numbers({CS::Disconnected, CS::WsConnectionRequested}));
    QCOMPARE(lost.count(), 1);
    QVERIFY2(results.count() == 2 && results[1] == QVariantList({"Последние слова", true}),
             "what was said last is not lost");
    QCOMPARE(modes.value(0), QVariantList({QVariant::fromValue(RecognitionMode::Text),
                                           QVariant::fromValue(AsrState::Starting)}));
    const QJsonObject connected = stand.waitFor(QStringLiteral("connected"));
    QCOMPARE(connected["port"].toInt(), second["port"].toInt());
    QCOMPARE(stand.waitForMessage(MessageType::SelectTheme)["data"].toObject()["Id"].toString(),
             QStringLiteral("therapy"));
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(), 2);
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    QCOMPARE(ClientConnectionSettings().Port.get(), second["port"].toInt());
}

void TestConnection::restoresAForm() {
    Stand stand;
    ClientHarness client(stand);
    FormMetadata form;
    form.setKey(QStringLiteral("осмотр"));
    client.asr()->getTargetModeInfo()->BackupTargetMode(
        RecognitionMode::TemplatedForm, form, QStringLiteral("жалобы"), QStringLiteral("therapy"));
    client.start();
    const QJsonObject last = stand.waitForMessage(MessageType::TtsUnmute);
    QVERIFY(last["data"].isNull());
    QCOMPARE(messages(stand), QList<int>({13, 9, 11, 27, 119, 106, 105, 120}));
    stand.rewind();
    QCOMPARE(
        stand.waitForMessage(MessageType::FormDescription)["data"].toObject()["Key"].toString(),
        QStringLiteral("осмотр"));
    QCOMPARE(stand.waitForMessage(MessageType::FormElement)["data"].toString(),
             QStringLiteral("жалобы"));
}

void TestConnection::startsAndStopsByVoice() {
    Stand stand;
    {
        const ClientHarness settingsOnly(stand);
        LaunchSettings settings;
        settings.GlobalEnableVAC = true;
        settings.VoiceActivationEnabled = true;
        settings.VoiceDeactivationEnabled = true;
    }
    ClientHarness client(stand);
    {
        LaunchSettings settings;
        settings.GlobalEnableVAC = true;
        settings.VoiceActivationEnabled = true;
        settings.VoiceDeactivationEnabled = true;
    }
    client.worker()->launchManager()->updateSettings();
    client.start();
    const QJsonArray commands =
        stand.waitForMessage(MessageType::SetCommands)["data"].toObject()["Commands"].toArray();
    QCOMPARE(commands.size(), 2);
    QCOMPARE(commands[0].toObject()["Pattern"].toString(), QStringLiteral("Начать распознавание"));
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);
    stand.sayResult(QStringLiteral("просто слова")); // no command: no effect
    stand.sayResult(QString(), true, commands[0].toObject()["Id"].toString());
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::Text);
    stand.sayResult(QString(), true, commands[1].toObject()["Id"].toString());
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);

    // A change while idle reaches the server at once and restarts the idle mode.
    stand.forget();
    LaunchSettings().VoiceDeactivationEnabled = false;
    client.worker()->launchManager()->updateSettings();
    QCOMPARE(stand.waitForMessage(MessageType::SetCommands)["data"]
                 .toObject()["Commands"]
                 .toArray()
                 .size(),
             1);
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(), 1);
    client.worker()->localAvocadoManager()->UpdateWords({QStringLiteral("альфа")});
    QCOMPARE(
        stand.waitForMessage(MessageType::SetPersonalWords)["data"].toObject()["Words"].toArray(),
        QJsonArray({QStringLiteral("альфа")}));
    const LocalAvocadoManager again(client.worker()->wsClient());
    QCOMPARE(again.GetWords(), QStringList({QStringLiteral("альфа")}));
}

void TestConnection::triesAgainForever() {
    Stand stand;
    stand.tell({{"do", "servers"}, {"mode", "empty"}});
    ClientHarness client(stand);
    client.manager()->setReconnectDelay(0);
    client.start();
    const auto failures = [&client] { return client.states().count(static_cast<int>(CS::Failed)); };
    QTRY_VERIFY_WITH_TIMEOUT(failures() >= 20, 30000);
    QCOMPARE(client.message(), QStringLiteral("Не удалось получить список серверов"));
    stand.tell({{"do", "servers"}, {"mode", "normal"}});
    QVERIFY(client.waitFor(CS::Ready));
}

void TestConnection::tellsWhyItFailed_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QList<int>>("states");
    const QString noList = QStringLiteral("Не удалось получить список серверов");
    const QString noServer = QStringLiteral("Не удалось подключиться к серверу");
    const QList<int> unreached =
        numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::Failed});
    QTest::newRow("no servers") << "servers"
                                << "empty" << noList << unreached;
    QTest::newRow("balancer says garbage") << "servers"
                                           << "garbage" << noList << unreached;
    QTest::newRow("balancer reports an error") << "servers"
                                               << "fail" << noList << unreached;
    const QList<int> withoutThemes =
        numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::WsConnected,
                 CS::ThemesRequested, CS::Disconnected, CS::WsConnectionRequested, CS::Failed});
    QTest::newRow("themes fail") << "themes"
                                 << "fail" << noServer << withoutThemes;
    QTest::newRow("themes are garbage") << "themes"
                                        << "garbage" << noServer << withoutThemes;
    QTest::newRow("server refuses")
        << "websocket"
        << "refuse" << noServer
        << numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::Disconnected,
                    CS::WsConnectionRequested, CS::Failed});
}

void TestConnection::tellsWhyItFailed() {
    QFETCH(QString, command);
    QFETCH(QString, mode);
    Stand stand;
    stand.tell({{"do", command}, {"mode", mode}});
    ClientHarness client(stand);
    QString reason;
    connect(client.asr(), &AsrManager::errorNotification, this,
            [&reason](const QString &error) { reason = error; });
    client.start();
    QVERIFY(client.waitFor(CS::Failed));
    QTEST(client.message(), "message");
    QTEST(client.states(), "states");
    client.asr()->startRecognition();
    QTEST(reason, "message");
}

void TestConnection::skipsUnusableServers_data() {
    QTest::addColumn<QString>("connectionString");
    QTest::newRow("too few parts") << "127.0.0.1;1";
    QTest::newRow("nothing but separators") << ";;;";
    QTest::newRow("empty") << "";
    QTest::newRow("no numbers") << "127.0.0.1;abc;def";
    QTest::newRow("a port out of range") << "127.0.0.1;99999999;1";
    QTest::newRow("no host") << " ;34000;39255";
    QTest::newRow("the local interface for forms") << "localhost;33999;1";
    QTest::newRow("nobody listens") << "127.0.0.1;1;1";
    QTest::newRow("percent signs") << "%1%2;5;5";
}

void TestConnection::skipsUnusableServers() {
    QFETCH(QString, connectionString);
    Stand stand;
    offer(&stand, {server("bad", connectionString), server("good", stand.connectionString())});
    ClientHarness client(stand);
    client.start();
    QVERIFY2(client.waitFor(CS::Ready, 20000), qPrintable(client.message()));
    QCOMPARE(ClientConnectionSettings().Port.get(), int(stand.port()));
}

void TestConnection::closesASilentConnection() {
    Stand stand;
    stand.tell({{"do", "websocket"}, {"mode", "silent"}});
    ClientHarness client(stand);
    client.start();
    QElapsedTimer timer;
    QVERIFY(client.waitFor(CS::WsConnectionRequested));
    timer.start();
    QVERIFY(client.waitFor(CS::Disconnected));
    QVERIFY2(timer.elapsed() > 2500 && timer.elapsed() < 5000,
             qPrintable(QString::number(timer.elapsed())));
    QVERIFY(client.waitFor(CS::Failed));
}

void TestConnection::noticesADeadLink() {
    Stand stand;
    ClientHarness client(stand);
    client.start();
    QVERIFY(client.waitFor(CS::Ready));
    QElapsedTimer timer;
    timer.start();
    stand.tell("ignorePings");
    QVERIFY(client.waitFor(CS::Disconnected, 20000));
    QVERIFY2(timer.elapsed() > 7000 && timer.elapsed() < 15000,
             qPrintable(QString::number(timer.elapsed())));
}

void TestConnection::endsAStalledLink() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            const QByteArray request = socket->readAll();
            const int at = request.indexOf("Sec-WebSocket-Key: ") + 19;
            const QByteArray key = request.mid(at, request.indexOf("\r\n", at) - at);
            const QByteArray answer = QCryptographicHash::hash(
                key + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11", QCryptographicHash::Sha1);
            socket->write("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\n"
                          "Connection: Upgrade\r\nSec-WebSocket-Accept: " +
                          answer.toBase64() + "\r\n\r\n");
            // From here on it takes nothing more, and does not close either.
            socket->setReadBufferSize(1);
            QObject::disconnect(socket, &QTcpSocket::readyRead, socket, nullptr);
        });
    });
    WebSocketClient client(nullptr);
    QSignalSpy connected(&client, &WebSocketConnection::connected);
    QSignalSpy disconnected(&client, &WebSocketConnection::disconnected);
    emit client.open(QStringLiteral("127.0.0.1"), server.serverPort(), false);
    QVERIFY(connected.wait());
    for (int i = 0; i < 40; ++i)
        client.sendDataBytes(QByteArray(1000000, '\1'));
    QElapsedTimer timer;
    timer.start();
    emit client.close();
    QVERIFY2(disconnected.wait(8000), "a peer that reads nothing does not hold the socket open");
    QVERIFY(timer.elapsed() < 5000);
}

void TestConnection::stopsAtAnyTime_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("state");
    const auto row = [](const char *name, const char *command, const char *mode, CS state) {
        QTest::newRow(name) << command << mode << static_cast<int>(state);
    };
    row("while the balancer is silent", "servers", "silent", CS::WsConnectionRequested);
    row("while the socket opens", "websocket", "silent", CS::WsConnectionRequested);
    row("while the themes are fetched", "themes", "silent", CS::ThemesRequested);
    row("when ready", "themes", "normal", CS::Ready);
    row("between two passes", "servers", "empty", CS::Failed);
}

void TestConnection::stopsAtAnyTime() {
    QFETCH(QString, command);
    QFETCH(QString, mode);
    QFETCH(int, state);
    Stand stand;
    stand.tell({{"do", command}, {"mode", mode}});
    ClientHarness client(stand);
    client.start();
    QVERIFY(client.waitFor(static_cast<ConnectionState>(state)));
    QElapsedTimer timer;
    timer.start();
    client.stop();
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    stand.tell({{"do", command}, {"mode", command == "websocket" ? "accept" : "normal"}});
    client.forget();
    client.start();
    QVERIFY2(client.waitFor(CS::Ready), "a new start begins from the beginning");
}

DESK_CORE_TEST_MAIN(TestConnection)
#include "TestConnection.moc"
