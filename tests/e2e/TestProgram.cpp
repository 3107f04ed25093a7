#include "DeskTest.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "core/settings/FormApiSettings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

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

    void endsInEachState_data() {
        columns<QString, bool>("state", "isServerLost");
        for (const QString state : {"starting", "ready", "dictating"})
            row(qPrintable(state + ", the X server goes"), state, true);
        row("starting, told to end", QString("starting"), false);
        row("dictating, told to end", QString("dictating"), false);
    }

    void endsInEachState() {
        QFETCH(QString, state);
        QFETCH(bool, isServerLost);
        Stand stand;
        writeSettings(stand);
        // This test lives on the desk's screen, so the program gets one of its own.
        const QByteArray deskDisplay = qgetenv("DISPLAY");
        QProcess *server = desk().start("Xvfb", {"-displayfd", "1", "-nolisten", "tcp"});
        QTRY_VERIFY(server->canReadLine());
        qputenv("DISPLAY", ':' + server->readLine().trimmed());
        Program program;
        QVERIFY(program.waitForLog("Logger started at "));
        if (state != "starting")
            QVERIFY(!nextMode(&stand, 2 * patienceMs).isUndefined());
        if (state == "dictating") {
            XKeyboard().play(doubleCtrl);
            QVERIFY(nextMode(&stand).isNull());
        }
        qputenv("DISPLAY", deskDisplay);
        if (isServerLost)
            desk().end(server);
        QCOMPARE(isServerLost ? program.waitForExit() : program.terminate(), int(isServerLost));
        clearSettings();
    }

    void refusesToStart_data() {
        columns<QByteArray, QString, bool, int>("environment", "reason", "hasBox", "status");
        const QByteArray data = qgetenv("XDG_DATA_HOME") + "/Ostrel/Vellumar";
        row("a garbled file of the user's", QByteArray(),
            "Invalid file format, file '" + QString(data) + "/commands/default.json', error '" +
                "unterminated array'",
            true, 255);
        row("no file of the system's", QByteArray(), QString("program/autoreplaces.json' for"),
            true, 255);
        row("no module of the interface", QByteArray(),
            QString("не установлен модуль QML «QtQuick"), true, 1);
        row("no right to write at home", QByteArray("XDG_CONFIG_HOME=/dev/null/config"),
            QString("Нет прав на запись в папку «/dev/null/config/Ostrel/Vellumar»"), true, 1);
        row("no place for the guard", QByteArray("TMPDIR=/proc"),
            QString("не запущена ли программа: в папке /proc нельзя создать файл"), true, 1);
        row("no screen", QByteArray("DISPLAY="), QString("переменная DISPLAY не задана"), false, 1);
        row("a screen that is not there", QByteArray("DISPLAY=:4321"),
            QString("подключиться к экрану «:4321»"), false, 1);
        row("Wayland alone", QByteArray("XDG_SESSION_TYPE=wayland DISPLAY="),
            QString("сеансе Wayland без XWayland"), false, 1);
    }

    void refusesToStart() {
        QFETCH(QByteArray, environment);
        QFETCH(QString, reason);
        QFETCH(bool, hasBox);
        QFETCH(int, status);
        const QString commands =
            qEnvironmentVariable("XDG_DATA_HOME") + "/Ostrel/Vellumar/commands";
        QVERIFY(QDir().mkpath(commands));
        const QByteArray garbled = "{\"Commands\": [";
        const QString file = commands + "/default.json";
        const QDir folder = Program::copy();
        if (reason.contains("default.json"))
            desk().write(file, garbled);
        if (reason.contains("autoreplaces.json"))
            QVERIFY(QFile::remove(folder.filePath("autoreplaces.json")));
        if (reason.contains("QML"))
            desk().write(folder.filePath("qt.conf"),
                         "[Paths]\nQml2Imports=/dev/null\nPlugins=" +
                             QLibraryInfo::location(QLibraryInfo::PluginsPath).toLocal8Bit());

        auto program = startWith(environment, folder.filePath("vellumar"));
        if (hasBox)
            closeMessage();
        QCOMPARE(program->waitForExit(), status);
        QVERIFY(program->waitForLog(reason, 0));
        if (reason.contains("default.json"))
            QCOMPARE(desk().read(file), QString(garbled));
    }

    void tellsWhatTheSessionLacks() {
        const auto program =
            startWith("XDG_SESSION_TYPE=wayland QT_QPA_PLATFORM=wayland", QString());
        QTRY_VERIFY(program->log().contains("Notification: Программа печатает только в окна X11"));
        QTRY_VERIFY(program->log().contains("Vellumar: Сеанс Wayland: Программа печатает"));
        QTRY_VERIFY(program->log().contains("Vellumar: В этом сеансе нет области уведомлений"));
        desk().run("xdotool", {"search", "--sync", "--onlyvisible", "Нет области уведомлений"});
        QCOMPARE(program->terminate(), 0);
    }

    void runsForEachUser() {
        if (::geteuid() != 0)
            QSKIP("only root can start the program as another user");
        constexpr uint other = 65534;
        // Their folder for temporary files is one, as /tmp is.
        const QTemporaryDir folder("/tmp/vellumar-users-XXXXXX");
        QVERIFY(::chmod(qPrintable(folder.path()), 01777) == 0);
        const QString home = folder.filePath("other");
        // The programs of tests that run beside this one come and go on the usual port.
        QTcpServer free;
        QVERIFY(free.listen(QHostAddress::LocalHost));
        const quint16 port = free.serverPort();
        FormApiSettings().Port = port;
        free.close();
        const auto first = startWith("TMPDIR=" + folder.path().toLocal8Bit(), QString());
        const auto holdsPort = [port] {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, port);
            return socket.waitForConnected();
        };
        QTRY_VERIFY_WITH_TIMEOUT(holdsPort(), patienceMs);
        const QString id = QString::number(other);
        QVERIFY(QDir().mkpath(home + "/Ostrel/Vellumar"));
        QVERIFY(
            QFile::copy(Settings(QString()).fileName(), home + "/Ostrel/Vellumar/settings.ini"));
        desk().run("chown", {"-R", id, home});
        Program second("setpriv",
                       {"--reuid", id, "--regid", id, "--clear-groups", "env",
                        "TMPDIR=" + folder.path(), "HOME=" + home, "XDG_RUNTIME_DIR=" + home,
                        "XDG_CONFIG_HOME=" + home, "XDG_DATA_HOME=" + home,
                        "XDG_CACHE_HOME=" + home, Program::builtExecutable()});
        QVERIFY(second.waitForLog("Start begin: WebSocketWorker"));
        QVERIFY2(second.waitForLog(QString("Notification: Порт %1 занят").arg(port)),
                 "the first's");
        QCOMPARE(second.terminate(), 0);
        QCOMPARE(first->terminate(), 0);
        clearSettings();
    }

    void logsWhereItIsTold_data() {
        columns<bool, QByteArray, QString, bool>("hasFile", "configuration", "inLog", "isFallback");
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
        const QDir folder = Program::copy();
        if (hasFile)
            desk().write(folder.filePath("log.ini"), configuration);

        const QDir logs(qEnvironmentVariable("XDG_DATA_HOME") + "/Ostrel/Vellumar/logs");
        leaveLog(logs, "log_2026-01-31 23-59-59.log", 15);
        leaveLog(logs, "log_2026-02-01 00-00-00.log", 13);
        leaveLog(logs, "log_of_mine.log", 15);
        QVERIFY(::chmod(qPrintable(logs.path()), 0755) == 0);

        Program program(folder.filePath("vellumar"));
        QVERIFY(program.waitForLog(inLog));
        QVERIFY(program.waitForLog("Start begin: ConnectionManager"));
        QCOMPARE(program.terminate(), 0);
        QCOMPARE(program.log().contains("Logger have used fallback configuration"), isFallback);
        const QString told = qEnvironmentVariable("HOME") + "/told.log";
        QCOMPARE(QFile::exists(told), !isFallback);
        QCOMPARE(logs.entryList(QDir::Files).size(), isFallback ? 3 : 2);
        QVERIFY2(!logs.exists("log_2026-01-31 23-59-59.log"), "older than two weeks");
        QVERIFY2(logs.exists("log_of_mine.log"), "not the program's own");
        QCOMPARE(modeOf(logs.path()), 0700U);
        if (!isFallback)
            QCOMPARE(modeOf(told), 0600U);
        QFile::remove(told);
        const QRegularExpression name("^log_\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d\\.log$");
        const QStringList own = logs.entryList(QDir::Files).filter(name);
        QCOMPARE(own.size(), isFallback ? 2 : 1);
        for (const QString &log : own)
            QCOMPARE(modeOf(logs.filePath(log)), 0600U);
    }

