#include "ProgramWindow.h"

#include "DeskTest.h"
#include "TrayMenu.h"

ProgramWindow ProgramWindow::openFromTray(Entry entry, const QString &title) {
    if (TrayMenu::open())
        TrayMenu::click(entry);
    return ProgramWindow(title);
}

ProgramWindow::ProgramWindow(const QString &title) {
    const bool isThere =
        QTest::qWaitFor([&] { return !(m_id = find(title)).isEmpty(); }, patienceMs);
    if (!isThere)
        qWarning() << "No window" << title;
    else
        desk().ask("xdotool", {"windowactivate", "--sync", m_id});
}

bool ProgramWindow::isGone() const {
    return QTest::qWaitFor([this] { return !isOpen(); }, patienceMs);
}

QString ProgramWindow::processId() const {
    return desk().ask("xdotool", {"getwindowpid", m_id});
}

void ProgramWindow::click(int x, int y, int times) const {
    const QString shape = geometry();
    const auto place = [&shape](int value, const char *size) {
        const int whole = shape.section(size, 1).section('\n', 0, 0).toInt();
        return QString::number(value < 0 ? whole + value : value);
    };
    desk().run("xdotool", {"mousemove", "--window", m_id, place(x, "WIDTH="), place(y, "HEIGHT="),
                           "click", "--repeat", QString::number(times), "--delay", "50", "1"});
}

void ProgramWindow::key(const QString &keys) {
    desk().run("xdotool", QStringList{"key", "--delay", "50"} + keys.split(' '));
}

void ProgramWindow::type(const QString &text) {
    desk().run("xdotool", {"type", "--delay", "20", text});
}

QString ProgramWindow::find(const QString &title) {
    return desk()
        .ask("xdotool", {"search", "--onlyvisible", "--name", '^' + title + '$'})
        .section('\n', -1);
}

QString ProgramWindow::geometry() const {
    return desk().ask("xdotool", {"getwindowgeometry", "--shell", m_id});
}
