#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "core/settings/CachedServerSettings.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace {

const QString deep = QString(10000, QLatin1Char('['));

QJsonObject frame(const QString &text) {
    return {{"do", "send"}, {"text", text}};
}

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
    QTest::addColumn<QJsonObject>("command");
    QTest::addColumn<bool>("keepsConnection");
    const auto row = [](const char *name, const QJsonObject &command, bool keeps = true) {
        QTest::newRow(name) << command << keeps;
    };
    row("not JSON", frame(QStringLiteral("<html>")));
    row("empty", frame(QString()));
    row("a number", frame(QStringLiteral("3")));
    row("an array", frame(QStringLiteral("[{\"MessageType\":3}]")));
    row("type of a wrong kind", frame(QStringLiteral(R"({"MessageType":"3","Data":{}})")));
    row("type beyond all numbers", frame(QStringLiteral(R"({"MessageType":1e300,"Data":{}})")));
    row("unknown type", frame(QStringLiteral(R"({"MessageType":-7,"Data":{}})")));
    row("data of a wrong kind", frame(QStringLiteral(R"({"MessageType":2,"Data":[1,2]})")));
    row("result of wrong kinds",
        frame(QStringLiteral(
            R"({"MessageType":3,"Data":{"Text":7,"IsFinal":"yes","CommandId":{},"Words":[[]]}})")));
    row("unknown mode", frame(QStringLiteral(R"({"MessageType":2,"Data":{"Mode":77,"State":0}})")));
    row("unknown state", frame(QStringLiteral(R"({"MessageType":2,"Data":{"Mode":3,"State":9}})")));
    row("command that nobody has",
        frame(QStringLiteral(R"({"MessageType":3,"Data":{"CommandId":"no","IsFinal":true}})")));
    row("notification of an unknown action",
        frame(QStringLiteral(R"({"MessageType":5,"Data":{"Action":99,"Type":-1}})")));
    row("nested 10,000 deep", frame(deep));
    row("nested deep in the data", frame(QStringLiteral(R"({"MessageType":3,"Data":)") + deep));
    row("a result of 10 MB",
        frame(QStringLiteral(R"({"MessageType":3,"Data":{"Text":"%1","IsFinal":false}})")
                  .arg(QString(10000000, QLatin1Char('a')))));
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
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    client.asr()->startRecognition();
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    client.forget();
    stand.tell(command);
    if (!keepsConnection) {
        QVERIFY2(client.waitFor(ConnectionState::Ready, 15000), "a new pass connects again");
        client.asr()->startRecognition();
        QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    }
    stand.sayResult(QStringLiteral("дальше"));
    QTRY_VERIFY_WITH_TIMEOUT(!results.isEmpty() && results.last() == QVariantList({"Дальше", true}),
                             15000);
    QCOMPARE(client.states().contains(static_cast<int>(ConnectionState::Disconnected)),
             !keepsConnection);
}

void TestBadInput::outlivesAnswers_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("text");
    const char *const kinds[] = {"servers", "themes"};
    for (const char *kind : kinds) {
        const auto row = [kind](const char *name, const QString &text) {
            QTest::addRow("%s: %s", kind, name) << kind << text;
        };
        row("not JSON", QStringLiteral("<html>"));
        row("empty", QString());
        row("a string", QStringLiteral("\"x\""));
        row("an array", QStringLiteral("[1,2]"));
        row("no data", QStringLiteral("{}"));
        row("data of a wrong kind", QStringLiteral(R"({"Data":7})"));
        row("elements of wrong kinds",
            QStringLiteral(R"({"Data":{"ServerList":[1,null,[]],"TimeStamp":3}})"));
        row("missing keys", QStringLiteral(R"({"Data":{"ServerList":[{}]}})"));
        row("an error of a wrong kind", QStringLiteral(R"({"Error":5})"));
        row("nested 10,000 deep", deep);
        row("10 MB", QStringLiteral(R"({"Data":"%1"})").arg(QString(10000000, QLatin1Char('a'))));
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
    const QList<ConnectionState> ends{ConnectionState::Failed, ConnectionState::Ready};
    QTRY_VERIFY_WITH_TIMEOUT(client.states().contains(static_cast<int>(ends[0])) ||
                                 client.states().contains(static_cast<int>(ends[1])),
                             15000);
    stand.tell({{"do", command}, {"mode", "normal"}});
    QVERIFY(client.waitFor(ConnectionState::Ready, 15000));
}

void TestBadInput::outlivesItsOwnFiles_data() {
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("words that are no text") << QByteArray() << QByteArray("\xFF\xFE\0\x01\n\n", 6);
    QTest::newRow("a cached list that is no JSON")
        << QByteArray("[CachedServers]\nServersList={{{\n") << QByteArray();
    QTest::newRow("a cached list of wrong kinds")
        << QByteArray("[CachedServers]\nServersList=\"{\\\"ServerList\\\":7}\"\n") << QByteArray();
    QTest::newRow("numbers that are none")
        << QByteArray("[ServersConnection]\nServersListRefreshMinTimeout=soon\n"
                      "[ConnectionManager]\nQuietConnectionEnabled=maybe\n")
        << QByteArray();
    QTest::newRow("binary") << QByteArray("\0\x01\x02[\xFF]\n=\n", 9) << QByteArray();
}

void TestBadInput::outlivesItsOwnFiles() {
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, words);
    const auto write = [](const QString &path, const QByteArray &content, QIODevice::OpenMode how) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        return file.open(how) && file.write(content) == content.size();
    };
    const QString folder =
        AppVariables::sm_stdVars.get(QStringLiteral("AppLocalDataLocation"), QString());
    QVERIFY(write(folder + "/Avocado/AvocadoWords.txt", words, QIODevice::WriteOnly));
    Stand stand;
    ClientHarness client(stand);
    Settings(QString()).sync();
    QVERIFY(write(Settings(QString()).fileName(), settings, QIODevice::Append));
    Settings(QString()).sync();
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    client.asr()->startRecognition();
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
}

DESK_CORE_TEST_MAIN(TestBadInput)
#include "TestBadInput.moc"
