#include "DeskTest.h"
#include "Program.h"
#include "XKeyboard.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

/// The process itself: start, log, the single instance, the end.
class TestProgram : public QObject {
    Q_OBJECT

private slots:
    void init() { QDir(qEnvironmentVariable("XDG_DATA_HOME")).removeRecursively(); }

    void startsAndStopsItsWorkersInOrder() {
        Program program;
        QVERIFY(program.waitForLog("Logger started at "));
        QElapsedTimer sinceStart;
        sinceStart.start();
        QVERIFY(program.waitForLog("Start begin: WebSocketWorker"));
        QVERIFY2(sinceStart.elapsed() > 1800, "the workers wait for the window");
        const QStringList starts{"Start begin: ConnectionManager", "stateChanged from 1 to 2",
                                 "stateChanged from 3 to 0"};
        for (const QString &line : starts)
            QVERIFY(program.waitForLog(line));
        QCOMPARE(program.terminate(), 0);
        const QStringList stops{"Stop begin: ConnectionManager", "Stop begin: WebSocketWorker",
                                "Stop begin: KeyboardListener", "Quit app"};
        for (const QString &line : stops)
            QVERIFY(program.waitForLog(line, 0));
        QCOMPARE(program.log().count("Start begin: ConnectionHeartbeat"), 0);
    }

    void runsOnce() {
        Program first;
        QVERIFY(first.waitForLog("Start begin: WebSocketWorker"));
        {
            Program second;
            closeMessage();
            QCOMPARE(second.waitForExit(), 255);
            QVERIFY(!second.log().contains("Start begin"));
        }
        QVERIFY(first.isRunning());
        first.kill();
        Program next;
        QVERIFY2(next.waitForLog("Start begin: WebSocketWorker"),
                 "what a crash leaves behind does not keep the next one from starting");
        QCOMPARE(next.terminate(), 0);
    }

    void endsWithoutItsCommands_data() {
        QTest::addColumn<bool>("isGarbled");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a garbled file of the user's")
            << true << "Invalid file format, file '%1/default.json', error 'unterminated array'";
        QTest::newRow("no file of the system's")
            << false << "Cannot open file '%1/autoreplaces.json' for reading";
    }

    void endsWithoutItsCommands() {
        QFETCH(bool, isGarbled);
        QFETCH(QString, reason);
        const QString commands =
            qEnvironmentVariable("XDG_DATA_HOME") + "/Ostrel/Vellumar/commands";
        QVERIFY(QDir().mkpath(commands));
        const QByteArray garbled = "{\"Commands\": [";
        const QString file = commands + "/default.json";
        if (isGarbled)
            desk().write(file, garbled);
        const QDir folder = copyProgram();
        if (!isGarbled)
            QVERIFY(QFile::remove(folder.filePath("autoreplaces.json")));

        Program program(folder.filePath("vellumar"));
        closeMessage();
        QCOMPARE(program.waitForExit(), 255);
        const QStringList lines{"Application exception at startup: ",
                                reason.arg(isGarbled ? commands : folder.path()), "Startup failed"};
        for (const QString &line : lines)
            QVERIFY(program.waitForLog(line, 0));
        if (isGarbled)
            QCOMPARE(desk().read(file), QString(garbled));
    }

    void logsWhereItIsTold_data() {
        QTest::addColumn<bool>("hasFile");
        QTest::addColumn<QByteArray>("configuration");
        QTest::addColumn<QString>("inLog");
        QTest::addColumn<bool>("isFallback");
        const QByteArray good = "* GLOBAL:\n  FORMAT = \"%level-%msg\"\n"
                                "  FILENAME = \"${env:HOME}/told${nosuch}.log\"\n"
                                "  ENABLED = true\n  TO_FILE = true\n  TO_STANDARD_OUTPUT = true\n";
        QTest::newRow("no file") << false << QByteArray() << "log.ini not found" << true;
        QTest::newRow("a file") << true << good << "INFO-Logger started at " << false;
        QTest::newRow("an empty file") << true << QByteArray() << "log.ini is empty" << true;
        QTest::newRow("a file of no configuration")
            << true << QByteArray("nothing\nto = see\n\xFF\n")
            << "Cannot parse logger configuration " << true;
        QTest::newRow("one bad line among good ones")
            << true << "nonsense\n" + good + "\n"
            << "Cannot parse logger configuration " << true;
    }

    void logsWhereItIsTold() {
        QFETCH(bool, hasFile);
        QFETCH(QByteArray, configuration);
        QFETCH(QString, inLog);
        QFETCH(bool, isFallback);
        const QDir folder = copyProgram();
        if (hasFile)
            desk().write(folder.filePath("log.ini"), configuration);

        Program program(folder.filePath("vellumar"));
        QVERIFY(program.waitForLog(inLog));
        QVERIFY(program.waitForLog("Start begin: ConnectionManager"));
        QCOMPARE(program.terminate(), 0);
        QCOMPARE(program.log().contains("Logger have used fallback configuration"), isFallback);
        QCOMPARE(QFile::exists(qEnvironmentVariable("HOME") + "/told.log"), !isFallback);
        QFile::remove(qEnvironmentVariable("HOME") + "/told.log");
        QCOMPARE(ownLogs().size(), isFallback ? 1 : 0);
        if (isFallback) {
            const QRegularExpression name("^log_\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\.log$");
            QVERIFY2(name.match(ownLogs().constFirst()).hasMatch(), qPrintable(ownLogs()[0]));
        }
    }

private:
    /// Waits for a message box and closes it by Return.
    static void closeMessage() {
        desk().run("xdotool", {"search", "--sync", "--onlyvisible", "--name", "^Ошибка$",
                               "windowactivate", "--sync"});
        XKeyboard().play("+Return -Return");
    }

    /// A new copy of what is beside the executable, in a folder of its own.
    static QDir copyProgram() {
        QDir folder(desk().folder() + "/program");
        folder.removeRecursively();
        folder.mkpath(".");
        const QDir built(QCoreApplication::applicationDirPath());
        for (const char *name : {"vellumar", "autoreplaces.json"})
            QFile::copy(built.filePath(QLatin1String(name)), folder.filePath(QLatin1String(name)));
        return folder;
    }

    /// The files of the log folder that the program makes by itself.
    static QStringList ownLogs() {
        return QDir(qEnvironmentVariable("XDG_DATA_HOME") + "/Ostrel/Vellumar/logs")
            .entryList(QDir::Files);
    }
};

DESK_TEST_MAIN(TestProgram, VirtualDesk::Screen)
#include "TestProgram.moc"
