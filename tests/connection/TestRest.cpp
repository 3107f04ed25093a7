#include "DeskTest.h"
#include "Stand.h"
#include "connection/BalancerRestAccessPoint.h"
#include "connection/RestAccessPoint.h"
#include "connection/rest/ConnectionHelper.h"
#include "connection/rest/RestClient.h"
#include "connection/rest/SslCertificateVerification.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/SslSettings.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QThread>

namespace {

/// Runs a blocking call on a thread of its own while this thread serves its events.
template <typename Call>
auto onAnotherThread(Call call) {
    decltype(call()) result;
    const std::unique_ptr<QThread> thread(QThread::create([&] { result = call(); }));
    QSignalSpy finished(thread.get(), &QThread::finished);
    thread->start();
    if (!finished.wait(20000))
        qCritical("the call does not come back");
    thread->wait();
    return result;
}

/// Answers TLS on loopback with a certificate of its own.
class TlsServer : public QTcpServer {
public:
    explicit TlsServer(const QString &folder) {
        desk().run(QStringLiteral("openssl"),
                   {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=localhost",
                    "-keyout", folder + "/key.pem", "-out", folder + "/cert.pem"});
        m_certificates = QSslCertificate::fromPath(folder + "/cert.pem");
        QFile file(folder + "/key.pem");
        if (file.open(QIODevice::ReadOnly))
            m_key = QSslKey(&file, QSsl::Rsa);
        listen(QHostAddress::LocalHost);
    }

protected:
    void incomingConnection(qintptr descriptor) override {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setLocalCertificate(m_certificates.value(0));
        socket->setPrivateKey(m_key);
        connect(socket, &QSslSocket::readyRead, socket, [socket] {
            if (socket->readAll().endsWith("\r\n\r\n"))
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
    void trimsSlashes_data();
    void trimsSlashes();
    void sendsWhoItIs();
    void turnsFailuresIntoValues_data();
    void turnsFailuresIntoValues();
    void givesUpAfterSevenSeconds();
    void endsWithItsThread();
    void verifiesCertificates_data();
    void verifiesCertificates();
    void givesResponsesAsText();
    void choosesTheProxy_data();
    void choosesTheProxy();
};

void TestRest::trimsSlashes_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("trimmed");
    QTest::newRow("both ends") << "//a/b /"
                               << "a/b";
    QTest::newRow("nothing but slashes") << " / / "
                                         << "";
    QTest::newRow("empty") << QString() << "";
}

void TestRest::trimsSlashes() {
    QFETCH(QString, text);
    QTEST(RestClient::trimSlashes(text), "trimmed");
}

void TestRest::sendsWhoItIs() {
    Stand stand;
    stand.writeSettings();
    BalancerRestAccessPoint balancer;
    const ServerListDTO list = onAnotherThread([&] { return balancer.GetServers(); });
    QCOMPARE(list.serverList().size(), 1);
    const QJsonObject request = stand.waitFor(QStringLiteral("rest"));
    const QString id = ClientInfoSettings().getOrCreateDesktopId();
    QCOMPARE(request["method"].toString(), QStringLiteral("POST"));
    QCOMPARE(request["path"].toString(), QStringLiteral("/api/Servers"));
    QCOMPARE(request["query"].toObject()["clientId"].toString(), id);
    QCOMPARE(request["query"].toObject()["getVacFeatureStatus"].toString(), QStringLiteral("true"));
    const QJsonObject headers = request["headers"].toObject();
    QCOMPARE(headers["content-type"].toString(), QStringLiteral("application/json"));
    QCOMPARE(headers["cookie"].toString(),
             QStringLiteral("CLIENT_APP_NAME=QTClient;DESKTOP_ID=%1;VERSION=7.2.400;").arg(id));

    RestAccessPoint server;
    const auto themes = onAnotherThread([&] { return server.getThemes(); });
    QCOMPARE(themes.constFirst().id(), QStringLiteral("therapy"));
    ClientThemeInfo claim;
    claim.setName(QStringLiteral("жалоба"));
    QVERIFY(onAnotherThread([&] { return server.sendClaim(claim); }));
    const QJsonObject sent = stand.waitFor(QStringLiteral("rest"), [](const QJsonObject &event) {
        return event["path"].toString() == QLatin1String("/api/Claim");
    });
    QVERIFY(sent["body"].toString().contains(QStringLiteral("жалоба")));
    stand.tell({{"do", "claim"}, {"mode", "fail"}});
    QVERIFY(!onAnotherThread([&] { return server.sendClaim(claim); }));
}

void TestRest::turnsFailuresIntoValues_data() {
    QTest::addColumn<QByteArray>("answer"); // none: nobody listens
    QTest::addColumn<QString>("debugText");
    QTest::newRow("nobody listens") << QByteArray() << "Код: 1\n";
    QTest::newRow("not found") << QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n")
                               << "Код: 203\n";
    QTest::newRow("not JSON") << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\noops")
                              << "illegal value";
    QTest::newRow("closed at once") << QByteArray("-") << "Код: 2\n";
    QTest::newRow("deep") << "HTTP/1.1 200 OK\r\nContent-Length: 10000\r\n\r\n" +
                                 QByteArray(10000, '[')
                          << "too deeply nested document";
    QTest::newRow("too large") << "HTTP/1.1 200 OK\r\nContent-Length: 80000000\r\n\r\n" +
                                      QByteArray(80000000, ' ')
                               << "Код: 5\n";
    QTest::newRow("an array is wrapped")
        << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\n[1]") << "";
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
            if (answer.size() > 1)
                socket->write(answer);
            socket->disconnectFromHost();
        });
    });
    RestClient client;
    client.initialize(QStringLiteral("127.0.0.1"), port, false);
    const QJsonObject result = onAnotherThread(
        [&] { return client.execute(QStringLiteral("/Theme/"), Method::Get, {}, {}); });
    const QJsonObject error = result["Error"].toObject();
    if (debugText.isEmpty()) {
        QCOMPARE(result["non_field_data"].toArray().size(), 1);
        return;
    }
    QVERIFY2(error["DebugText"].toString().startsWith(debugText),
             qPrintable(error["DebugText"].toString()));
    QCOMPARE(error["Text"].toString(),
             QStringLiteral("Не удалось получить данные с сервера. Попробуйте выполнить запрос "
                            "позднее"));
}

