#include "DeskTest.h"
#include "desktop/SystemTray.h"

/// The icon in the panel of Xfce, which takes icons over the session bus.
class TestTrayXfce : public QObject {
    Q_OBJECT

private slots:
    void showsAMessageAndComesBackWithThePanel() {
        SystemTray tray(nullptr);
        QTRY_VERIFY(panelHasIcon());
        QString error = "Нет соединения";
        tray.showError(error);
        run("xdotool", "search --sync --onlyvisible --class xfce4-notifyd");
        desk().stopTray();
        desk().startTray(VirtualDesk::Edge::Bottom);
        QTRY_VERIFY(panelHasIcon());
    }

private:
    static QString run(const char *program, const char *arguments) {
        return desk().run(program, QString(arguments).split(' '));
    }
    static bool panelHasIcon() {
        return run("dbus-send", "--session --print-reply --dest=org.kde.StatusNotifierWatcher "
                                "/StatusNotifierWatcher org.freedesktop.DBus.Properties.Get "
                                "string:org.kde.StatusNotifierWatcher "
                                "string:RegisteredStatusNotifierItems")
            .contains("StatusNotifierItem");
    }
};

DESK_TEST_MAIN(TestTrayXfce, VirtualDesk::Xfce | VirtualDesk::Tray)
#include "TestTrayXfce.moc"
