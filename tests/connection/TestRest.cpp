#include "DeskTest.h"
#include "Files.h"
#include "OtherThread.h"
#include "Stand.h"
#include "connection/BalancerRestAccessPoint.h"
#include "connection/RestAccessPoint.h"
#include "connection/rest/ConnectionHelper.h"
#include "connection/rest/RestClient.h"
#include "connection/rest/SslCertificateVerification.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/SslSettings.h"

#include <QElapsedTimer>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>

namespace {

QJsonObject fetch(const QString &host, quint16 port, bool isEncrypted) {
    RestClient client;
    client.initialize(host, port, isEncrypted);
    return onAnotherThread([&] { return client.execute("/Theme/", Method::Put, "x", {}); });
}

/// Answers TLS on loopback with a certificate of its own.
class TlsServer : public QTcpServer {
public:
    explicit TlsServer(const QString &folder) {
        desk().run("openssl",
                   {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=localhost",
                    "-keyout", folder + "/key.pem", "-out", folder + "/cert.pem"});
        m_certificates = QSslCertificate::fromPath(folder + "/cert.pem");
        m_key = QSslKey(bytesOf(folder + "/key.pem"), QSsl::Rsa);
        listen(QHostAddress::LocalHost);
    }

protected:
    void incomingConnection(qintptr descriptor) override {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setLocalCertificate(m_certificates.value(0));
        socket->setPrivateKey(m_key);
        connect(socket, &QSslSocket::readyRead, socket, [socket] {
            if (socket->readAll().contains("\r\n\r\n"))
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n{\"a\": 1}");
        });
        socket->startServerEncryption();
    }

private:
    QList<QSslCertificate> m_certificates;
    QSslKey m_key;
};

} // namespace

/// REST calls over real sockets: what goes out, what comes back, and how long it takes.
class TestRest : public QObject {
    Q_OBJECT

private slots:
    void trimsSlashes();
    void sendsWhoItIs();
    void turnsFailuresIntoValues_data();
    void turnsFailuresIntoValues();
    void endsWithItsThread();
    void verifiesCertificates_data();
    void verifiesCertificates();
    void givesResponsesAsText();
    void choosesTheProxy_data();
    void choosesTheProxy();
};

void TestRest::trimsSlashes() {
    QCOMPARE(RestClient::trimSlashes("//a/b /"), "a/b");
    QCOMPARE(RestClient::trimSlashes(" / / "), "");
}

void TestRest::sendsWhoItIs() {
    Stand stand;
    stand.writeSettings();
    BalancerRestAccessPoint balancer;
    const ServerListDTO list = onAnotherThread([&] { return balancer.GetServers(); });
    QCOMPARE(list.serverList().size(), 1);
    const QJsonObject request = stand.waitFor("rest");
    const QString id = ClientInfoSettings().getOrCreateDesktopId();
    QCOMPARE(request["method"].toString(), "POST");
    QCOMPARE(request["path"].toString(), "/api/Servers");
    QCOMPARE(request["query"]["clientId"].toString(), id);
    QCOMPARE(request["query"]["getVacFeatureStatus"].toString(), "true");
    QCOMPARE(request["headers"]["content-type"].toString(), "application/json");
    QCOMPARE(request["headers"]["cookie"].toString(),
             QString("CLIENT_APP_NAME=QTClient;DESKTOP_ID=%1;VERSION=7.2.400;").arg(id));

    RestAccessPoint server;
    const auto themes = onAnotherThread([&] { return server.getThemes(); });
    QCOMPARE(themes.constFirst().id(), "therapy");
    ClientThemeInfo claim;
    claim.setName("жалоба");
    QVERIFY(onAnotherThread([&] { return server.sendClaim(claim); }));
    const QJsonObject sent = stand.waitFor(
        "rest", [](const QJsonObject &event) { return event["path"] == "/api/Claim"; });
    QVERIFY(sent["body"].toString().contains("жалоба"));
    stand.tell({{"do", "claim"}, {"mode", "fail"}});
    QVERIFY(!onAnotherThread([&] { return server.sendClaim(claim); }));
}

void TestRest::turnsFailuresIntoValues_data() {
    QTest::addColumn<QByteArray>("answer"); // none: nobody listens
    QTest::addColumn<QString>("debugText");
    const auto ok = [](const QByteArray &body) {
        return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n\r\n" + body;
    };
    row("nobody listens", QByteArray(), "Код: 1\n");
    row("not found", ok("").replace("200", "404"), "Код: 203\n");
    row("not JSON", ok("oops"), "illegal value");
    row("closed at once", QByteArray("closed"), "Код: 2\n");
    row("silence for seven seconds", QByteArray("silent"), "Код: 5\n");
    row("deep", ok(QByteArray(10000, '[')), "too deeply nested document");
    row("too large", ok(QByteArray(80000000, ' ')), "Код: 5\n");
    row("an array is wrapped", ok("[1]"), "");
}

