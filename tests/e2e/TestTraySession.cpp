#include "DeskTest.h"
#include "Program.h"

#include <QDir>
#include <QFile>

namespace {

QString run(const char *program, const QString &arguments) {
    return desk().run(QString::fromLatin1(program), arguments.split(' '));
}

const QString menuType = "_NET_WM_WINDOW_TYPE_POPUP_MENU";

} // namespace

/// The built program in the hands of a user who has only its tray icon.
class TestTraySession : public QObject {
    Q_OBJECT

private slots:
    void menuQuits() {
        const QStringList before = processes();
        Program program;
        QVERIFY(program.waitForLog("Start begin: WebSocketWorker"));
        QVERIFY(processes() != before);
        QVERIFY(openMenu());
        clickMenu(-1);
        QCOMPARE(program.waitForExit(), 0);
        QVERIFY(program.waitForLog("Quit app", 0));
        QCOMPARE(processes(), before);
    }

    void menuConnectsAfterAFailure() {
        Program program;
        QVERIFY(program.waitForLog("stateChanged from 3 to 0"));
        QVERIFY(openMenu());
        clickMenu(0);
        QVERIFY2(program.waitForLog("stateChanged from 0 to 2", 10000),
                 "long before the next try of its own");
        QCOMPARE(program.terminate(), 0);
    }

private:
    /// The visible window of the program that has this among its X properties and is not under the
    /// window manager, or an empty text.
    static QString windowWith(const QString &property) {
        // None may be there yet, or one be gone again.
        const QString ids =
            desk().ask("xdotool", {"search", "--onlyvisible", "--class", "vellumar"});
        for (const QString &id : ids.split('\n', Qt::SkipEmptyParts)) {
            const QString properties = desk().ask("xprop", {"-id", id});
            if (properties.contains(property) && !properties.contains("WM_STATE"))
                return id;
        }
        return QString();
    }

    /// Where an entry of the open menu is, counted from its top, or from its bottom if negative.
    static void clickMenu(int entry) {
        const QString menu = windowWith(menuType);
        const QString shape = run("xdotool", "getwindowgeometry --shell " + menu);
        const int height = shape.section("HEIGHT=", 1).section('\n', 0, 0).toInt();
        constexpr int entryHeight = 40;
        const int y = entry * entryHeight + entryHeight / 2;
        run("xdotool", QString("mousemove --window %1 60 %2 click 1")
                           .arg(menu, QString::number(y < 0 ? height + y : y)));
    }

    static bool openMenu() {
        // All others are of a more special type, or managed.
        const QString isIcon = "TYPE(ATOM) = _KDE_NET_WM_WINDOW_TYPE_OVERRIDE";
        QString icon;
        // The click on an icon that is being docked may miss it, so one is not enough.
        for (int tries = 0; tries < 3; ++tries) {
            if (!QTest::qWaitFor([&] { return !(icon = windowWith(isIcon)).isEmpty(); }))
                return false;
            run("xdotool", QString("mousemove --window %1 10 10 click 3").arg(icon));
            if (QTest::qWaitFor([] { return !windowWith(menuType).isEmpty(); }, 3000))
                return true;
        }
        return false;
    }

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
