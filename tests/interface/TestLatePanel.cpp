#include "DeskTest.h"
#include "TrayEyes.h"
#include "desktop/SystemTray.h"

#include <QScreen>
#include <QWidget>

/// A session whose panel starts after the program: it takes the icon as older trays do.
class TestLatePanel : public QObject {
    Q_OBJECT

private slots:
    void showsTheIconLateAndAgain() {
        SystemTray tray(nullptr);
        QVERIFY(!tray.trayIcon()->isVisible());
        ConnectionStateInfo news;
        for (VirtualDesk::Edge edge : {VirtualDesk::Edge::Top, VirtualDesk::Edge::Bottom}) {
            news.setState(int(ConnectionState::Ready));
            tray.onConnectionStateChanged(news);
            news.setState(int(ConnectionState::Failed));
            QString error = "1";
            tray.showError(error);
            for (const char *message : {"Серверов нет", "Сервер не отвечает"}) {
                news.setMessage(message);
                tray.onConnectionStateChanged(news);
            }
            for (int i = 2; i <= 10; ++i)
                tray.showError(error.setNum(i));
            QVERIFY(!TrayEyes::balloon());
            desk().startTray(edge);
            QTRY_VERIFY(TrayEyes::iconIsShown());
            QTRY_VERIFY2(TrayEyes::balloon(), "the last ten are told when there is a tray");
            QCOMPARE(TrayEyes::balloonText(), "Сервер не отвечает");
            const int height = QGuiApplication::primaryScreen()->geometry().height();
            QCOMPARE(TrayEyes::balloon()->geometry().center().y() < height / 2,
                     edge == VirtualDesk::Edge::Top);
            QTRY_COMPARE_WITH_TIMEOUT(TrayEyes::balloonText(), "error\n2", patienceMs);
            desk().stopTray();
            QTRY_VERIFY(!TrayEyes::iconIsShown());
            QTRY_VERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
            QTRY_VERIFY_WITH_TIMEOUT(!TrayEyes::balloon(), patienceMs);
        }
    }
};

DESK_TEST_MAIN(TestLatePanel, VirtualDesk::Xfce)
#include "TestLatePanel.moc"
