#include "DeskTest.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/FormApiSettings.h"
#include "formapi/RestProxyServer.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

const QByteArray plain = "GET /a HTTP/1.1\r\nHost: localhost\r\n\r\n";

/// A recognition server that keeps what it is sent and answers what it is told, or nothing.
class FakeServer : public QTcpServer {
public:
    FakeServer() {
        if (!listen(QHostAddress(QStringLiteral("127.0.0.2"))))
            qWarning("No port for the server");
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                request += socket->readAll();
                const int body = request.indexOf("\r\n\r\n") + 4;
                const QByteArray head = request.left(body).toLower();
                const int header = head.indexOf("content-length:");
                const int length =
                    header < 0 ? 0 : head.mid(header + 15, 20).split('\r')[0].trimmed().toInt();
                if (!answer.isEmpty() && body > 3 && request.size() >= body + length)
                    socket->write(answer);
            });
        });
    }

    QByteArray body() const { return request.mid(request.indexOf("\r\n\r\n") + 4); }

    QByteArray request;
    QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}";
};

ConnectionStateInfo stateInfo(ConnectionState state) {
    ConnectionStateInfo info;
    info.setState(static_cast<int>(state));
    return info;
}

/// Header and body of an answer; without them what came instead.
struct Answer {
    explicit Answer(const QByteArray &bytes) {
        const int end = bytes.indexOf("\r\n\r\n");
        head = bytes.left(end);
        body = end < 0 ? QByteArray() : bytes.mid(end + 4);
    }
    /// The length that it tells is the length that it has.
    bool isWellFormed() const {
        const QByteArray told = head.toLower().replace(": ", ":");
        return told.contains("content-length:" + QByteArray::number(body.size()));
    }
    QString errorText() const {
        return QJsonDocument::fromJson(body).object()["Error"].toObject()["Text"].toString();
    }

    QByteArray head;
    QByteArray body;
};

} // namespace

