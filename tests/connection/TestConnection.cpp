#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "commands/LaunchManager.h"
#include "connection/ConnectionHeartbeat.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"
#include "recognition/LocalAvocadoManager.h"
#include "recognition/ResultManager.h"

#include <QElapsedTimer>
#include <QHostInfo>
#include <QSignalSpy>
#include <QTcpServer>
#include <QWebSocket>

#include <dlfcn.h>
#include <netdb.h>

using CS = ConnectionState;
Q_DECLARE_METATYPE(CS)

namespace {

constexpr int blockBytes = 6400;

/// What the next message of this number carries.
QJsonObject dataOf(Stand *stand, int type) {
    return stand->waitForMessage(type)["data"].toObject();
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

/// Lets look-ups of names that end in ".stalled" take until answer() or the end of this object.
class StalledNames {
public:
    StalledNames() { mutex().lock(); }
    ~StalledNames() { mutex().unlock(); }
    /// Returns when what was asked so far is answered and the answers have been handled.
    void answer() const {
        mutex().unlock();
        bool isAnswered = false;
        // One look-up of a name waits for the other.
        QHostInfo::lookupHost("speech.stalled", QCoreApplication::instance(),
                              [&](const QHostInfo &) { isAnswered = true; });
        QTRY_VERIFY(isAnswered);
        mutex().lock();
    }
    static QMutex &mutex() {
        static QMutex instance;
        return instance;
    }
};

} // namespace

/// Stands in for the system's, so that a name server can be slow.
extern "C" int getaddrinfo(const char *node, const char *service, const addrinfo *hints,
                           addrinfo **result) {
    static const auto original =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (!QByteArray(node).endsWith(".stalled"))
        return original(node, service, hints, result);
    const QMutexLocker locker(&StalledNames::mutex());
    return EAI_AGAIN;
}

/// The client against a stand: from nothing to ready, what goes over the wire, and every way in
/// which a connection can end.
class TestConnection : public QObject {
    Q_OBJECT

private slots:
    void opensWithItsMessagesInOrder_data() {
        columns<QString, QList<int>>("theme", "expected");
        row("dictionary chosen", "therapy", QList<int>{13, 9, 11, 27, 1});
        row("no dictionary chosen", "", QList<int>{13, 11, 27, 1});
    }

