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
        QString error = "Нет соединения";
        ConnectionStateInfo news;
        for (VirtualDesk::Edge edge : {VirtualDesk::Edge::Top, VirtualDesk::Edge::Bottom}) {
            news.setState(int(ConnectionState::Ready));
            tray.onConnectionStateChanged(news);
            news.setState(int(ConnectionState::Failed));
            for (const char *message : {"Серверов нет", "Сервер не отвечает"}) {
                news.setMessage(message);
                tray.onConnectionStateChanged(news);
            }
            tray.showError(error);
            QVERIFY(!TrayEyes::balloon());
            desk().startTray(edge);
            QTRY_VERIFY(TrayEyes::iconIsShown());
            QTRY_VERIFY2(TrayEyes::balloon(), "the failure is told when there is a tray");
            QCOMPARE(TrayEyes::balloonText(), "Сервер не отвечает");
            const int height = QGuiApplication::primaryScreen()->geometry().height();
            QCOMPARE(TrayEyes::balloon()->geometry().center().y() < height / 2,
                     edge == VirtualDesk::Edge::Top);
            tray.showError(error);
            QCOMPARE(TrayEyes::balloonText(), "error\nНет соединения");
            TrayEyes::balloon()->close();
            desk().stopTray();
            QTRY_VERIFY(!TrayEyes::iconIsShown());
            QTRY_VERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
        }
    }
};

DESK_TEST_MAIN(TestLatePanel, VirtualDesk::Xfce)
#include "TestLatePanel.moc"