/// Requests of forms on their way to the recognition server, byte for byte.
class TestRestProxy : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        // To print what is handed on takes longer than to hand it on.
        QLoggingCategory::setFilterRules("*.debug=false");
    }

    void init() {
        m_proxy.reset();
        m_server = std::make_unique<FakeServer>();
        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost));
        m_port = free.serverPort();
        free.close();
        {
            ClientConnectionSettings server;
            server.Ip = QStringLiteral("127.0.0.2");
            server.RestPort = m_server->serverPort();
            FormApiSettings form;
            form.RestPort = m_port;
            form.remove("AllowedOrigins");
        }
        startProxy(std::chrono::minutes(1));
    }

    void handsOnRequests_data() {
        columns<QByteArray, QByteArray, QByteArray, QByteArray>("request", "line", "header",
                                                                "body");
        const QByteArray json = "{\"a\": \"я\"}\n";
        QTest::newRow("a GET")
            << QByteArray("GET /api/Theme?x=1 HTTP/1.1\r\nHost: localhost:{port}\r\n\r\n")
            << QByteArray("GET /api/Theme?x=1 HTTP/1.1") << QByteArray("Host: 127.0.0.2:")
            << QByteArray();
        QTest::newRow("a POST, its body as it is")
            << "POST /api/Claim HTTP/1.1\r\nHost: localhost\r\nCookie: c=1\r\nContent-Length: "
               "12\r\n\r\n" +
                   json
            << QByteArray("POST /api/Claim HTTP/1.1") << QByteArray("Cookie: c=1") << json;
        QTest::newRow("lines that end in line feeds only")
            << "POST /a HTTP/1.1\nHost: localhost\nAuthorization: b\nContent-Length: 12\n\n" + json
            << QByteArray("POST /a HTTP/1.1") << QByteArray("Authorization: b") << json;
        QTest::newRow("a name of this machine in the body")
            << QByteArray(
                   "POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: 9\r\n\r\nlocalhost")
            << QByteArray("POST /a HTTP/1.1") << QByteArray("Content-Length: 9")
            << QByteArray("127.0.0.2");
        QTest::newRow("a PUT goes as a GET")
            << QByteArray(
                   "PUT /a HTTP/1.1\r\nHost: localhost\r\nX-A: 1\r\nContent-Length: 2\r\n\r\n{}")
            << QByteArray("GET /a HTTP/1.1") << QByteArray("X-A: 1") << QByteArray();
        QTest::newRow("a whole address")
            << QByteArray("GET http://[::1]:{port}/a?b=://c HTTP/1.1\r\nHost: localhost\r\n\r\n")
            << QByteArray("GET /a?b=://c HTTP/1.1") << QByteArray("Host:") << QByteArray();
    }

    void handsOnRequests() {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, header);
        QVERIFY(Answer(ask({request})).head.startsWith("HTTP/1.1 200 OK"));
        QTEST(m_server->request.split('\r')[0], "line");
        QVERIFY2(m_server->request.contains("\r\n" + header), m_server->request);
        QTEST(m_server->body(), "body");
        QCOMPARE(m_server->request.toLower().count("content-length"),
                 m_server->request.startsWith("GET") ? 0 : 1);
    }

    void handsOnAnswers_data() {
        columns<QByteArray, QByteArray>("answer", "body");
        QTest::newRow("white space around the body")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 6\r\nX-A: 1\r\n\r\n\n{1} \n")
            << QByteArray("{1}");
        QTest::newRow("in chunks")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nX-A: 1\r\n\r\n"
                          "2\r\n{\"\r\n4\r\n\xD1\x8F\"}\r\n0\r\n\r\n")
            << QByteArray("{\"я\"}");
        QTest::newRow("two cookies")
            << QByteArray(
                   "HTTP/1.1 200 OK\r\nSet-Cookie: a=1; Expires=Wed, 01 Jan 2031 00:00:00 GMT\r\n"
                   "Set-Cookie: b=2\r\nContent-Length: 2\r\nX-A: 1\r\n\r\n{}")
            << QByteArray("{}");
        QTest::newRow("compressed")
            << "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 22\r\nX-A: 1\r\n\r\n" +
                   QByteArray::fromHex("1f8b08000000000000ffabae050043bfa6a302000000")
            << QByteArray("{}");
    }

    void handsOnAnswers() {
        QFETCH(QByteArray, answer);
        m_server->answer = answer;
        const Answer got(
            ask({"GET /a HTTP/1.1\r\nHost: localhost\r\nAccept-Encoding: br\r\n\r\n"}));
        QTEST(got.body, "body");
        QVERIFY2(got.isWellFormed(), got.head);
        QVERIFY(got.head.contains("\r\nX-A:1"));
        QVERIFY(got.head.contains("\r\nConnection: close"));
        QCOMPARE(got.head.count("\r\nSet-Cookie:"), answer.count("\r\nSet-Cookie:"));
        QVERIFY(!got.head.toLower().contains("chunked"));
        QVERIFY(!got.head.toLower().contains("gzip"));
    }

    void takesRequestsInPieces_data() {
        columns<QList<QByteArray>, QByteArray>("pieces", "body");
        QTest::newRow("body behind the headers")
            << QList<QByteArray>{"POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: 4\r\n\r\n",
                                 "{", "1}\n"}
            << QByteArray("{1}\n");
        QList<QByteArray> bytes;
        for (const char byte :
             QByteArray("POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: 2\r\n\r\n{}"))
            bytes << QByteArray(1, byte);
        QTest::newRow("single bytes") << bytes << QByteArray("{}");
        QTest::newRow("body of 20 MB")
            << QList<QByteArray>{"POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: "
                                 "20971520\r\n\r\n",
                                 QByteArray(20 << 20, 'x')}
            << QByteArray(20 << 20, 'x');
        QTest::newRow("100,000 headers")
            << QList<QByteArray>{"POST /a HTTP/1.1\r\nHost: localhost\r\n",
                                 QByteArray("X-A: 1\r\n").repeated(100000),
                                 "Content-Length: 2\r\n\r\n{}"}
            << QByteArray("{}");
    }

    void takesRequestsInPieces() {
        QFETCH(QList<QByteArray>, pieces);
        QVERIFY(ask(pieces).startsWith("HTTP/1.1 200 OK"));
        QTEST(m_server->body(), "body");
    }

    void judgesRequests_data() {
        columns<QByteArray, QString, int>("request", "allowedOrigins", "status");
        const auto of = [](const char *name, const QByteArray &request, int status) {
            QTest::newRow(name) << request << QString() << status;
        };
        of("no blank", "GARBAGE\n", 400);
        of("no line feed", "GARBAGE", 400);
        of("an empty line", "\r\n\r\n", 400);
        const QByteArray get = "GET /a HTTP/1.1\r\nHost: ";
        of("another host", get + "his.clinic.example\r\n\r\n", 403);
        of("a host that begins well", get + "localhost.clinic.example\r\n\r\n", 403);
        of("another port", get + "localhost:1\r\n\r\n", 403);
        of("a line that is cut", get + "his.clinic.example", 403);
        of("a name in capitals", get + "LocalHost:{port}\r\n\r\n", 200);
        of("the address", get + "127.0.0.1:{port}\r\n\r\n", 200);
        of("the longer address", get + "[::1]\r\n\r\n", 200);
        of("no host", "GET /a HTTP/1.1\r\n\r\n", 400);
        of("two hosts", get + "localhost\r\nhost: localhost\r\n\r\n", 400);
        of("a whole address of another host",
           "GET http://localhost@his.clinic.example/ HTTP/1.1\r\nHost: localhost\r\n\r\n", 403);
        of("a carriage return in a header", get + "localhost\r\nX: 1\rY: 2\r\n\r\n", 400);
        of("a zero in a header", get + QByteArray("localhost\r\nX: \0\r\n\r\n", 19), 400);
        of("a blank before the colon", get + "localhost\r\nX : 1\r\n\r\n", 400);
        of("a tab before the colon", get + "localhost\r\nTransfer-Encoding\t: chunked\r\n\r\n",
           400);
        const QByteArray post = "POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: ";
        of("too long a body", post + "41943041\r\n\r\n" + QByteArray((40 << 20) + 1, 'x'), 413);
        of("the longest body, cut", post + "41943040\r\n\r\n{", 408);
        of("a length beyond all numbers", post + "99999999999999999999\r\n\r\n", 413);
        of("a length below zero", post + "-1\r\n\r\n", 400);
        of("two lengths", post + "2\r\nContent-Length: 3\r\n\r\n{}", 400);
        of("a body in chunks", get + "localhost\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n", 411);
        const QByteArray page = get + "localhost\r\nOrigin: ";
        const QByteArray foreign = page + "http://other.example\r\n\r\n";
        const QString list = "http://his.clinic.lan, https://his.clinic.example:8443";
        QTest::newRow("another page") << foreign << list << 403;
        QTest::newRow("what another page asks first") << "OPTIONS" + foreign.mid(3) << list << 403;
        QTest::newRow("a page of the list") << page + "http://his.clinic.lan\r\n\r\n"
                                            << list << 200;
        QTest::newRow("no page") << plain << list << 200;
    }

    void judgesRequests() {
        QFETCH(QByteArray, request);
        QFETCH(QString, allowedOrigins);
        QFETCH(int, status);
        // As in a file that is written by hand, without quotation marks.
        FormApiSettings().setValue("AllowedOrigins", allowedOrigins.split(", "));
        const Answer got(ask({request}));
        QCOMPARE(got.head.split(' ').value(1).toInt(), status);
        QVERIFY(got.isWellFormed());
        QCOMPARE(m_server->request.isEmpty(), status != 200);
        QCOMPARE(got.errorText().isEmpty(), status == 200);
    }

    void keepsMemoryForAFew() {
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int i = 0; i < 4; ++i)
            clients.push_back(send("POST /a HTTP/1.1\r\nHost: localhost\r\nContent-Length: 41943040"
                                   "\r\n\r\n" +
                                   QByteArray(30 << 20, 'x')));
        const auto isRefused = [](const std::unique_ptr<QTcpSocket> &client) {
            return client->peek(12) == "HTTP/1.1 503";
        };
        QTRY_VERIFY_WITH_TIMEOUT(std::any_of(clients.begin(), clients.end(), isRefused),
                                 patienceMs);
        clients.clear();
        QVERIFY(isServed());
    }

    void leadsToNoLoop() {
        ClientConnectionSettings server;
        server.Ip = QStringLiteral(" localhost ");
        server.RestPort = m_port;
        server.sync();
        QCOMPARE(ask({plain}), QByteArray());
    }

    void listensWhileThereIsAServer() {
        const auto enter = [this](ConnectionState state) {
            QMetaObject::invokeMethod(
                m_proxy.get(), [=] { m_proxy->onWsConnectionState(stateInfo(state)); },
                Qt::BlockingQueuedConnection);
        };
        enter(ConnectionState::Ready);
        QVERIFY(isServed());
        enter(ConnectionState::Disconnected);
        QCOMPARE(ask({}), QByteArray("refused"));
        enter(ConnectionState::WsConnected);
        QTcpSocket other;
        other.connectToHost(QStringLiteral("127.0.0.3"), m_port);
        QVERIFY2(!other.waitForConnected(), "only one address of this machine is served");
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::LocalHost));
        FormApiSettings().RestPort = taken.serverPort();
        const QSignalSpy failures(m_proxy.get(), &RestProxyServer::listenFailed);
        for (int i = 0; i < 2; ++i)
            enter(ConnectionState::WsConnected);
        QCOMPARE(failures, QList<QVariantList>{{int(taken.serverPort())}});
        FormApiSettings().RestPort = m_port;
        enter(ConnectionState::WsConnected);
        m_server->close();
        const Answer got(ask({plain}));
        QVERIFY2(got.head.startsWith("HTTP/1.1 504"), got.head);
        QVERIFY(got.isWellFormed());
    }

    void waitsForASilentServer() {
        m_server->answer.clear();
        std::vector<std::unique_ptr<QTcpSocket>> waiting;
        for (int i = 0; i < 5; ++i)
            waiting.push_back(send(plain));
        QByteArray answer;
        const auto isAnswered = [&] {
            for (const auto &socket : waiting)
                answer += socket->readAll();
            return !answer.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(isAnswered(), 9000);
        QVERIFY(answer.startsWith("HTTP/1.1 504"));
        QVERIFY(!m_server->request.isEmpty());
        QElapsedTimer end;
        end.start();
        m_proxy.reset();
        QVERIFY2(end.elapsed() < 2000, "nobody waits for the other four");
    }

    void asksForABodyThatWaits() {
        const auto socket = send("POST /a HTTP/1.1\r\nHost: localhost\r\nExpect: "
                                 "100-continue\r\nContent-Length: 2\r\n\r\n");
        QByteArray answer;
        const auto isThere = [&](const QByteArray &start) {
            answer += socket->readAll();
            return answer.startsWith(start);
        };
        QTRY_VERIFY(isThere("HTTP/1.1 100 Continue\r\n\r\n"));
        answer.clear();
        socket->write("{}");
        QTRY_VERIFY(isThere("HTTP/1.1 200 OK"));
        QCOMPARE(m_server->body(), QByteArray("{}"));
    }

    void doesNotWaitForTheSlow() {
        m_proxy.reset();
        startProxy(std::chrono::seconds(8));
        const auto slow = send("GET /a HTTP/1.1\r\nHost: localhost\r\nX: ");
        QTimer byteByByte;
        connect(&byteByByte, &QTimer::timeout, slow.get(), [&slow] { slow->write("x"); });
        byteByByte.start(100);
        QVERIFY(isServed());
        QTRY_VERIFY_WITH_TIMEOUT(slow->bytesAvailable() > 0, 20000);
        QVERIFY(slow->readAll().startsWith("HTTP/1.1 408"));
    }

    void givesUpWhoSaysNothing() {
        std::vector<std::unique_ptr<QTcpSocket>> silent;
        for (int i = 0; i < 100; ++i) {
            silent.push_back(send(QByteArray()));
            QVERIFY(silent.back()->waitForConnected());
        }
        QVERIFY(!isServed());
        QTRY_COMPARE_WITH_TIMEOUT(silent.back()->state(), QAbstractSocket::UnconnectedState, 20000);
        QVERIFY(isServed());
    }

private:
    void startProxy(std::chrono::milliseconds requestTime) {
        m_proxy = std::make_unique<RestProxyServer>(requestTime);
        QMetaObject::invokeMethod(
            m_proxy.get(),
            [this] { m_proxy->onWsConnectionState(stateInfo(ConnectionState::WsConnected)); },
            Qt::BlockingQueuedConnection);
    }

    QByteArray ask(const QList<QByteArray> &pieces, int timeoutMs = patienceMs) {
        const auto socket = send(QByteArray());
        if (!socket->waitForConnected())
            return "refused";
        for (QByteArray piece : pieces) {
            socket->write(piece.replace("{port}", QByteArray::number(m_port)));
            while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten())
                QCoreApplication::processEvents();
            QCoreApplication::processEvents();
        }
        if (!QTest::qWaitFor(
                [&socket] { return socket->state() == QAbstractSocket::UnconnectedState; },
                timeoutMs))
            return "no answer";
        return socket->readAll();
    }

    bool isServed() { return ask({plain}).startsWith("HTTP/1.1 200"); }
    std::unique_ptr<QTcpSocket> send(const QByteArray &request) {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(QStringLiteral("127.0.0.1"), m_port);
        socket->write(request);
        return socket;
    }

    std::unique_ptr<FakeServer> m_server;
    std::unique_ptr<RestProxyServer> m_proxy;
    quint16 m_port = 0;
};

DESK_CORE_TEST_MAIN(TestRestProxy)
#include "TestRestProxy.moc"
