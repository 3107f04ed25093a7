#include "DeskTest.h"
#include "Program.h"
#include "core/settings/StatisticsSettings.h"

#include <QDir>

/// A session of Xfce that starts the program with everything else and is logged out of.
class TestLogout : public QObject {
    Q_OBJECT

private slots:
    void endsWithTheSession() {
        StatisticsSettings().FillOrganisationUserInfo = false;
        const QString autostart = qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart";
        QVERIFY(QDir().mkpath(autostart));
        desk().write(autostart + "/vellumar.desktop",
                     "[Desktop Entry]\nType=Application\nName=Vellumar\nExec=" +
                         Program::builtExecutable().toLocal8Bit() + "\n");
        // These would go on by themselves if the test failed.
        for (const char *agent : {"ssh", "gpg"})
            desk().run("xfconf-query",
                       {"-c", "xfce4-session", "-n", "-t", "bool", "-s", "false", "-p",
                        QString("/startup/%1-agent/enabled").arg(QLatin1String(agent))});
        const QProcess *session = desk().start("xfce4-session", {});
        QTRY_VERIFY(log().contains("stateChanged from 3 to 0"));
        desk().run("xfce4-session-logout", {"--logout", "--fast"});
        QTRY_COMPARE(session->state(), QProcess::NotRunning);
        QVERIFY2(log().contains("Quit app"), "in order");
    }

private:
    static QString log() {
        const QDir logs(qEnvironmentVariable("XDG_DATA_HOME") + "/Ostrel/Vellumar/logs");
        const QStringList files = logs.entryList(QDir::Files);
        return files.isEmpty() ? QString() : VirtualDesk::read(logs.filePath(files.constFirst()));
    }
};

DESK_TEST_MAIN(TestLogout, VirtualDesk::Xfce | VirtualDesk::Bare)
#include "TestLogout.moc"
