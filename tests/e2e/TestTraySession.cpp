#include "DeskTest.h"
#include "Program.h"
#include "TrayMenu.h"

#include <QDir>
#include <QFile>

/// The built program in the hands of a user who has only its tray icon.
class TestTraySession : public QObject {
    Q_OBJECT

private slots:
    void menuQuits() {
        const QStringList before = processes();
        Program program;
        QVERIFY(program.waitForLog("Start begin: WebSocketWorker"));
        QVERIFY(processes() != before);
        QVERIFY(TrayMenu::open());
        TrayMenu::click(-1);
        QCOMPARE(program.waitForExit(), 0);
        QVERIFY(program.waitForLog("Quit app", 0));
        QCOMPARE(processes(), before);
    }

    void menuConnectsAfterAFailure() {
        Program program;
        QVERIFY(program.waitForLog("stateChanged from 3 to 0"));
        QVERIFY(TrayMenu::open());
        TrayMenu::click(0);
        QVERIFY2(program.waitForLog("stateChanged from 0 to 2", patienceMs),
                 "long before the next try of its own");
        QCOMPARE(program.terminate(), 0);
    }

private:
    /// The processes that run on this desk.
    static QStringList processes() {
        QStringList found;
        for (const QString &pid : QDir("/proc").entryList(QDir::Dirs)) {
            QFile environment(QString("/proc/%1/environ").arg(pid));
            if (environment.open(QIODevice::ReadOnly) &&
                environment.readAll().contains(desk().folder().toLocal8Bit()))
                found += pid;
        }
        return found;
    }
};

DESK_TEST_MAIN(TestTraySession, VirtualDesk::Screen | VirtualDesk::Tray)
#include "TestTraySession.moc"
