#include "DeskTest.h"
#include "commands/CommandsInfo.h"
#include "connection/CookiesSource.h"
#include "connection/messages/MessageTypeMapper.h"
#include "connection/messages/ServerListDTO.h"
#include "formapi/FormMetadata.h"
#include "themes/ClientThemeInfo.h"

#include <QJsonDocument>
#include <QSettings>

namespace {

QJsonObject object(const char *json) {
    return QJsonDocument::fromJson(json).object();
}

} // namespace

/// The records on the wire, and the cookies of the handshake.
class TestRecords : public QObject {
    Q_OBJECT

private slots:
    void writesRecords_data();
    void writesRecords();
    void readsServerLists();
    void mapsMessageTypes();
    void namesTheClientInCookies();
};

void TestRecords::writesRecords_data() {
    columns<QJsonValue, QString>("written", "expected");
    row("commands", CommandsInfo({CommandInfo("i", "p", CommandType::User)}).toJson(),
        R"({"Commands":[{"Id":"i","Pattern":"p","Type":3}]})");
    row("a theme from nothing", ClientThemeInfo(QJsonObject()).toJson(),
        R"({"CompositionType":0,"Description":"","Id":"","Name":"",)"
        R"("NewVersionInfoUrl":"","ThemeId":"","Version":""})");
    row("form settings are an object on the wire",
        FormMetadata(object(R"({"Key":"k","FormSettings":{"a":{"b":1}},"Mode":1})")).toJson(),
        R"({"Childs":[],"CultureCode":"","CustomCommands":[],"FormCommands":[],)"
        R"("FormSettings":{"a":{"b":1}},"IsDeleted":false,"Key":"k","Mode":1,)"
        R"("Name":"","ThemeId":""})");
}

void TestRecords::writesRecords() {
    QFETCH(QJsonValue, written);
    QTEST(QString(QJsonDocument(written.toObject()).toJson(QJsonDocument::Compact)), "expected");
}

void TestRecords::readsServerLists() {
    QVERIFY(!ServerListDTO().isValid());
    const ServerListDTO empty{QJsonObject()};
    QVERIFY(empty.isValid() && empty.serverList().isEmpty() && !empty.timeStamp().isValid());
    QVERIFY(!empty.hasVacEnabled() && !empty.recommendedServer());
    const ServerListDTO nulls(object(R"({"VacEnabled":null,"RecommendedServer":null})"));
    QVERIFY(!nulls.hasVacEnabled() && !nulls.recommendedServer());
    QVERIFY(!nulls.toJson().toObject().contains("RecommendedServer"));
}

void TestRecords::mapsMessageTypes() {
    QVector<int> toForm;
    QVector<int> toServer;
    for (int number : {0, 1, 11, 12, 18, 19, 199, 200, 211, 212, 213, 214, 218, 219, 800000}) {
        toForm << MessageTypeMapper::toServerMessage(number);
        toServer << MessageTypeMapper::toAsr(number);
    }
    const QVector<int> form{-1, -1, -1, -1, -1, -1, -1, 0, 11, -1, -1, 14, 18, -1, 800000};
    const QVector<int> server{-1, 101, 111, -1, 118, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    QCOMPARE(toForm, form);
    QCOMPARE(toServer, server);
}

void TestRecords::namesTheClientInCookies() {
    qputenv("USER", "no such user; really");
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Ostrel/Vellumar/";
    const CookiesSource source;
    const QList<QNetworkCookie> before = source.getCookies();
    QCOMPARE(before.size(), 21);
    QCOMPARE(source.getCookies(), before);

    QSettings(folder + "Organisation.ini", QSettings::IniFormat)
        .setValue("Organisation/OrganisationFullName", "ГКБ; [1] {а}");
    CookiesSource changed;
    changed.setAdditionalCookies({CookiesSource::encodedCookie("MIS_TYPE", "x")});
    const QList<QNetworkCookie> after = changed.getCookies();
    QByteArrayList names;
    QMap<QByteArray, QByteArray> first;
    for (const QNetworkCookie &cookie : after) {
        names << cookie.name();
        first.insert(cookie.name(), first.value(cookie.name(), cookie.value()));
    }
    QCOMPARE(names.join(' '),
             QByteArray("CLIENT_APP_VERSION CLIENT_APP_NAME DESKTOP_ID ENVIRONMENT ACCOUNT "
                        "HOSTNAME USER_DOMAIN USER_NAME MIS_TYPE REGION_CODE ORG_FULL_NAME "
                        "ORG_PSRN ORG_OID ROOM USER USER_SPEC USER_IIAN TIMEZONE MIS_TYPE "
                        "MIS_USER MIS_ID MIS_VERSION"));
    QCOMPARE(first["ORG_FULL_NAME"], QByteArray("%D0%93%D0%9A%D0%91%3B [1] {%D0%B0}"));
    QCOMPARE(first["CLIENT_APP_NAME"], QByteArray("Quillan Client (Linux Qt)"));
    QCOMPARE(first["MIS_USER"], first["DESKTOP_ID"]);
    QCOMPARE(first["ACCOUNT"], QByteArray("no such user%3B really"));
    QCOMPARE(first["USER_NAME"], QByteArray());
    QCOMPARE(first["MIS_TYPE"], QByteArray("x"));
}

DESK_CORE_TEST_MAIN(TestRecords)
#include "TestRecords.moc"
