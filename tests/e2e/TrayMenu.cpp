#include "TrayMenu.h"

#include "DeskTest.h"

namespace {

const QString menuType = "_NET_WM_WINDOW_TYPE_POPUP_MENU";

QString xdotool(const QString &arguments) {
    return desk().run("xdotool", arguments.split(' '));
}

/// The visible window of the program that has this among its X properties and is not under the
/// window manager, or an empty text.
QString windowWith(const QString &property) {
    // None may be there yet, or one be gone again.
    const QString ids = desk().ask("xdotool", {"search", "--onlyvisible", "--class", "vellumar"});
    for (const QString &id : ids.split('\n', Qt::SkipEmptyParts)) {
        const QString properties = desk().ask("xprop", {"-id", id});
        if (properties.contains(property) && !properties.contains("WM_STATE"))
            return id;
    }
    return QString();
}

} // namespace

void TrayMenu::click(int entry) {
    const QString menu = windowWith(menuType);
    const QString shape = xdotool("getwindowgeometry --shell " + menu);
    const int height = shape.section("HEIGHT=", 1).section('\n', 0, 0).toInt();
    constexpr int entryHeight = 49;
    const int y = entry * entryHeight + entryHeight / 2;
    xdotool(QString("mousemove --window %1 60 %2 click 1")
                .arg(menu, QString::number(y < 0 ? height + y : y)));
}

bool TrayMenu::open() {
    // All others are of a more special type, or managed.
    const QString isIcon = "TYPE(ATOM) = _KDE_NET_WM_WINDOW_TYPE_OVERRIDE";
    QString icon;
    // The click on an icon that is being docked may miss it, so one is not enough.
    for (int tries = 0; tries < 3; ++tries) {
        if (!QTest::qWaitFor([&] { return !(icon = windowWith(isIcon)).isEmpty(); }, patienceMs))
            return false;
        xdotool(QString("mousemove --window %1 10 10 click 3").arg(icon));
        if (QTest::qWaitFor([] { return !windowWith(menuType).isEmpty(); }, 3000))
            return true;
    }
    return false;
}
