#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "diagnostics/SelfTest.h"
#include "diagnostics/SelfTestViewModel.h"
#include "recognition/ResultManager.h"

#include <QDir>
#include <QJsonArray>
#include <QRegularExpression>
#include <QSignalSpy>

/// The measuring test run against a stand: what it sends, counts and reports.
class TestSelfTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QDir(AppVariables::sm_stdVars.get("AppDataLocation", {}) + "/reports").removeRecursively();
    }

    void cleanup() {
        if (m_window)
            emit m_window->close();
        m_test.reset();
        m_window.reset();
        m_client.reset();
        m_stand.reset();
    }

    void filesArePlayed_data() {
        columns<int, int, int, int, QString>("size", "tail", "expected", "sentBytes", "verdict");
        row("a part of a block is filled up", 1000, 2000, 1, 5 * 640,
            QString("All 1 results received"));
        row("silence behind whole blocks", 1280, 2000, 1, 6 * 640,
            QString("All 1 results received"));
        row("no tail: only whole blocks", 1000, 0, 1, 640, QString("All 1 results received"));
        row("a result too few", 1280, 1, 2, 3 * 640,
            QString("Recieved 1 of 2 results, 1 results lost"));
        row("a result too many", 1280, 1, 0, 3 * 640,
            QString("Recieved 1 of 0 results, 1 extra results"));
    }

    void filesArePlayed() {
        QFETCH(int, size);
        QFETCH(int, tail);
        QFETCH(int, expected);
        QFETCH(QString, verdict);
        open({{"steps", QJsonArray{QJsonObject{{"atBytes", 640}, {"text", "кашель"}}}}});
        offer({size}, tail, expected);
        emit m_window->start();
        emit m_window->start();
        QVERIFY(waitForEnd());
        QVERIFY2(m_log.contains("\nPlay file sound1.raw"), qPrintable(m_log));
        QVERIFY2(m_log.contains('\n' + verdict + '\n'), qPrintable(m_log));
        QCOMPARE(m_log.count("Ping test"), 1);
        int sent = 0;
        for (const QJsonObject &event : m_stand->events())
            sent += event["event"] == "sound" ? event["frame"].toInt() : 0;
        QTEST(sent, "sentBytes");
    }

    void reportsAreWritten() {
        open({{"steps", QJsonArray{QJsonObject{{"atBytes", 640}, {"text", "сухой \"кашель\""}}}}});
        offer({700, 0, 1280}, 0, 1);
        emit m_window->start();
        QVERIFY(waitForEnd());
        QVERIFY(m_window->get_PongCount() >= 1);
        const QString log = report(".txt");
        QCOMPARE(log, m_log);
        QCOMPARE(log.count("All 1 results received"), 2);
        QVERIFY(log.contains("\nCannot open file " + QDir::temp().filePath("sound2.raw")));
        QVERIFY2(log.contains("\nRecieved 0 of 1 results, 1 results lost\n"), qPrintable(log));
        const QRegularExpression table(
            "^ping;[1-9]\\d*;[1-9]\\d*;\\d+;\\d+;[\\d.]+\n"
            "result;1;1;1;[01];\\d+;\"sound1.raw\";\"сухой \"кашель\"\"\n"
            "result;3;1;1;[01];\\d+;\"sound3.raw\";\"сухой \"кашель\"\"\n$");
        QVERIFY2(table.match(report(".csv")).hasMatch(), qPrintable(report(".csv")));
    }

    void beginsAgain() {
        open();
        offer({640}, 0, 0);
        m_window->set_Loop(true);
        emit m_window->start();
        QVERIFY(QTest::qWaitFor([this] { return m_log.count("Ping test") == 3; }, patienceMs));
        emit m_window->stop();
        QVERIFY(m_log.endsWith("\nStopped"));
        QCOMPARE(report(".txt").count("Ping test"), 3);
        emit m_window->clear();
        QCOMPARE(m_log, QString());
        QCOMPARE(m_window->get_PongCount(), 0ULL);
    }

    void failuresEndIt_data() {
        columns<QString, int, QString>("command", "limit", "text");
        row("no answer to a ping", QString("ignorePings"), 0, QString("\nPing timeout\nStopped"));
        row("recognition does not start", QString("answers"), 0,
            QString("\nStart recognition timeout\nStopped"));
        row("recognition takes too long", QString(), 300,
            QString("Stop recognition timeout\nStopped"));
        row("the connection is lost", QString("drop"), 0, QString("\nStopped"));
    }

    void failuresEndIt() {
        QFETCH(QString, command);
        QFETCH(int, limit);
        QFETCH(QString, text);
        open();
        if (limit > 0)
            SelfTestSettings().StopTimeout = limit;
        offer({64000}, 0, 0);
        QVERIFY(m_window->get_IsConnected());
        emit m_window->start();
        if (command == "answers") {
            m_stand->tell({{"do", "answers"}, {"enabled", false}});
        } else if (!command.isEmpty()) {
            if (command == "drop")
                QVERIFY(
                    QTest::qWaitFor([this] { return m_log.contains("Play file"); }, patienceMs));
            m_stand->tell(command);
        }
        QVERIFY(waitForEnd());
        QVERIFY2(m_log.endsWith(text), qPrintable(m_log));
        QVERIFY(!m_window->get_IsStarted());
        if (command == "drop")
            QTRY_VERIFY(!m_window->get_IsConnected());
        QVERIFY2(report(".txt").endsWith("Stopped"), "the report is closed");
    }

    void keepsItsResultsToItself() {
        open({{"steps", QJsonArray{QJsonObject{{"atBytes", 640}, {"text", "кашель"}},
                                   QJsonObject{{"atStop", true}, {"text", "одышка"}}}}});
        QSignalSpy typed(m_client->worker()->resultManager(), &ResultManager::resultReady);
        offer({64000}, 0, 1);
        emit m_window->start();
        QVERIFY(QTest::qWaitFor([this] { return m_log.contains("кашель"); }, patienceMs));
        QCOMPARE(typed.size(), 0);
        // Its last words come when the window is gone.
        emit m_window->close();
        m_stand->waitFor("result", [](const auto &event) { return event["text"] == "одышка"; });
        QVERIFY(m_client->dictate());
        m_stand->sayResult("снова");
        QTRY_VERIFY(!typed.isEmpty());
        QCOMPARE(typed, (QList<QVariantList>{{"Снова", true}}));
    }

