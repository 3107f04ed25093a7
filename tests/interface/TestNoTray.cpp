#include "DeskTest.h"
#include "desktop/SystemTray.h"

#include <QScopeGuard>
#include <QSystemTrayIcon>
#include <QVector>

/// A session that never has a tray: nothing to see, and no harm done.
class TestNoTray : public QObject {
    Q_OBJECT

private slots:
    void keepsTryingUntilItsEnd();
};

void TestNoTray::keepsTryingUntilItsEnd() {
    static QVector<bool> attempts; // whether each came after the first tray
    static bool isOver = false;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &line) {
            if (line == QLatin1String("System tray Unavaliable, wait..."))
                attempts += isOver;
        });
    const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
    auto tray = std::make_unique<SystemTray>(nullptr);
    QTRY_COMPARE(attempts.size(), 3);
    QVERIFY(!tray->trayIcon()->isVisible());
    ConnectionStateInfo failure;
    failure.setState(static_cast<int>(ConnectionState::Failed));
    tray->onConnectionStateChanged(failure);
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
    // Its next try is due within the second; a later tray's second try comes after that.
    tray.reset();
    isOver = true;
    const SystemTray later(nullptr);
    QTRY_VERIFY(attempts.size() >= 5);
    QCOMPARE(attempts.count(true), 2);
}

DESK_TEST_MAIN(TestNoTray, VirtualDesk::Bare)
#include "TestNoTray.moc"
