#include "DeskProcess.h"
#include "DeskTest.h"

#include <QFile>
#include <QSystemTrayIcon>
#include <QtEndian>

#include <csignal>
#include <unistd.h>

namespace {

int loudest(const QByteArray &samples) {
    int peak = 0;
    for (int i = 0; i + 1 < samples.size(); i += 2)
        peak = qMax(peak, qAbs(int(qFromLittleEndian<qint16>(samples.constData() + i))));
    return peak;
}

bool isAlive(qint64 pid) {
    // An orphan that no one has collected is still listed, as a zombie without a command line.
    QFile commandLine(QString("/proc/%1/cmdline").arg(pid));
    return commandLine.open(QIODevice::ReadOnly) && !commandLine.readAll().isEmpty();
}

} // namespace

namespace {

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

/// The desk itself: that what it raises is there, works, and ends with it.
class TestDesk : public QObject {
    Q_OBJECT

private slots:
    void windowManagerAndTrayAnswer() {
        const QString check = desk().run("xprop", {"-root", "_NET_WM_NAME", "_NET_SUPPORTED"});
        QVERIFY2(check.contains("_NET_ACTIVE_WINDOW"), qPrintable(check));
        QVERIFY(QSystemTrayIcon::isSystemTrayAvailable());
        const QString layouts = desk().run("setxkbmap", {"-query"});
        QVERIFY2(layouts.contains("us,ru"), qPrintable(layouts));
    }

    void spokenSoundIsRecorded() {
        QProcess *recorder = desk().start("parec", {"--device=mic", "--rate=16000", "--channels=1",
                                                    "--format=s16le", "--latency-msec=50"});
        QByteArray before;
        QTRY_VERIFY(!(before += recorder->readAllStandardOutput()).isEmpty());
        QCOMPARE(loudest(before), 0);

        const QString tone = desk().folder() + "/tone.wav";
        desk().run("sox",
                   QString("-n -r 16000 -c 1 -b 16 %1 synth 1 sine 440").arg(tone).split(' '));
        QProcess *speaker = desk().speak(tone);
        QByteArray heard;
        QTRY_VERIFY(loudest(heard += recorder->readAllStandardOutput()) > 10000);
        QTRY_COMPARE_WITH_TIMEOUT(speaker->state(), QProcess::NotRunning, patienceMs);
        QCOMPARE(speaker->exitCode(), 0);
        desk().end(speaker);
        desk().end(recorder);
    }

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
    return runOnDesk<QApplication, TestDesk>(
        argc, argv, VirtualDesk::Screen | VirtualDesk::Sound | VirtualDesk::Tray);
}

#include "TestDesk.moc"