void TestRest::givesUpAfterSevenSeconds() {
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    RestClient client;
    client.initialize(QStringLiteral("127.0.0.1"), silent.serverPort(), false);
    QElapsedTimer timer;
    timer.start();
    const QJsonObject result = onAnotherThread(
        [&] { return client.execute(QStringLiteral("Theme"), Method::Put, "x", {}); });
    QVERIFY2(timer.elapsed() >= 7000 && timer.elapsed() < 9000,
             qPrintable(QString::number(timer.elapsed())));
    QVERIFY(
        result["Error"].toObject()["DebugText"].toString().startsWith(QStringLiteral("Код: 5\n")));
}

void TestRest::endsWithItsThread() {
    QTcpServer silent;
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    RestClient client;
    client.initialize(QStringLiteral("127.0.0.1"), silent.serverPort(), false);
    const std::unique_ptr<QThread> thread(
        QThread::create([&] { client.execute(QStringLiteral("Theme"), Method::Get, {}, {}); }));
    QSignalSpy asked(&silent, &QTcpServer::newConnection);
    thread->start();
    QVERIFY(asked.wait(5000));
    thread->requestInterruption();
    QVERIFY2(thread->wait(2000), "a request does not outlast the wish to end its thread");
}

void TestRest::verifiesCertificates_data() {
    QTest::addColumn<QString>("verification");
    QTest::addColumn<bool>("isAccepted");
    QTest::newRow("strict") << "Strict" << false;
    QTest::newRow("insecure") << "Insecure" << true;
    QTest::newRow("unknown value") << "strict" << true;
}

void TestRest::verifiesCertificates() {
    QFETCH(QString, verification);
    SslSettings().SslCertificateVerification = verification;
    const TlsServer server(desk().folder());
    RestClient client;
    client.initialize(QStringLiteral("localhost"), server.serverPort(), true);
    const QJsonObject result = onAnotherThread(
        [&] { return client.execute(QStringLiteral("Theme"), Method::Get, {}, {}); });
    QTEST(result["a"].toInt() == 1, "isAccepted");
    QCOMPARE(result.contains("Error"), result["a"].toInt() != 1);
}

void TestRest::givesResponsesAsText() {
    Stand stand;
    RestClient client;
    client.setApiPrefix(QStringLiteral("/"));
    client.initialize(QStringLiteral("127.0.0.1"), stand.restPort(), false);
    const QString themes = onAnotherThread(
        [&] { return client.executeClearHttp(QStringLiteral("api/Theme"), Method::Get, {}, {}); });
    QVERIFY2(themes.startsWith(QStringLiteral("HTTP/1.1 200 OK\r\n")), qPrintable(themes));
    QVERIFY(themes.contains(QStringLiteral("Терапия")) && !themes.endsWith(QLatin1Char('\n')));
    const QString error = onAnotherThread(
        [&] { return client.executeClearHttp(QStringLiteral("no"), Method::Get, {}, {}); });
    const QString head = QStringLiteral("HTTP/1.1 504 Gateway Timeout\nContent-Length: ");
    QVERIFY2(error.startsWith(head), qPrintable(error));
    const QString body = error.mid(error.indexOf(QStringLiteral("\r\n\r\n")) + 4);
    QCOMPARE(error.mid(head.size()).section(QLatin1Char('\r'), 0, 0).toInt(), body.toUtf8().size());
}

void TestRest::choosesTheProxy_data() {
    QTest::addColumn<QByteArray>("environment");
    QTest::addColumn<bool>("useProxy");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("host");
    QTest::newRow("none") << QByteArray() << true << int(QNetworkProxy::DefaultProxy) << "";
    QTest::newRow("the system's") << QByteArray("http://proxy.example:3128") << true
                                  << int(QNetworkProxy::HttpProxy) << "proxy.example";
    QTest::newRow("socks is of no use") << QByteArray("socks5://proxy.example:1080") << true
                                        << int(QNetworkProxy::DefaultProxy) << "";
    QTest::newRow("switched off") << QByteArray("http://proxy.example:3128") << false
                                  << int(QNetworkProxy::NoProxy) << "";
}

void TestRest::choosesTheProxy() {
    QFETCH(QByteArray, environment);
    QFETCH(bool, useProxy);
    qputenv("http_proxy", environment);
    ClientInfoSettings().UseProxy = useProxy;
    const QNetworkProxy proxy =
        ConnectionHelper::configuredProxy(QUrl(QStringLiteral("http://server.example/")));
    qunsetenv("http_proxy");
    ClientInfoSettings().UseProxy = true;
    QTEST(int(proxy.type()), "type");
    QTEST(proxy.hostName(), "host");
}

DESK_CORE_TEST_MAIN(TestRest)
#include "TestRest.moc"
