#include "DeskProcess.h"
#include "DeskTest.h"

#include <QFile>

#include <csignal>
#include <unistd.h>

namespace {

bool isAlive(qint64 pid) {
    // An orphan that no one has collected is still listed, as a zombie without a command line.
    QFile commandLine(QString("/proc/%1/cmdline").arg(pid));
    return commandLine.open(QIODevice::ReadOnly) && !commandLine.readAll().isEmpty();
}

/// Starts a child that waits for ever, prints its id and dies as a crash would.
int dieWithAChild() {
    DeskProcess child;
    child.start("tail", {"-f", "/dev/null"});
    child.waitForStarted();
    std::printf("%lld\n", static_cast<long long>(child.processId()));
    std::fflush(stdout);
    return ::kill(::getpid(), SIGKILL);
}

} // namespace

/// The desk itself: that its folders are its own and its processes end with it.
class TestDesk : public QObject {
    Q_OBJECT

private slots:
    void processesEndWithTheDesk() {
        DeskProcess process;
        process.start("tail", {"-f", "/dev/null"});
        QVERIFY(process.waitForStarted());
        const qint64 pid = process.processId();
        QVERIFY(isAlive(pid));
        process.end();
        QVERIFY(!isAlive(pid));

        // A parent that dies without a word: the child of its main thread is told by the kernel.
        QProcess *parent =
            desk().start(QCoreApplication::applicationFilePath(), {"--die-with-a-child"});
        QTRY_COMPARE_WITH_TIMEOUT(parent->state(), QProcess::NotRunning, patienceMs);
        const qint64 orphan = parent->readAllStandardOutput().trimmed().toLongLong();
        QVERIFY(orphan > 0);
        QTRY_VERIFY(!isAlive(orphan));
    }

    void ownFoldersOnly() {
        for (const char *variable : {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"})
            QVERIFY2(qEnvironmentVariable(variable).startsWith(desk().folder()), variable);
        QVERIFY(Settings("Any").fileName().startsWith(desk().folder()));
    }
};

int main(int argc, char **argv) {
    if (argc > 1 && qstrcmp(argv[1], "--die-with-a-child") == 0)
        return dieWithAChild();
    return runOnDesk<QCoreApplication, TestDesk>(argc, argv, VirtualDesk::Folders);
}

#include "TestDesk.moc"
