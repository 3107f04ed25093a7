#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "connection/ConnectionHeartbeat.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"
#include "connection/messages/UserNotification.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/LaunchSettings.h"
#include "formapi/WebSocketProxyServer.h"
#include "recognition/AsrManager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkRequest>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebSocket>

namespace {

QJsonValue json(const QByteArray &text) {
    return QJsonDocument::fromJson('[' + text + ']').array()[0];
}

QByteArray compact(const QJsonValue &value) {
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

/// Opens a connection byte by byte, as no browser would.
/// @param lines  further header lines, each with its end
std::unique_ptr<QTcpSocket> openRaw(const WebSocketProxyServer &server,
                                    const QByteArray &lines = {}) {
    auto socket = std::make_unique<QTcpSocket>();
    socket->connectToHost("127.0.0.1", server.port());
    socket->write("GET / HTTP/1.1\r\nHost: localhost\r\nUpgrade: websocket\r\n"
                  "Connection: Upgrade\r\nSec-WebSocket-Key: MDEyMzQ1Njc4OWFiY2RlZg==\r\n"
                  "Sec-WebSocket-Version: 13\r\n" +
                  lines + "\r\n");
    return socket;
}

/// A web form's end of the connection.
class Form {
public:
    explicit Form(const WebSocketProxyServer &server, const QByteArray &cookies = {}) {
        QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
                         [this](const QString &text) { m_frames << text; });
        QNetworkRequest request(QUrl(QStringLiteral("ws://127.0.0.1:%1/").arg(server.port())));
        if (!cookies.isEmpty())
            request.setRawHeader("Cookie", cookies);
        m_socket.open(request);
        if (!QTest::qWaitFor([this] { return isOpen(); }, patienceMs))
            qWarning("The form could not connect");
    }

    bool isOpen() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void send(int code, const QJsonValue &data = {}) {
        m_socket.sendTextMessage(
            QString::fromUtf8(compact(QJsonObject{{"MessageType", code}, {"Data", data}})));
    }
    /// What came, each as "6:[...]".
    QStringList received() const {
        QStringList result;
        for (const QString &text : m_frames) {
            const QJsonObject frame = QJsonDocument::fromJson(text.toUtf8()).object();
            result << QString::number(frame["MessageType"].toInt()) + ':' +
                          QString::fromUtf8(compact(frame["Data"]));
        }
        return result;
    }
    QWebSocket &socket() { return m_socket; }

private:
    QWebSocket m_socket;
    QStringList m_frames;
};

} // namespace

