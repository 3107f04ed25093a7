#include "DeskTest.h"
#include "TrayEyes.h"
#include "desktop/SystemTray.h"

#include <QWidget>

/// A session whose panel starts after the program: it takes the icon as older trays do.
class TestLatePanel : public QObject {
    Q_OBJECT

private slots:
    void showsTheIconLateAndAgain() {
        SystemTray tray(nullptr);
        QVERIFY(!tray.trayIcon()->isVisible());
        QString error = "Нет соединения";
        for (VirtualDesk::Edge edge : {VirtualDesk::Edge::Top, VirtualDesk::Edge::Bottom}) {
            tray.showError(error);
            QVERIFY(!TrayEyes::balloon());
            desk().startTray(edge);
            QTRY_VERIFY(TrayEyes::iconIsShown());
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