    void opensWithItsMessagesInOrder() {
        QFETCH(QString, theme);
        Stand stand;
        ClientHarness client(stand);
        ASRSettings().SelectedTheme = theme;
        QVERIFY(client.open());
        QCOMPARE(dataOf(&stand, MessageType::StartMode)["Type"].toInt(), 0);
        QTEST(client.messages(stand), "expected");
        QCOMPARE(client.states(),
                 numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::WsConnected,
                          CS::ThemesRequested, CS::ThemesReceived, CS::Ready}));
        stand.rewind();
        const QString cookies =
            stand.waitFor("connected")["headers"].toObject()["cookie"].toString();
        QCOMPARE(cookies.count('='), 21);
    }

    void saysNothingBeforeItIsReady() {
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
        QCOMPARE(client.messages(stand), QList<int>({13, 9, 11, 27, 1}));

        client.asr()->selectedTheme();
        stand.waitForMessage(MessageType::SelectTheme);
        QCOMPARE(client.messages(stand).mid(5), QList<int>({1, 9}));
        client.forget();
        stand.tell("drop");
        QVERIFY2(client.waitFor(CS::Failed), "the only server has failed");
        QVERIFY(!client.states().contains(static_cast<int>(CS::ThemeCheckRequested)));
    }

    void dictates() {
        Stand stand(QJsonObject{
            {"steps",
             QJsonArray{QJsonObject{{"atBytes", 2 * blockBytes}, {"text", "раз"}, {"final", false}},
                        QJsonObject{{"atBytes", 4 * blockBytes}, {"text", "раз два"}}}}});
        ClientHarness client(stand);
        QSignalSpy results(client.worker()->resultManager(), &ResultManager::resultReady);
        QVERIFY(client.open());
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
        QTRY_COMPARE(stand.count("sound"), 4);

        client.asr()->changeRecognition();
        QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
        emit client.recording().SoundAvailable(block);
        QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::Off);
        stand.tell("state");
        QCOMPARE(stand.count("sound"), 4);
    }

    void resumesOnTheNextServer() {
        Stand stand;
        const QJsonObject second = stand.tell("open");
        const QString secondString = QStringLiteral("127.0.0.1;%1;%2")
                                         .arg(second["port"].toInt())
                                         .arg(second["rest"].toInt());
        offer(&stand, {server("first", stand.connectionString()), server("second", secondString)});
        ClientHarness client(stand);
        QSignalSpy results(client.worker()->resultManager(), &ResultManager::resultReady);
        QSignalSpy lost(client.manager(), &ConnectionManager::disconnected);
        QSignalSpy modes(client.asr(), &AsrManager::currentModeOrStateChanged);
        QVERIFY(client.open());
        QVERIFY(client.dictate());
        stand.sayResult("последние слова", false);
        QTRY_COMPARE(results.count(), 1);

        const int lostConnection = client.worker()->wsClient()->connectionNumber();
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
        const QJsonObject connected = stand.waitFor("connected");
        QCOMPARE(connected["port"].toInt(), second["port"].toInt());
        QCOMPARE(dataOf(&stand, MessageType::SelectTheme)["Id"].toString(), "therapy");
        QCOMPARE(dataOf(&stand, MessageType::StartMode)["Type"].toInt(), 2);
        QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
        QCOMPARE(ClientConnectionSettings().Port.get(), second["port"].toInt());

        emit client.heartbeat()->timeout(lostConnection);
        QMetaObject::invokeMethod(
            client.manager(), [] {}, Qt::BlockingQueuedConnection);
        const auto socketState = [&] { return client.worker()->wsClient()->socket()->state(); };
        QAbstractSocket::SocketState state{};
        QMetaObject::invokeMethod(client.worker(), socketState, Qt::BlockingQueuedConnection,
                                  &state);
        QVERIFY2(state == QAbstractSocket::ConnectedState, "late news of the other connection");
    }

    void restoresAForm() {
        Stand stand;
        ClientHarness client(stand);
        FormMetadata form;
        form.setKey("осмотр");
        client.asr()->getTargetModeInfo()->BackupTargetMode(RecognitionMode::TemplatedForm, form,
                                                            "жалобы", "therapy");
        client.start();
        const QJsonObject last = stand.waitForMessage(MessageType::TtsUnmute);
        QVERIFY(last["data"].isNull());
        QCOMPARE(client.messages(stand), QList<int>({13, 9, 11, 27, 119, 106, 105, 120}));
        stand.rewind();
        QCOMPARE(dataOf(&stand, MessageType::FormDescription)["Key"].toString(), "осмотр");
        QCOMPARE(stand.waitForMessage(MessageType::FormElement)["data"].toString(), "жалобы");
    }

    void startsAndStopsByVoice() {
        Stand stand;
        ClientHarness client(stand);
        client.enableVoice();
        client.worker()->launchManager()->updateSettings();
        client.start();
        const QJsonArray commands = dataOf(&stand, MessageType::SetCommands)["Commands"].toArray();
        QCOMPARE(commands.size(), 2);
        QCOMPARE(commands[0].toObject()["Pattern"].toString(), "Начать распознавание");
        QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);
        stand.sayResult("просто слова"); // no command: no effect
        stand.sayResult(QString(), true, commands[0].toObject()["Id"].toString());
        QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::Text);
        stand.sayResult(QString(), true, commands[1].toObject()["Id"].toString());
        QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);

        // A change while idle reaches the server at once and restarts the idle mode.
        stand.forget();
        LaunchSettings().VoiceDeactivationEnabled = false;
        client.worker()->launchManager()->updateSettings();
        QCOMPARE(dataOf(&stand, MessageType::SetCommands)["Commands"].toArray().size(), 1);
        QCOMPARE(dataOf(&stand, MessageType::StartMode)["Type"].toInt(), 1);
        client.worker()->localAvocadoManager()->UpdateWords({"альфа"});
        QCOMPARE(dataOf(&stand, MessageType::SetPersonalWords)["Words"].toArray(),
                 QJsonArray({"альфа"}));
        const LocalAvocadoManager again(client.worker()->wsClient());
        QCOMPARE(again.GetWords(), QStringList({"альфа"}));
    }

    void triesAgainForever() {
        Stand stand;
        stand.tell({{"do", "servers"}, {"mode", "empty"}});
        ClientHarness client(stand);
        client.manager()->setReconnectDelay(0);
        client.start();
        const auto failures = [&client] {
            return client.states().count(static_cast<int>(CS::Failed));
        };
        QTRY_VERIFY_WITH_TIMEOUT(failures() >= 20, 30000);
        QCOMPARE(client.message(), "Не удалось получить список серверов");
        stand.tell({{"do", "servers"}, {"mode", "normal"}});
        QVERIFY(client.waitFor(CS::Ready));
    }

    void tellsWhyItFailed_data() {
        columns<QString, QString, QString, QList<int>>("command", "mode", "message", "states");
        const QString noList = "Не удалось получить список серверов";
        const QString noServer = "Не удалось подключиться к серверу";
        const QList<int> unreached =
            numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::Failed});
        row("no servers", "servers", "empty", noList, unreached);
        row("balancer says garbage", "servers", "garbage", noList, unreached);
        row("balancer reports an error", "servers", "fail", noList, unreached);
        const QList<int> withoutThemes =
            numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::WsConnected,
                     CS::ThemesRequested, CS::Disconnected, CS::WsConnectionRequested, CS::Failed});
        row("themes fail", "themes", "fail", noServer, withoutThemes);
        row("themes are garbage", "themes", "garbage", noServer, withoutThemes);
        row("server refuses", "websocket", "refuse", noServer,
            numbers({CS::BalancerRequested, CS::WsConnectionRequested, CS::Disconnected,
                     CS::WsConnectionRequested, CS::Failed}));
    }

    void tellsWhyItFailed() {
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

    void skipsUnusableServers_data() {
        QTest::addColumn<QString>("connectionString");
        row("too few parts", "127.0.0.1;1");
        row("empty", "");
        row("no numbers", "127.0.0.1;abc;def");
        row("a port out of range", "127.0.0.1;99999999;1");
        row("no host", " ;34000;39255");
        row("the local interface for forms", "localhost;33999;1");
        row("nobody listens", "127.0.0.1;1;1");
        row("percent signs", "%1%2;5;5");
    }

    void skipsUnusableServers() {
        QFETCH(QString, connectionString);
        Stand stand;
        offer(&stand, {server("bad", connectionString), server("good", stand.connectionString())});
        ClientHarness client(stand);
        client.start();
        QVERIFY2(client.waitFor(CS::Ready, 20000), qPrintable(client.message()));
        QCOMPARE(ClientConnectionSettings().Port.get(), int(stand.port()));
    }

    void givesUpAConnect_data() {
        columns<QString, bool>("where", "useTls");
        row("the server is silent", "silent", false);
        row("the server is silent, TLS", "silent", true);
        row("the look-up stalls", "stalled", false);
        row("the look-up stalls, TLS", "stalled", true);
    }

    void givesUpAConnect() {
        QFETCH(QString, where);
        QFETCH(bool, useTls);
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        const StalledNames names;
        const QString host = where == "stalled" ? "speech.stalled" : "127.0.0.1";
        const int port = silent.serverPort();
        WebSocketClient client(nullptr);
        QSignalSpy connected(&client, &WebSocketConnection::connected);
        QSignalSpy disconnected(&client, &WebSocketConnection::disconnected);
        QElapsedTimer timer;
        timer.start();
        emit client.open(host, port, useTls);
        QTRY_COMPARE_WITH_TIMEOUT(disconnected.count(), 1, 60000);
        QVERIFY2(timer.elapsed() > 2500 && timer.elapsed() < 5000,
                 qPrintable(QString::number(timer.elapsed())));
        emit client.open(host, port, useTls);
        QCoreApplication::processEvents();
        timer.start();
        emit client.close();
        QTRY_COMPARE_WITH_TIMEOUT(disconnected.count(), 2, 60000);
        QVERIFY2(timer.elapsed() < 500, qPrintable(QString::number(timer.elapsed())));

        const Stand stand;
        emit client.open("127.0.0.1", stand.port(), false);
        QTRY_COMPARE(connected.count(), 1);
        names.answer();
        QCOMPARE(client.socket()->state(), QAbstractSocket::ConnectedState);
        QCOMPARE(disconnected.count(), 2);
    }

    void noticesADeadLink() {
        Stand stand;
        ClientHarness client(stand);
        QVERIFY(client.open());
        QElapsedTimer timer;
        timer.start();
        stand.tell("ignorePings");
        QVERIFY(client.waitFor(CS::Disconnected, 20000));
        QVERIFY2(timer.elapsed() > 7000 && timer.elapsed() < 15000,
                 qPrintable(QString::number(timer.elapsed())));
    }

    void endsAStalledLink() {
        const Stand stand;
        WebSocketClient client(nullptr);
        QSignalSpy connected(&client, &WebSocketConnection::connected);
        QSignalSpy disconnected(&client, &WebSocketConnection::disconnected);
        emit client.open("127.0.0.1", stand.port(), false);
        QVERIFY(connected.wait(patienceMs));
        stand.suspend();
        for (int i = 0; i < 40; ++i)
            client.sendDataBytes(QByteArray(1000000, '\1'));
        QElapsedTimer timer;
        timer.start();
        emit client.close();
        QVERIFY2(disconnected.wait(8000),
                 "a peer that reads nothing does not hold the socket open");
        QVERIFY(timer.elapsed() < 2000);
        stand.resume();
    }

    void stopsAtAnyTime_data() {
        columns<QString, QString, CS>("command", "mode", "state");
        row("while the balancer is silent", "servers", "silent", CS::WsConnectionRequested);
        row("while the socket opens", "websocket", "silent", CS::WsConnectionRequested);
        row("while the themes are fetched", "themes", "silent", CS::ThemesRequested);
        row("when ready", "themes", "normal", CS::Ready);
        row("while a look-up stalls", "look-up", "", CS::WsConnectionRequested);
        row("between two passes", "servers", "empty", CS::Failed);
    }

    void stopsAtAnyTime() {
        QFETCH(QString, command);
        QFETCH(QString, mode);
        QFETCH(CS, state);
        Stand stand;
        const StalledNames names;
        if (command == "look-up")
            offer(&stand, {server("stalled", "speech.stalled;1;1")});
        else
            stand.tell({{"do", command}, {"mode", mode}});
        ClientHarness client(stand);
        client.start();
        QVERIFY(client.waitFor(state));
        if (command == "look-up")
            QTRY_COMPARE(ClientConnectionSettings().Ip.get(), "speech.stalled");
        QElapsedTimer timer;
        timer.start();
        client.stop();
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
        if (command == "look-up")
            offer(&stand, {server("good", stand.connectionString())});
        else
            stand.tell({{"do", command}, {"mode", command == "websocket" ? "accept" : "normal"}});
        client.forget();
        client.start();
        QVERIFY2(client.waitFor(CS::Ready), "a new start begins from the beginning");
    }
};

DESK_CORE_TEST_MAIN(TestConnection)
#include "TestConnection.moc"
