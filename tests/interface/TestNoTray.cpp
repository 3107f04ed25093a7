#include "DeskTest.h"
#include "desktop/SystemTray.h"

#include <QScopeGuard>

/// A session that never has a tray: nothing to see, and no harm done.
class TestNoTray : public QObject {
    Q_OBJECT

private slots:
    void keepsTryingUntilItsEnd() {
        static int attempts = 0;
        const auto previous =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &line) {
                attempts += line == "System tray Unavaliable, wait...";
            });
        const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
        auto tray = std::make_unique<SystemTray>(nullptr);
        QTRY_COMPARE(attempts, 3);
        QVERIFY(!tray->trayIcon()->isVisible());
        ConnectionStateInfo failure;
        failure.setState(int(ConnectionState::Failed));
        tray->onConnectionStateChanged(failure);
        QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
        // Its next try is due within the second; a later tray's second try comes after that.
        tray.reset();
        const SystemTray later(nullptr);
        QTRY_VERIFY(attempts >= 5);
        QCOMPARE(attempts, 5);
    }
};

DESK_TEST_MAIN(TestNoTray, VirtualDesk::Bare)
#include "TestNoTray.moc"
