#include "DeskTest.h"
#include "OtherThread.h"
#include "Stand.h"
#include "connection/ServersConnectionSource.h"
#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/CachedServerSettings.h"
#include "core/settings/ServersConnectionSettings.h"

#include <QSignalSpy>

namespace {

QList<ServerInfoDTO> drain(ServersConnectionSource *source) {
    return onAnotherThread([source] {
        QList<ServerInfoDTO> servers;
        while (auto server = source->GetNextServer())
            servers << *server;
        return servers;
    });
}

QString ids(const QList<ServerInfoDTO> &servers) {
    QStringList names;
    for (const ServerInfoDTO &server : servers)
        names << server.serverId();
    return names.join(QLatin1Char(' '));
}

QJsonObject server(const QString &id, double load) {
    return {{"ServerId", id}, {"ConnectionString", "h;1;2"}, {"EstimatedLoadLevel", load}};
}

} // namespace

/// Which server is next, against a real balancer.
class TestServers : public QObject {
    Q_OBJECT

private slots:
    void ordersServers_data();
    void ordersServers();
    void triesTlsFirst();
    void emptiesTheCacheOfAnotherBalancer();
    void offersFailedServersAgain_data();
    void offersFailedServersAgain();
};

void TestServers::ordersServers_data() {
    columns<QJsonArray, QString, QString>("servers", "recommended", "order");
    row("rising load", QJsonArray{server("c", 0.9), server("a", 0.1), server("b", 0.5)}, "",
        "a b c");
    row("recommended first, whatever its load",
        QJsonArray{server("a", 0.1), server("c", 0.9), server("b", 0.5)}, "c", "c a b");
    row("recommended one that is not listed", QJsonArray{server("b", 0.5), server("a", 0.1)}, "z",
        "a b");
    row("no servers", QJsonArray(), "", "");
    QJsonArray twenty;
    QStringList order{"r", "r"};
    for (int i = 0; i < 18; ++i) {
        twenty.append(server(QString::number(i), (i * 7) % 18));
        order << QString();
        // The one with the load k is the one whose number times 7 leaves k.
        order.last() = QString::number((i * 13) % 18);
    }
    twenty.insert(3, server("r", 5));
    twenty.insert(17, server("r", 2));
    row("recommended twice among twenty", twenty, "r", order.join(' '));
}

void TestServers::ordersServers() {
    QFETCH(QJsonArray, servers);
    QFETCH(QString, recommended);
    Stand stand;
    stand.writeSettings();
    QJsonObject command{{"do", "servers"}, {"mode", "normal"}, {"list", servers}};
    if (!recommended.isEmpty())
        command["recommended"] = server(recommended, 0);
    stand.tell(command);
    ServersConnectionSource source;
    source.setListRefreshTimeout(600);
    const QList<ServerInfoDTO> found = drain(&source);
    QTEST(ids(found), "order");
    QCOMPARE(source.lastServerCount(), servers.size());
    QVERIFY(!source.GetNextServer()); // within the refresh time, without a request
    stand.tell("state");
    QCOMPARE(stand.count("rest"), 1);
}

void TestServers::triesTlsFirst() {
    Stand stand;
    stand.writeSettings();
    ServersConnectionSource source;
    source.setListRefreshTimeout(-1); // every call asks anew
    QSignalSpy vac(&source, &ServersConnectionSource::ReceivedVACSettingsFromBalancer);
    QCOMPARE(drain(&source).size(), 1);
    QVERIFY(!stand.waitFor("tls").isEmpty());
    QVERIFY2(!BalancerConnectionSettings().UseTls, "the scheme that worked stays in the settings");
    QVERIFY(vac.count() >= 1);
    const int tlsAttempts = stand.count("tls");
    drain(&source);
    QCOMPARE(stand.count("tls"), tlsAttempts);
    source.Reset();
    drain(&source);
    QVERIFY2(!stand.waitFor("tls").isEmpty(), "a new pass tries TLS again");
}

void TestServers::emptiesTheCacheOfAnotherBalancer() {
    {
        Stand stand;
        stand.writeSettings();
        ServersConnectionSource source;
        source.setListRefreshTimeout(600);
        drain(&source);
        QVERIFY(
            CachedServerSettings().ServersList.get().contains(QString::number(stand.restPort())));
        stand.tell({{"do", "servers"}, {"mode", "fail"}});
        source.Reset();
        QSignalSpy vac(&source, &ServersConnectionSource::ReceivedVACSettingsFromBalancer);
        QVERIFY(drain(&source).isEmpty());
        QVERIFY2(vac.isEmpty(), "nothing was said about voice activation");
        QCOMPARE(source.lastServerCount(), 1);
        QVERIFY2(CachedServerSettings().ServersList.get().contains("ServerId"),
                 "the same balancer's list stays");
    }
    {
        BalancerConnectionSettings settings;
        settings.Ip = "127.0.0.1";
        settings.RestPort = 1; // nobody listens there
    }
    ServersConnectionSource source;
    source.setListRefreshTimeout(600);
    drain(&source);
    QVERIFY(!CachedServerSettings().ServersList.get().contains("ServerId"));
}

void TestServers::offersFailedServersAgain_data() {
    // The age is that of the server's last report, when the list was made.
    columns<int, int, bool>("minTimeout", "reportAge", "isOffered");
    row("failed too short ago", 600, 0, false);
    row("reported since it failed", -1, -10, true);
    row("has not reported since", -1, 700, false);
}

void TestServers::offersFailedServersAgain() {
    QFETCH(int, minTimeout);
    QFETCH(int, reportAge);
    ServersConnectionSettings().ServerStatusRefreshMinTimeout = minTimeout;
    Stand stand;
    stand.writeSettings();
    const QDateTime now = QDateTime::currentDateTime();
    QJsonObject one = server("a", 0);
    one["LastUpdateDate"] = now.addSecs(-reportAge).toString(Qt::ISODateWithMs);
    stand.tell({{"do", "servers"},
                {"mode", "normal"},
                {"list", QJsonObject{{"ServerList", QJsonArray{one}},
                                     {"TimeStamp", now.toString(Qt::ISODateWithMs)}}}});
    ServersConnectionSource source;
    source.setListRefreshTimeout(600);
    QCOMPARE(ids(drain(&source)), "a");
    source.storage().SetStatus("a", DisconnectStatus::ConnectionLost);
    source.setListRefreshTimeout(-1);
    const int count = onAnotherThread([&source] {
        source.UpdateServers();
        return source.lastServerCount();
    });
    QTEST(count == 1, "isOffered");
    QTEST(source.storage().GetStatus("a") == DisconnectStatus::None, "isOffered");
}

DESK_CORE_TEST_MAIN(TestServers)
#include "TestServers.moc"
