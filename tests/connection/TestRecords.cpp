#include "DeskTest.h"
#include "commands/CommandsInfo.h"
#include "connection/CookiesSource.h"
#include "connection/DataMessageProcessor.h"
#include "connection/messages/MISInfo.h"
#include "connection/messages/MessageTypeMapper.h"
#include "connection/messages/RecognitionModeCommand.h"
#include "connection/messages/ServerListDTO.h"
#include "formapi/FormMetadata.h"
#include "themes/ClientThemeInfo.h"

#include <QJsonDocument>
#include <QSettings>
#include <QSignalSpy>

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
    void readsResults();
    void mapsMessageTypes();
    void namesTheClientInCookies();
};

void TestRecords::writesRecords_data() {
    columns<QJsonValue, QString>("written", "expected");
    row("a mode of the server's choice is null", RecognitionModeCommand().toJson(),
        R"({"Parameters":{},"Type":null})");
    row("off is a number", RecognitionModeCommand(RecognitionMode::Off).toJson(),
        R"({"Parameters":{},"Type":0})");
    const QJsonObject command =
        object(R"({"Type":2,"Parameters":{"a":1,"b":true,"c":"x","d":null}})");
    row("parameters become texts", RecognitionModeCommand(command).toJson(),
        R"({"Parameters":{"a":"1","b":"true","c":"x","d":""},"Type":2})");
    row("no commands", CommandsInfo(QList<CommandInfo>()).toJson(), R"({"Commands":[]})");
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
    row("information system", MISInfo(object(R"({"TypeId":"t","User":5})")).toJson(),
        R"({"TypeId":"t","User":"","Version":""})");
}

void TestRecords::writesRecords() {
    QFETCH(QJsonValue, written);
    QTEST(QString(QJsonDocument(written.toObject()).toJson(QJsonDocument::Compact)), "expected");
}

void TestRecords::readsServerLists() {
    const ServerListDTO list(object(R"({
        "ServerList": [{"ServerId":"a","ConnectionString":"h;1;2","EstimatedLoadLevel":0.5,
                        "LoadPerLevel":0.25,"CanAcceptClient":true,
                        "LastUpdateDate":"2026-11-22T10:00:00.250"}],
        "TimeStamp": "2026-11-22T10:01:00.250", "RecommendedServer": null, "VacEnabled": true})"));
    QVERIFY(list.isValid() && list.hasVacEnabled() && list.vacEnabled());
    QVERIFY(!list.recommendedServer());
    const ServerInfoDTO server = list.serverList().constFirst();
    QCOMPARE(server.loadPerClient(), 0.25F);
    QCOMPARE(server.lastUpdateDate().secsTo(list.timeStamp()), 60);
    const QJsonObject written = list.toJson().toObject();
    QVERIFY(!written.contains("VacEnabled") && !written.contains("RecommendedServer"));
    const ServerListDTO again(written);
    QCOMPARE(again.serverList().constFirst().connectionString(), "h;1;2");
    QCOMPARE(again.serverList().constFirst().loadPerClient(), 0.0F);
    QVERIFY(!again.hasVacEnabled());

    const ServerListDTO empty{QJsonObject()};
    QVERIFY(empty.isValid() && empty.serverList().isEmpty() && !empty.timeStamp().isValid());
    QVERIFY(!ServerListDTO().isValid());
    const ServerListDTO noVac(
        object(R"({"VacEnabled":null,"RecommendedServer":{"ServerId":"r"}})"));
    QVERIFY(!noVac.hasVacEnabled());
    QCOMPARE(noVac.recommendedServer()->serverId(), "r");
}

void TestRecords::readsResults() {
    DataMessageProcessor processor(nullptr);
    QSignalSpy results(&processor, &DataMessageProcessor::resultReceived);
    processor.onTextMessageReceived(R"({"MessageType":3})");
    processor.onTextMessageReceived(
        QStringLiteral(R"({"MessageType":3,"Data":{"Text":"да","IsFinal":true,"CommandId":"c",)"
                       R"("Words":[{"Begin":1,"ProbabilityNorm":0.5,"Text":"да"},7]}})"));
    processor.onTextMessageReceived(R"({"MessageType":27,"Data":{}})");
    QCOMPARE(results.count(), 2);
    const auto empty = results[0][0].value<TextResult>();
    QVERIFY(empty.text().isEmpty() && !empty.isFinal() && empty.words().isEmpty());
    const auto full = results[1][0].value<TextResult>().clone();
    QVERIFY(full.isFinal());
    QCOMPARE(full.text() + full.commandId(), "даc");
    QCOMPARE(full.words().size(), 2);
    QCOMPARE(full.words()[0].probabilityNorm(), 0.5);
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