private:
    /// Starts the program with some variables, NAME=value, set anew for it alone.
    static std::unique_ptr<Program> startWith(const QByteArray &environment,
                                              const QString &executable) {
        QMap<QByteArray, QByteArray> former;
        for (const QByteArray &variable : environment.split(' ')) {
            const int end = variable.indexOf('=');
            if (end < 0)
                continue;
            const QByteArray name = variable.left(end);
            former[name] = qgetenv(name);
            qputenv(name, variable.mid(end + 1));
        }
        auto program = std::make_unique<Program>(executable);
        for (auto variable = former.cbegin(); variable != former.cend(); ++variable)
            qputenv(variable.key(), variable.value());
        return program;
    }

    /// Waits for a message box and closes it by Return.
    static void closeMessage() {
        desk().run("xdotool", {"search", "--sync", "--onlyvisible", "--name", "^Ошибка$",
                               "windowactivate", "--sync"});
        XKeyboard().play("+Return -Return");
    }

    /// A file of the log folder that all may read, last written to some days ago.
    static void leaveLog(const QDir &logs, const QString &name, int days) {
        logs.mkpath(".");
        QFile file(logs.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                         QFileDevice::FileModificationTime);
        ::chmod(qPrintable(file.fileName()), 0644);
    }

    /// The rights on a file, as chmod takes them.
    static uint modeOf(const QString &path) {
        struct stat found {};
        return ::stat(qPrintable(path), &found) == 0 ? found.st_mode & 07777 : 0;
    }
};

DESK_TEST_MAIN(TestProgram, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestProgram.moc"