private:
    void open(const QJsonObject &script = {}) {
        m_stand = std::make_unique<Stand>(script);
        m_client = std::make_unique<ClientHarness>(*m_stand);
        SelfTestSettings settings;
        settings.PingCount = 1;
        // Blocks of 640 bytes.
        settings.SoundPeriod = 20;
        settings.StartTimeout = 1500;
        settings.sync();
        m_window = std::make_unique<SelfTestViewModel>();
        m_test = std::make_unique<SelfTest>(m_window.get(), m_client->worker(), m_client->manager(),
                                            m_client->heartbeat(), &m_client->recording(), nullptr);
        m_log.clear();
        connect(m_window.get(), &SelfTestViewModel::appendLog, this, [this](const QString &text) {
            // A point a block stands in the window only.
            if (text != ".")
                m_log += text;
        });
        connect(m_window.get(), &SelfTestViewModel::clearLog, this, [this] { m_log.clear(); });
        QVERIFY(m_client->open());
    }

    /// Offers files of this many bytes.
    void offer(const QList<int> &sizes, int tail, int results) {
        SelfTestSettings settings;
        settings.beginWriteArray("Files", sizes.size());
        for (int i = 0; i < sizes.size(); ++i) {
            const QString name = QString("sound%1.raw").arg(i + 1);
            if (sizes[i] > 0)
                QVERIFY(save(QDir::temp().filePath(name), QByteArray(sizes[i], 'a')));
            settings.setArrayIndex(i);
            settings.setValue("path", "${env:TMPDIR}/" + name);
            settings.setValue("tail", tail);
            settings.setValue("results", results);
        }
        settings.endArray();
        settings.sync();
        emit m_window->load();
    }

    bool waitForEnd() {
        return QTest::qWaitFor([this] { return m_log.endsWith("\nStopped"); }, patienceMs);
    }

    QString report(const char *suffix) const {
        const QDir folder(AppVariables::sm_stdVars.get("AppDataLocation", {}) + "/reports");
        const QStringList names = folder.entryList({QString("report_*") + suffix}, QDir::Files);
        return names.size() == 1 ? QString::fromUtf8(bytesOf(folder.filePath(names[0])))
                                 : QString();
    }

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<ClientHarness> m_client;
    std::unique_ptr<SelfTestViewModel> m_window;
    std::unique_ptr<SelfTest> m_test;
    QString m_log;
};

DESK_TEST_MAIN(TestSelfTest, VirtualDesk::Screen)
#include "TestSelfTest.moc"
