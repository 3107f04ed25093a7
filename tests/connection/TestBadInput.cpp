#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QDir>
#include <QSignalSpy>

namespace {

const QString deep(10000, '[');
const QString megabytes(10000000, 'a');

/// A frame whose payload is given as bytes, beneath the socket's own framing.
QJsonObject rawFrame(const QByteArray &bytes) {
    return {{"do", "raw"}, {"base64", QString::fromLatin1(bytes.toBase64())}};
}

} // namespace

/// What a broken or hostile server can send. The client goes on, with the same connection where
/// that is possible at all, and types what comes afterwards.
class TestBadInput : public QObject {
    Q_OBJECT

private slots:
    void outlivesFrames_data();
    void outlivesFrames();
    void outlivesAnswers_data();
    void outlivesAnswers();
    void outlivesItsOwnFiles_data();
    void outlivesItsOwnFiles();
};

void TestBadInput::outlivesFrames_data() {
    columns<QJsonObject, bool>("command", "keepsConnection");
    const auto row = [](const char *name, const QJsonObject &command, bool keeps = true) {
        QTest::newRow(name) << command << keeps;
    };
    const auto text = [&row](const char *name, const QString &sent) {
        row(name, {{"do", "send"}, {"text", sent}});
    };
    text("not JSON", "<html>");
    text("empty", QString());
    text("type of a wrong kind", R"({"MessageType":"3","Data":{}})");
    text("type beyond all numbers", R"({"MessageType":1e300,"Data":{}})");
    text("unknown type", R"({"MessageType":-7,"Data":{}})");
    text("data of a wrong kind", R"({"MessageType":2,"Data":[1,2]})");
    text("result of wrong kinds",
         R"({"MessageType":3,"Data":{"Text":7,"IsFinal":"yes","CommandId":{},"Words":[[]]}})");
    text("unknown state", R"({"MessageType":2,"Data":{"Mode":3,"State":9}})");
    text("command that nobody has",
         R"({"MessageType":3,"Data":{"CommandId":"no","IsFinal":true}})");
    text("notification of an unknown action",
         R"({"MessageType":5,"Data":{"Action":99,"Type":-1}})");
    text("nested 10,000 deep", deep);
    text("nested deep in the data", R"({"MessageType":3,"Data":)" + deep);
    text("a result of 10 MB",
         R"({"MessageType":3,"Data":{"IsFinal":false,"Text":")" + megabytes + R"("}})");
    row("a binary frame", {{"do", "sendBinary"}, {"base64", "AAEC"}});
    row("a thousand frames",
        {{"do", "send"}, {"text", R"({"MessageType":10,"Data":{}})"}, {"times", 1000}});
    row("invalid UTF-8", rawFrame(QByteArray("\x81\x03\xC3\x28\xFF", 5)), false);
    row("a reserved opcode", rawFrame(QByteArray("\x83\x01\x61", 3)), false);
    row("a frame of eight exabytes",
        rawFrame(QByteArray("\x81\x7F\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)), false);
    row("a masked frame", rawFrame(QByteArray("\x81\x81\1\2\3\4\x60", 7)));
}

void TestBadInput::outlivesFrames() {
    QFETCH(QJsonObject, command);
    QFETCH(bool, keepsConnection);
    Stand stand;
    ClientHarness client(stand);
    client.manager()->setReconnectDelay(0);
    QSignalSpy results(client.worker()->resultManager(), &ResultManager::resultReady);
    QVERIFY(client.open());
    QVERIFY(client.dictate());
    client.forget();
    stand.tell(command);
    if (!keepsConnection) {
        QVERIFY2(client.waitFor(ConnectionState::Ready, 15000), "a new pass connects again");
        QVERIFY(client.dictate());
    }
    stand.sayResult("дальше");
    QTRY_VERIFY_WITH_TIMEOUT(!results.isEmpty() && results.last() == QVariantList({"Дальше", true}),
                             15000);
    QCOMPARE(client.states().contains(static_cast<int>(ConnectionState::Disconnected)),
             !keepsConnection);
}

void TestBadInput::outlivesAnswers_data() {
    columns<QString, QString>("command", "text");
    const char *const kinds[] = {"servers", "themes"};
    for (const char *kind : kinds) {
        const auto row = [kind](const char *name, const QString &text) {
            QTest::addRow("%s: %s", kind, name) << kind << text;
        };
        row("not JSON", "<html>");
        row("empty", QString());
        row("an array", "[1,2]");
        row("no data", "{}");
        row("data of a wrong kind", R"({"Data":7})");
        row("elements of wrong kinds", R"({"Data":{"ServerList":[1,null,[]],"TimeStamp":3}})");
        row("missing keys", R"({"Data":{"ServerList":[{}]}})");
        row("an error of a wrong kind", R"({"Error":5})");
        row("nested 10,000 deep", deep);
        row("10 MB", R"({"Data":")" + megabytes + R"("})");
    }
}

void TestBadInput::outlivesAnswers() {
    QFETCH(QString, command);
    QFETCH(QString, text);
    Stand stand;
    stand.tell({{"do", command}, {"mode", "garbage"}, {"text", text}});
    ClientHarness client(stand);
    client.manager()->setReconnectDelay(0);
    client.start();
    const auto hasBeen = [&client](ConnectionState state) {
        return client.states().contains(static_cast<int>(state));
    };
    QTRY_VERIFY(hasBeen(ConnectionState::Failed) || hasBeen(ConnectionState::Ready));
    stand.tell({{"do", command}, {"mode", "normal"}});
    QVERIFY(client.waitFor(ConnectionState::Ready, 15000));
}

void TestBadInput::outlivesItsOwnFiles_data() {
    columns<QByteArray, QByteArray>("settings", "words");
    row("words that are no text", QByteArray(), QByteArray("\xFF\xFE\0\x01\n\n", 6));
    row("a cached list that is no JSON", QByteArray("[CachedServers]\nServersList={{{\n"),
        QByteArray());
    row("a cached list of wrong kinds",
        QByteArray("[CachedServers]\nServersList=\"{\\\"ServerList\\\":7}\"\n"), QByteArray());
    row("numbers that are none",
        QByteArray("[ServersConnection]\nServersListRefreshMinTimeout=soon\n"
                   "[ConnectionManager]\nQuietConnectionEnabled=maybe\n"),
        QByteArray());
    row("binary", QByteArray("\0\x01\x02[\xFF]\n=\n", 9), QByteArray());
}

void TestBadInput::outlivesItsOwnFiles() {
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, words);
    const QString folder = AppVariables::sm_stdVars.get("AppLocalDataLocation", QString());
    QVERIFY(QDir().mkpath(folder + "/Avocado"));
    QVERIFY(save(folder + "/Avocado/AvocadoWords.txt", words));
    Stand stand;
    ClientHarness client(stand);
    Settings(QString()).sync();
    const QString file = Settings(QString()).fileName();
    QVERIFY(save(file, bytesOf(file) + settings));
    Settings(QString()).sync();
    QVERIFY(client.open());
    QVERIFY(client.dictate());
}

DESK_CORE_TEST_MAIN(TestBadInput)
#include "TestBadInput.moc"
