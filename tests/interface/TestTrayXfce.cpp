#include "DeskTest.h"
#include "desktop/SystemTray.h"

#include <QSystemTrayIcon>

/// The icon in the panel of Xfce, which takes icons over the session bus.
class TestTrayXfce : public QObject {
    Q_OBJECT

private slots:
    void comesBackWithThePanel();
    void messageIsOnTheScreen();
};

namespace {

/// The icons that the panel knows.
bool panelHasIcon() {
    return desk()
        .run(QStringLiteral("dbus-send"),
             {QStringLiteral("--session"), QStringLiteral("--print-reply"),
              QStringLiteral("--dest=org.kde.StatusNotifierWatcher"),
              QStringLiteral("/StatusNotifierWatcher"),
              QStringLiteral("org.freedesktop.DBus.Properties.Get"),
              QStringLiteral("string:org.kde.StatusNotifierWatcher"),
              QStringLiteral("string:RegisteredStatusNotifierItems")})
        .contains(QStringLiteral("StatusNotifierItem"));
}

} // namespace

void TestTrayXfce::comesBackWithThePanel() {
    const SystemTray tray(nullptr);
    QTRY_VERIFY(panelHasIcon());
    desk().stopTray();
    desk().startTray(VirtualDesk::Edge::Bottom);
    QTRY_VERIFY(panelHasIcon());
}

void TestTrayXfce::messageIsOnTheScreen() {
    SystemTray tray(nullptr);
    QTRY_VERIFY(panelHasIcon());
    QString error = QStringLiteral("Нет соединения");
    tray.showError(error);
    desk().run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--onlyvisible"),
                QStringLiteral("--class"), QStringLiteral("xfce4-notifyd")});
}

DESK_TEST_MAIN(TestTrayXfce, VirtualDesk::Xfce | VirtualDesk::Tray)
#include "TestTrayXfce.moc"
