#include "DeskTest.h"
#include "Files.h"
#include "OtherThread.h"
#include "Stand.h"
#include "connection/BalancerRestAccessPoint.h"
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
    return onAnotherThread([&] { return client.execute("//Theme /", Method::Put, "x", {}); });
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
    void sendsWhoItIs();
    void turnsFailuresIntoValues_data();
    void turnsFailuresIntoValues();
    void verifiesCertificates();
    void choosesTheProxy_data();
    void choosesTheProxy();
};

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
    QByteArray request;
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, answer, &request] {
            request += socket->readAll();
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
    QVERIFY2(answer.isEmpty() || request.startsWith("PUT /api/Theme HTTP/1.1\r\n"), request);
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

void TestRest::verifiesCertificates() {
    const TlsServer server(desk().folder());
    for (const QString verification : {"Strict", "Insecure", "strict"}) {
        SslSettings().SslCertificateVerification = verification;
        const QJsonObject result = fetch("localhost", server.serverPort(), true);
        const bool isAccepted = verification != "Strict";
        QVERIFY2((result["a"].toInt() == 1) == isAccepted, qPrintable(verification));
        QVERIFY2(result.contains("Error") != isAccepted, qPrintable(verification));
    }
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
