#include "DeskTest.h"
#include "Figures.h"
#include "Files.h"
#include "MainThreadProbe.h"
#include "Program.h"
#include "Stand.h"
#include "TrayMenu.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <cstdio>
#include <stdexcept>

// How the command window of the built program bears a hospital's list, from outside.

namespace {

constexpr int commandCount = 10000;
constexpr int keystrokes = 20;

void writeCommands() {
    QJsonArray commands;
    for (int i = 0; i < commandCount; ++i) {
        commands.append(QJsonObject{
            {"Type", "text"},
            {"Pattern", QStringLiteral("показатель номер %1").arg(i)},
            {"Text", QStringLiteral("показатель в пределах возрастной нормы, №%1").arg(i)}});
    }
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/commands";
    QDir().mkpath(folder);
    const QJsonObject root{{"ThemeId", ""}, {"ThemeName", ""}, {"Commands", commands}};
    if (!save(folder + "/default.json", QJsonDocument(root).toJson()))
        throw std::runtime_error("the commands could not be written");
}

QString xdotool(const QString &arguments) {
    return desk().run("xdotool", arguments.split(' '));
}

/// The longest block of the program's main thread since the last call, once it has been free for
/// a while.
double longestBlockMs(MainThreadProbe *probe) {
    QTest::qWait(1000);
    return probe->takeLongestBlockMs();
}

void report(const char *what, double ms, int aim) {
    std::printf("%-46s %7.1f ms (aim: under %d)\n", what, ms, aim);
    std::fflush(stdout);
}

void run() {
    Stand stand;
    writeCommands();
    const std::unique_ptr<Program> program = startProgram(&stand);
    if (!program)
        throw std::runtime_error("the program does not become ready");
    MainThreadProbe probe(program->processId());

    if (!TrayMenu::open())
        throw std::runtime_error("the tray's menu does not open");
    QTest::qWait(500);
    probe.takeLongestBlockMs();
    const double asked = nowMs();
    TrayMenu::click(1);
    xdotool("search --sync --onlyvisible --name ^Автозамена$");
    report("10,000 commands: window opens", nowMs() - asked, 1000);
    report("... longest block of the main thread", longestBlockMs(&probe), 1000);
    const QString window = xdotool("search --onlyvisible --name ^Автозамена$").trimmed();
    xdotool("windowactivate --sync " + window);

    xdotool(QStringLiteral("mousemove --window %1 500 118 click 1").arg(window));
    Samples blocks;
    for (int i = 0; i < keystrokes; ++i) {
        probe.takeLongestBlockMs();
        xdotool(i % 4 == 3 ? "key ctrl+a BackSpace" : QStringLiteral("key %1").arg(i % 4 + 1));
        QTest::qWait(200);
        blocks.push_back(probe.takeLongestBlockMs());
    }
    print("a keystroke in the search: block (aim: 50)", blocks);

    xdotool("key ctrl+a BackSpace");
    longestBlockMs(&probe);
    xdotool(
        QStringLiteral("mousemove --window %1 300 400 click --repeat 60 --delay 16 5").arg(window));
    report("scrolling by the wheel: longest block", longestBlockMs(&probe), 50);
    // The window's height is 600.
    xdotool(QStringLiteral("mousemove --window %1 754 573 click 1").arg(window));
    report("saving: longest block", longestBlockMs(&probe), 500);
    if (program->terminate() != 0)
        throw std::runtime_error("the program did not end well");
}

} // namespace

int main(int argc, char **argv) {
    benchOnDesk(argc, argv, VirtualDesk::Screen | VirtualDesk::Tray | VirtualDesk::Sound, run);
}
