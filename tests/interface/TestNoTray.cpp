#include "DeskTest.h"
#include "desktop/SystemTray.h"

#include <QScopeGuard>
#include <QSignalSpy>

/// A session that has no tray at first: nothing to see, no harm done, and one word about it.
class TestNoTray : public QObject {
    Q_OBJECT

private slots:
    void tellsItOnceAndFindsALateOne() {
        static int lines = 0;
        const auto previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &line) {
                lines += line == "System tray Unavaliable, wait...";
            });
        const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
        SystemTray tray(nullptr);
        const QSignalSpy missing(&tray, &SystemTray::missing);
        const QSignalSpy found(&tray, &SystemTray::found);
        QTRY_COMPARE(missing.count(), 1);
        QVERIFY(!tray.trayIcon()->isVisible());
        ConnectionStateInfo failure;
        failure.setState(int(ConnectionState::Failed));
        tray.onConnectionStateChanged(failure);
        QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
        desk().startTray();
        QTRY_COMPARE(found.count(), 1);
        QVERIFY(tray.trayIcon()->isVisible());
        QCOMPARE(missing.count(), 1);
        QCOMPARE(lines, 1);
    }
};

DESK_TEST_MAIN(TestNoTray, VirtualDesk::Bare)
#include "TestNoTray.moc"
