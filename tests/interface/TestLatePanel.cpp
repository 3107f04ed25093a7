#include "DeskTest.h"
#include "TrayEyes.h"
#include "desktop/SystemTray.h"

#include <QSystemTrayIcon>
#include <QWidget>

/// A session whose panel starts after the program: it takes the icon as older trays do.
class TestLatePanel : public QObject {
    Q_OBJECT

private slots:
    void showsTheIconLateAndAgain();
};

void TestLatePanel::showsTheIconLateAndAgain() {
    SystemTray tray(nullptr);
    QVERIFY(!tray.trayIcon()->isVisible());
    for (VirtualDesk::Edge edge : {VirtualDesk::Edge::Top, VirtualDesk::Edge::Bottom}) {
        desk().startTray(edge);
        QTRY_VERIFY(TrayEyes::iconIsShown());
        QString error = QStringLiteral("Нет соединения");
        tray.showError(error);
        QCOMPARE(TrayEyes::balloonText(), QStringLiteral("error\nНет соединения"));
        TrayEyes::balloon()->close();
        desk().stopTray();
        QTRY_VERIFY(!TrayEyes::iconIsShown());
    }
}

DESK_TEST_MAIN(TestLatePanel, VirtualDesk::Xfce)
#include "TestLatePanel.moc"