void TestRest::turnsFailuresIntoValues() {
    QFETCH(QByteArray, answer);
    QFETCH(QString, debugText);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    if (answer.isEmpty())
        server.close();
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, answer] {
            socket->readAll();
            if (answer.startsWith("HTTP"))
                socket->write(answer);
            if (answer != "silent")
                socket->disconnectFromHost();
        });
    });
    QElapsedTimer timer;
    timer.start();
    const QJsonObject result = fetch("127.0.0.1", port, false);
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(answer != "silent" || (elapsed >= 7000 && elapsed < 9000),
             qPrintable(QString::number(elapsed)));
    if (debugText.isEmpty()) {
        QCOMPARE(result["non_field_data"].toArray().size(), 1);
        return;
    }
    const QJsonObject error = result["Error"].toObject();
    QCOMPARE(error["DebugText"].toString().left(debugText.size()), debugText);
    QCOMPARE(error["Text"].toString(),
             "Не удалось получить данные с сервера. Попробуйте выполнить запрос позднее");
}

void TestRest::endsWithItsThread() {
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    RestClient client;
    client.initialize("127.0.0.1", silent.serverPort(), false);
    const std::unique_ptr<QThread> thread(
        QThread::create([&] { client.execute("Theme", Method::Get, {}, {}); }));
    QSignalSpy asked(&silent, &QTcpServer::newConnection);
    thread->start();
    QVERIFY(asked.wait(5000));
    thread->requestInterruption();
    QVERIFY2(thread->wait(2000), "a request does not outlast the wish to end its thread");
}

void TestRest::verifiesCertificates_data() {
    columns<QString, bool>("verification", "isAccepted");
    row("strict", "Strict", false);
    row("insecure", "Insecure", true);
    row("unknown value", "strict", true);
}

void TestRest::verifiesCertificates() {
    QFETCH(QString, verification);
    SslSettings().SslCertificateVerification = verification;
    const TlsServer server(desk().folder());
    const QJsonObject result = fetch("localhost", server.serverPort(), true);
    QTEST(result["a"].toInt() == 1, "isAccepted");
    QCOMPARE(result.contains("Error"), result["a"].toInt() != 1);
}

void TestRest::givesResponsesAsText() {
    Stand stand;
    RestClient client;
    client.setApiPrefix("/");
    client.initialize("127.0.0.1", stand.restPort(), false);
    const auto get = [&](const QString &path) {
        return onAnotherThread([&] { return client.executeClearHttp(path, Method::Get, {}, {}); });
    };
    const QString themes = get("api/Theme");
    QVERIFY2(themes.startsWith("HTTP/1.1 200 OK\r\n"), qPrintable(themes));
    QVERIFY(themes.contains("Терапия") && !themes.endsWith('\n'));
    const QString error = get("no");
    const QString head = "HTTP/1.1 504 Gateway Timeout\nContent-Length: ";
    QVERIFY2(error.startsWith(head), qPrintable(error));
    const QString body = error.mid(error.indexOf("\r\n\r\n") + 4);
    QCOMPARE(error.mid(head.size()).section('\r', 0, 0).toInt(), body.toUtf8().size());
}

void TestRest::choosesTheProxy_data() {
    columns<QByteArray, bool, int>("environment", "useProxy", "type");
    const QByteArray web = "http://proxy.example:3128";
    const QByteArray socks = "socks5://proxy.example:1080";
    row("none", QByteArray(), true, int(QNetworkProxy::DefaultProxy));
    row("the system's", web, true, int(QNetworkProxy::HttpProxy));
    row("socks is of no use", socks, true, int(QNetworkProxy::DefaultProxy));
    row("switched off", web, false, int(QNetworkProxy::NoProxy));
}

void TestRest::choosesTheProxy() {
    QFETCH(QByteArray, environment);
    QFETCH(bool, useProxy);
    QFETCH(int, type);
    qputenv("http_proxy", environment);
    ClientInfoSettings().UseProxy = useProxy;
    const QNetworkProxy proxy = ConnectionHelper::configuredProxy(QUrl("http://server.example/"));
    qunsetenv("http_proxy");
    ClientInfoSettings().UseProxy = true;
    QCOMPARE(int(proxy.type()), type);
    QCOMPARE(proxy.hostName(), type == QNetworkProxy::HttpProxy ? "proxy.example" : "");
}

DESK_CORE_TEST_MAIN(TestRest)
#include "TestRest.moc"