/// Web forms on the local interface, with a real client and a real server behind it.
class TestForms : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_stand = std::make_unique<Stand>();
        // A loss of the last server of a list would end what the form began.
        m_stand->offerServers(2);
        FormApiSettings().remove("AllowedOrigins");
        m_client = std::make_unique<ClientHarness>(*m_stand);
        m_client->manager()->setReconnectDelay(0);
        QVERIFY(m_client->open());
        QVERIFY(!waitForMessage(MessageType::StartMode).isEmpty());
        QTRY_VERIFY(server().port() != 0);
    }

    void cleanup() {
        m_client.reset();
        m_stand.reset();
    }

    void admitsPages_data() {
        columns<QByteArray, QString, bool, QString>("origin", "list", "isAdmitted", "named");
        const QString list =
            "https://his.clinic.example, http://his.clinic.lan:8080/ ,https://больница.рф";
        const auto of = [](const char *name, const QByteArray &origin, const QString &allowed,
                           bool isAdmitted, const QString &named = {}) {
            QTest::newRow(name) << origin << allowed << isAdmitted
                                << (named.isEmpty() && isAdmitted ? QString(origin) : named);
        };
        of("any page", "https://other.example", "", true);
        of("any page, with an empty list", "https://other.example", " ", true);
        of("a page from a file", "null", "", true);
        of("a program", "", list, true);
        of("the first of the list", "https://his.clinic.example", list, true);
        of("its port in words", "https://his.clinic.example:443", list, true);
        of("its name in capitals", "HTTPS://HIS.Clinic.Example", list, true);
        of("another of the list", "http://his.clinic.lan:8080", list, true);
        of("a name that is not Latin", "https://xn--80abvlke3d3b.xn--p1ai", list, true);
        of("without its scheme", "http://his.clinic.example", list, false);
        of("without its port", "http://his.clinic.lan", list, false);
        of("a name that begins well", "https://his.clinic.example.other.example", list, false);
        of("a name that ends well", "https://nothis.clinic.example", list, false);
        of("no origin is another", "null", list, false);
        of("not even one of the list", "null", "null", false);
        of("a file", "file://", list, false);
        of("a list of no origins", "https://his.clinic.example", "his.clinic.example", false);
        of("a text that would be markup", "<b>" + QByteArray(200, 'x') + "\xFF</b>", "", true,
           "..." + QString(95, 'x') + "?" + "?/b?");
    }

    void admitsPages() {
        QFETCH(QByteArray, origin);
        QFETCH(QString, list);
        QFETCH(bool, isAdmitted);
        FormApiSettings().setValue("AllowedOrigins", list.split(','));
        Form current(server());
        QSignalSpy announced(&server(), &WebSocketProxyServer::notifyUser);
        for (int i = 0; i < 2; ++i) {
            const auto page =
                openRaw(server(), origin.isEmpty() ? QByteArray() : "Origin: " + origin + "\r\n");
            QTRY_VERIFY_WITH_TIMEOUT(page->canReadLine(), patienceMs);
            QCOMPARE(page->readLine().mid(9, 3), QByteArray(isAdmitted ? "101" : "403"));
            if (isAdmitted)
                QTRY_VERIFY(!current.isOpen());
            else
                QVERIFY(current.isOpen());
        }
        QFETCH(QString, named);
        QCOMPARE(announced.size(), named.isEmpty() ? 0 : 1);
        if (named.isEmpty())
            return;
        const auto notice = announced[0][0].value<UserNotification>();
        QVERIFY2(notice.message().endsWith(' ' + named), qPrintable(notice.message()));
        QVERIFY(notice.force());
    }

    void takesTheIdentity_data() {
        columns<QByteArray, QByteArray>("cookies", "identity");
        const QByteArray known = R"({"TypeId":"m1","User":"u1","Version":"7"})";
        row("in any case", QByteArray("mis_type=m1;MIS_VERSION=7; Mis_User=u1"), known);
        row("beside one without a value",
            QByteArray("odd; MIS_TYPE=m1; MIS_VERSION=7; MIS_USER=u1"), known);
        row("beside one without a name", QByteArray("MIS_TYPE=m1; =x; MIS_VERSION=7; MIS_USER=u1"),
            known);
        row("beside one with blanks",
            QByteArray("MIS_TYPE=m1; MIS_VERSION=7; MIS_USER=u1; q=\"x y\""), known);
        row("beside nothing", QByteArray(";; MIS_TYPE=m1; ; MIS_VERSION=7; MIS_USER=u1;"), known);
        row("of several words", QByteArray("MIS_USER=\"x y\"; MIS_VERSION=a=b; MIS_TYPE"),
            QByteArray("{\"TypeId\":\"\",\"User\":\"\\\"x y\\\"\",\"Version\":\"a=b\"}"));
    }

    void takesTheIdentity() {
        QFETCH(QByteArray, cookies);
        const Form form(server(), cookies);
        QTEST(compact(waitForMessage(115)["data"]), "identity");
    }

    void passesOnToTheServer_data() {
        columns<int, QByteArray, int>("code", "data", "type");
        QTest::newRow("anything") << 3 << QByteArray(R"({"a":[1,null,"я"]})") << 103;
        QTest::newRow("focus outside a form mode") << 5 << QByteArray(R"("name")") << 105;
        QTest::newRow("last number") << 18 << QByteArray("null") << 118;
        QTest::newRow("without data") << 17 << QByteArray() << 117;
        QTest::newRow("the number left out") << 12 << QByteArray("1") << 0;
        QTest::newRow("above the series") << 19 << QByteArray("1") << 0;
        QTest::newRow("no number") << 0 << QByteArray("1") << 0;
        QTest::newRow("a number of the client's own") << -99 << QByteArray("1") << 0;
    }

    void passesOnToTheServer() {
        QFETCH(int, code);
        QFETCH(QByteArray, data);
        QFETCH(int, type);
        Form form(server());
        QVERIFY(!waitForMessage(115).isEmpty());
        form.send(code, json(data));
        form.send(1);
        if (type != 0)
            QCOMPARE(compact(waitForMessage(type)["data"]), data.isEmpty() ? "null" : data);
        QVERIFY(!waitForMessage(101).isEmpty());
        QCOMPARE(formMessages(), type ? (QList<int>{115, type, 101}) : (QList<int>{115, 101}));
        QVERIFY(!m_client->asr()->getTargetModeInfo()->formElement());
    }

    void passesOnToTheForm_data() {
        columns<int, QByteArray, QString>("type", "data", "received");
        QTest::newRow("a value of a text field is formatted")
            << 201 << QByteArray(R"({"Key":"a","Type":0,"Value":"кашель , боль"})")
            << R"(1:{"Key":"a","Type":0,"Value":"Кашель, боль"})";
        QTest::newRow("a value of another type is not")
            << 201 << QByteArray(R"({"Type":3,"Value":"а , б"})")
            << R"(1:{"Type":3,"Value":"а , б"})";
        QTest::newRow("groups keep their shape")
            << 206 << QByteArray(R"([[{"Type":7,"Value":"а ."}],[],[{"Type":1,"Value":"б ."}]])")
            << R"(6:[[{"Type":7,"Value":"А."}],[],[{"Type":1,"Value":"б ."}]])";
        QTest::newRow("partial text") << 209 << QByteArray(R"("а , б")") << R"(9:"А, б")";
        QTest::newRow("anything else") << 218 << QByteArray(R"([1])") << "18:[1]";
        QTest::newRow("a number of its own") << 800000 << QByteArray("1") << "800000:1";
        QTest::newRow("a number left out") << 212 << QByteArray("1") << "";
        QTest::newRow("the client's own") << 22 << QByteArray("{}") << "";
    }

    void passesOnToTheForm() {
        QFETCH(int, type);
        QFETCH(QByteArray, data);
        QFETCH(QString, received);
        Form form(server());
        QVERIFY(!waitForMessage(115).isEmpty());
        m_stand->tell({{"do", "message"}, {"type", type}, {"data", json(data)}});
        m_stand->tell({{"do", "message"}, {"type", 200}, {"data", "end"}});
        const QStringList expected =
            received.isEmpty() ? QStringList{R"(0:"end")"} : QStringList{received, R"(0:"end")"};
        QTRY_COMPARE(form.received().size(), expected.size());
        QCOMPARE(form.received(), expected);

        m_client->asr()->setEnabled(false);
        m_stand->tell({{"do", "message"}, {"type", 200}, {"data", "lost"}});
        m_stand->tell({{"do", "message"}, {"type", 218}, {"data", "end"}});
        QTRY_COMPARE(form.received().last(), R"(18:"end")");
        QCOMPARE(form.received().size(), expected.size() + 1);
    }

    void describesTheFormToTheNextServer() {
        const QJsonValue description = json(
            R"({"Key":"k","Name":"Осмотр","Mode":1,"Childs":[{"Key":"a"}],"FormSettings":{}})");
        Form form(server());
        form.send(6, description);
        form.send(5, "a");
        form.send(14, json(R"(["c"])"));
        form.send(10, json(R"({"s":1})"));
        QVERIFY(!waitForMessage(110).isEmpty());
        TargetModeInfo *target = m_client->asr()->getTargetModeInfo();
        QCOMPARE(target->mode(), RecognitionMode::TemplatedWizardForm);
        QCOMPARE(target->formElement(), QString("a"));

        m_stand->tell({{"do", "message"}, {"type", 202}, {"data", json(R"({"Key":"b"})")}});
        QTRY_COMPARE(target->formElement(), QString("b"));
        QTRY_VERIFY(form.received().contains(R"(2:{"Key":"b"})"));
        m_stand->forget();
        m_stand->tell("drop");
        const QJsonObject again = waitForMessage(MessageType::FormDescription)["data"].toObject();
        QCOMPARE(again["Key"], QJsonValue("k"));
        QCOMPARE(compact(again["FormSettings"]), QByteArray(R"({"s":1})"));
        QCOMPARE(compact(again["FormCommands"]), QByteArray(R"(["c"])"));
        QCOMPARE(waitForMessage(MessageType::FormElement)["data"], QJsonValue("b"));
        QCOMPARE(again["Childs"].toArray().size(), 1);
        m_stand->tell({{"do", "message"}, {"type", 218}, {"data", 1}});
        QTRY_COMPARE(form.received().last(), "18:1");
        QVERIFY2(form.isOpen(), "the form sees nothing of it");
    }

    void returnsToTheIdleMode_data() {
        columns<bool, int>("listens", "mode");
        QTest::newRow("to nothing") << false << 0;
        QTest::newRow("to voice activation") << true << 1;
    }

    void returnsToTheIdleMode() {
        QFETCH(bool, listens);
        LaunchSettings().VoiceActivationEnabled = listens;
        Form form(server());
        form.send(6, json(R"({"Key":"k"})"));
        form.send(7, json(R"({"ignored":true})"));
        QCOMPARE(waitForMessage(107)["data"], QJsonValue(listens ? 1 : 0));
        TargetModeInfo *target = m_client->asr()->getTargetModeInfo();
        QCOMPARE(target->isEmpty(), !listens);
        QVERIFY(!target->form());
        QTEST(static_cast<int>(target->getTargetMode().value_or(RecognitionMode::Text)), "mode");
    }

    void lastFormWins() {
        Form first(server(), "MIS_TYPE=one");
        QVERIFY(!waitForMessage(MessageType::StartMode).isEmpty());
        m_client->asr()->startRecognition();
        QVERIFY(!waitForMessage(MessageType::StartMode).isEmpty());
        Form second(server(), "MIS_TYPE=two");
        QCOMPARE(waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 0);
        QCOMPARE(formMessages(), (QList<int>{115, 116, 115}));
        QTRY_VERIFY(!first.isOpen());
        QCOMPARE(first.socket().closeCode(), QWebSocketProtocol::CloseCodeNormal);
        m_stand->tell({{"do", "message"}, {"type", 218}, {"data", 1}});
        QTRY_COMPARE(second.received(), QStringList{"18:1"});
        QCOMPARE(first.received(), QStringList());

        const auto identityOfNextConnection = [this] {
            m_stand->forget();
            m_stand->tell("drop");
            return m_stand->waitFor("connected")["headers"].toObject()["cookie"].toString();
        };
        const QString withForm = identityOfNextConnection();
        QVERIFY2(withForm.contains("MIS_TYPE=two"), qPrintable(withForm));
        second.socket().close();
        QVERIFY(!waitForMessage(116).isEmpty());
        QVERIFY(!identityOfNextConnection().contains("MIS_TYPE=two"));
    }

    void survivesBadClients() {
        QTcpSocket halfOpen;
        halfOpen.connectToHost("127.0.0.1", server().port());
        Form form(server());
        for (const QByteArray &text :
             {QByteArray("no JSON"), QByteArray("[1]"), QByteArray(10000, '['),
              QByteArray(R"({"MessageType":6,"Data":"no object"})"), QByteArray(10 << 20, 'x'),
              QByteArray(R"({"MessageType":"5"})")})
            form.socket().sendTextMessage(QString::fromUtf8(text));
        form.socket().sendBinaryMessage(QByteArray(1 << 20, '\0'));
        form.send(1, "still here");
        QCOMPARE(waitForMessage(101)["data"], QJsonValue("still here"));

        for (int i = 0; i < 30; ++i) {
            Form other(server());
            QTcpSocket().connectToHost("127.0.0.1", server().port());
        }
        Form last(server());
        last.send(2, "the last");
        QCOMPARE(waitForMessage(102)["data"], QJsonValue("the last"));
        QVERIFY(m_client->asr()->isConnected());

        // A form that does not read, and a server that has much to say.
        const auto deaf = openRaw(server());
        deaf->setReadBufferSize(1);
        QTRY_VERIFY(!last.isOpen());
        QVERIFY(server().currentSession());
        const QJsonObject much{
            {"do", "send"},
            {"text", "{\"MessageType\":218,\"Data\":\"" + QString(1 << 20, 'x') + "\"}"}};
        for (int i = 0; i < 40; ++i)
            m_stand->tell(much);
        QTRY_VERIFY(!server().currentSession());
        QVERIFY(m_client->asr()->isConnected());
    }

    void endsAFormThatFloodsTheServer() {
        Form form(server());
        QVERIFY(!waitForMessage(115).isEmpty());
        // A server that stands still is not given up for another one, however long this takes.
        disconnect(m_client->heartbeat(), &ConnectionHeartbeat::timeout, m_client->manager(),
                   nullptr);
        m_stand->suspend();
        // Most of what the server does not take is sound, which costs this test less than text
        // does.
        const QByteArray sound(1 << 20, '\0');
        for (int i = 0; i < 56; ++i)
            m_client->worker()->wsClient()->sendDataBytes(sound);
        const QString much(2 << 20, 'x');
        for (int i = 0; i < 100 && form.isOpen(); ++i) {
            form.send(3, much);
            QTRY_VERIFY(form.socket().bytesToWrite() == 0 || !form.isOpen());
        }
        QVERIFY(!form.isOpen());
        m_stand->resume();
        QVERIFY(!waitForMessage(116).isEmpty());
        Form next(server());
        next.send(2, "welcome");
        QCOMPARE(waitForMessage(102)["data"], QJsonValue("welcome"));
    }

    void listensAnew() {
        Form form(server());
        QTcpSocket other;
        other.connectToHost("127.0.0.3", server().port());
        QVERIFY2(!other.waitForConnected(), "only one address of this machine is served");
        const quint16 port = server().port();
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::LocalHost));
        emit server().stop();
        QTRY_VERIFY(!form.isOpen());
        QCOMPARE(form.socket().closeCode(), QWebSocketProtocol::CloseCodeGoingAway);
        const QSignalSpy failures(&server(), &WebSocketServer::listenFailed);
        for (int i = 0; i < 2; ++i)
            emit server().start(taken.serverPort());
        QCOMPARE(server().port(), quint16(0));
        QCOMPARE(failures, QList<QVariantList>{{int(taken.serverPort())}});
        emit server().stop();
        emit server().start(port);
        Form again(server());
        QVERIFY(again.isOpen());
        QVERIFY(server().currentSession());
    }

private:
    WebSocketProxyServer &server() { return *m_client->worker()->webSocketServer(); }

    /// The server's numbers of the messages so far, of form messages only.
    QList<int> formMessages() {
        m_stand->tell("state");
        QList<int> types;
        for (const QJsonObject &event : m_stand->events()) {
            if (event["event"] == QLatin1String("message") && event["type"].toInt() > 100)
                types << event["type"].toInt();
        }
        return types;
    }

    QJsonObject waitForMessage(int type) { return m_stand->waitForMessage(type); }

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<ClientHarness> m_client;
};

DESK_CORE_TEST_MAIN(TestForms)
#include "TestForms.moc"
