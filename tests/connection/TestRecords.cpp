#include "DeskTest.h"
#include "commands/CommandsInfo.h"
#include "connection/CookiesSource.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketConnection.h"
#include "connection/messages/MISInfo.h"
#include "connection/messages/MessageTypeMapper.h"
#include "connection/messages/RecognitionModeCommand.h"
#include "connection/messages/ServerListDTO.h"
#include "core/Exception.h"
#include "formapi/FormMetadata.h"
#include "themes/ClientThemeInfo.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSettings>
#include <QSignalSpy>

namespace {

QJsonObject object(const char *json) {
    return QJsonDocument::fromJson(json).object();
}

QString compact(const QJsonValue &value) {
    return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
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
    void refusesToWriteWhatOnlyArrives();
    void mapsMessageTypes_data();
    void mapsMessageTypes();
    void namesTheClientInCookies();
};

void TestRecords::writesRecords_data() {
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("expected");
    QTest::newRow("a mode of the server's choice is null")
        << compact(RecognitionModeCommand().toJson()) << R"({"Parameters":{},"Type":null})";
    QTest::newRow("off is a number")
        << compact(RecognitionModeCommand(RecognitionMode::Off).toJson())
        << R"({"Parameters":{},"Type":0})";
    RecognitionModeCommand command(
        object(R"({"Type":2,"Parameters":{"a":1,"b":true,"c":"x","d":null}})"));
    QTest::newRow("parameters become texts")
        << compact(command.toJson())
        << R"({"Parameters":{"a":"1","b":"true","c":"x","d":""},"Type":2})";
    QTest::newRow("commands")
        << compact(CommandsInfo({CommandInfo("i", "p", CommandType::User)}).toJson())
        << R"({"Commands":[{"Id":"i","Pattern":"p","Type":3}]})";
    QTest::newRow("a theme from nothing")
        << compact(ClientThemeInfo(QJsonObject()).toJson())
        << R"({"CompositionType":0,"Description":"","Id":"","Name":"","NewVersionInfoUrl":"","ThemeId":"","Version":""})";
    QTest::newRow("form settings are an object on the wire")
        << compact(FormMetadata(object(R"({"Key":"k","FormSettings":{"a":{"b":1}},"Mode":1})"))
                       .toJson())
        << R"({"Childs":[],"CultureCode":"","CustomCommands":[],"FormCommands":[],"FormSettings":{"a":{"b":1}},"IsDeleted":false,"Key":"k","Mode":1,"Name":"","ThemeId":""})";
    QTest::newRow("information system")
        << compact(MISInfo(object(R"({"TypeId":"t","User":5})")).toJson())
        << R"({"TypeId":"t","User":"","Version":""})";
}

void TestRecords::writesRecords() {
    QFETCH(QString, written);
    QTEST(written, "expected");
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
    QVERIFY(!list.toJson().toObject().contains(QStringLiteral("VacEnabled")));
    QVERIFY(!list.toJson().toObject().contains(QStringLiteral("RecommendedServer")));

    const ServerListDTO again(list.toJson().toObject());
    QCOMPARE(again.serverList().constFirst().connectionString(), QStringLiteral("h;1;2"));
    QCOMPARE(again.serverList().constFirst().loadPerClient(), 0.0F);
    QVERIFY(!again.hasVacEnabled());

    const ServerListDTO empty{QJsonObject()};
    QVERIFY(empty.isValid() && empty.serverList().isEmpty() && !empty.timeStamp().isValid());
    QVERIFY(!ServerListDTO().isValid());
    const ServerListDTO noVac(
        object(R"({"VacEnabled":null,"RecommendedServer":{"ServerId":"r"}})"));
    QVERIFY(!noVac.hasVacEnabled());
    QCOMPARE(noVac.recommendedServer()->serverId(), QStringLiteral("r"));
}

void TestRecords::readsResults() {
    DataMessageProcessor processor(nullptr);
    QSignalSpy results(&processor, &DataMessageProcessor::resultReceived);
    processor.onTextMessageReceived(QStringLiteral(R"({"MessageType":3})"));
    processor.onTextMessageReceived(
        QStringLiteral(R"({"MessageType":3,"Data":{"Text":"да","IsFinal":true,"CommandId":"c",)"
                       R"("Words":[{"Begin":1,"ProbabilityNorm":0.5,"Text":"да"},7]}})"));
    processor.onTextMessageReceived(QStringLiteral(R"({"MessageType":27,"Data":{}})"));
    QCOMPARE(results.count(), 2);
    const auto empty = results[0][0].value<TextResult>();
    QVERIFY(empty.text().isEmpty() && !empty.isFinal() && empty.words().isEmpty());
    const auto full = results[1][0].value<TextResult>().clone();
    QVERIFY(full.isFinal());
    QCOMPARE(full.text() + full.commandId(), QStringLiteral("даc"));
    QCOMPARE(full.words().size(), 2);
    QCOMPARE(full.words()[0].probabilityNorm(), 0.5);
}

void TestRecords::refusesToWriteWhatOnlyArrives() {
    QVERIFY_EXCEPTION_THROWN(TextResult().toJson(), Exception);
    QVERIFY_EXCEPTION_THROWN(UserNotification().toJson(), Exception);
    QVERIFY_EXCEPTION_THROWN(TtsStateInfo().toJson(), Exception);
    QVERIFY_EXCEPTION_THROWN(ServerThemesInfo().toJson(), Exception);
}

void TestRecords::mapsMessageTypes_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("toForm");
    QTest::addColumn<int>("toServer");
    const auto row = [](int number, int toForm, int toServer) {
        QTest::addRow("%d", number) << number << toForm << toServer;
    };
    row(-1, -1, -1);
    row(0, -1, -1);
    row(1, -1, 101);
    row(11, -1, 111);
    row(12, -1, -1);
    row(18, -1, 118);
    row(19, -1, -1);
    row(199, -1, -1);
    row(200, 0, -1);
    row(211, 11, -1);
    row(212, -1, -1);
    row(213, -1, -1);
    row(214, 14, -1);
    row(218, 18, -1);
    row(219, -1, -1);
    row(800000, 800000, -1);
}

void TestRecords::mapsMessageTypes() {
    QFETCH(int, number);
    QTEST(MessageTypeMapper::toServerMessage(number), "toForm");
    QTEST(MessageTypeMapper::toAsr(number), "toServer");
}

void TestRecords::namesTheClientInCookies() {
    qputenv("USER", "no such user; really");
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/Ostrel/Vellumar/";
    const CookiesSource source;
    const QList<QNetworkCookie> before = source.getCookies();
    QCOMPARE(before.size(), 21);
    QCOMPARE(source.getCookies(), before);

    {
        QSettings file(folder + "Organisation.ini", QSettings::IniFormat);
        file.setValue(QStringLiteral("Organisation/OrganisationFullName"),
                      QStringLiteral("ГКБ; [1] {а}"));
    }
    CookiesSource changed;
    changed.setAdditionalCookies({CookiesSource::encodedCookie("MIS_TYPE", QStringLiteral("x"))});
    const QList<QNetworkCookie> after = changed.getCookies();
    QCOMPARE(after.size(), 22);
    QByteArrayList names;
    QMap<QByteArray, QByteArray> first;
    for (const QNetworkCookie &cookie : after) {
        names << cookie.name();
        if (!first.contains(cookie.name()))
            first.insert(cookie.name(), cookie.value());
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
