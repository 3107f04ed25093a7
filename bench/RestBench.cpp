#include "DeskTest.h"
#include "Figures.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"

#include <QDir>
#include <QMap>

#include <cstdio>
#include <stdexcept>

// How often the built program wakes up, thread by thread, and what that costs: with nothing to do
// in several states, and while dictating.

namespace {

constexpr int seconds = 20;

/// How often each thread has gone to sleep so far, by its number and name.
using Sleeps = QMap<QString, double>;

Sleeps sleeps(qint64 pid) {
    Sleeps found;
    const QDir tasks(QStringLiteral("/proc/%1/task").arg(pid));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray status = VirtualDesk::read(tasks.filePath(task + "/status")).toUtf8();
        const auto field = [&status](const char *name) {
            const int from = status.indexOf(name) + int(qstrlen(name));
            return status.mid(from, status.indexOf('\n', from) - from).trimmed();
        };
        found[task + ' ' + field("Name:")] = field("\nvoluntary_ctxt_switches:").toDouble();
    }
    return found;
}

void report(const char *state, qint64 pid) {
    const Sleeps before = sleeps(pid);
    const double cpu = cpuPercent(pid, seconds);
    const Sleeps after = sleeps(pid);
    double all = 0;
    for (auto thread = after.begin(); thread != after.end(); ++thread)
        all += (*thread - before.value(thread.key(), *thread)) / seconds;
    std::printf("%-46s %6.1f wake-ups a second (aim at rest: 8), %.2f %% of a core\n", state, all,
                cpu);
    for (auto thread = after.begin(); thread != after.end(); ++thread) {
        const double one = (*thread - before.value(thread.key(), *thread)) / seconds;
        if (one >= 0.1)
            std::printf("    %-42s %6.1f\n", qPrintable(thread.key().section(' ', 1)), one);
    }
    std::fflush(stdout);
}

/// Lets the microphone hear something for as long as all measuring takes.
void makeNoise() {
    const QString file = desk().folder() + QStringLiteral("/noise.wav");
    desk().run(
        QStringLiteral("sox"),
        QStringLiteral("-n -r 16000 %1 synth 120 pinknoise").arg(file).split(QLatin1Char(' ')));
    desk().speak(file);
}

void run() {
    Stand stand;
    const std::unique_ptr<Program> program = startProgram(&stand);
    if (!program)
        throw std::runtime_error("the program does not become ready");
    const qint64 pid = program->processId();
    // The balloon of the first connection goes.
    QTest::qWait(15000);
    report("at rest, in a silent room", pid);
    makeNoise();
    report("at rest, with noise in the microphone", pid);
    XKeyboard().play(doubleCtrl);
    stand.waitFor(QStringLiteral("sound"));
    report("dictating", pid);
    XKeyboard().play(doubleCtrl);
    QTest::qWait(2000);
    report("at rest after a dictation", pid);
    if (program->terminate() != 0)
        throw std::runtime_error("the program did not end well");
}

} // namespace

int main(int argc, char **argv) {
    benchOnDesk(argc, argv, VirtualDesk::Screen | VirtualDesk::Sound | VirtualDesk::Tray, [] {
        // The program chooses how to draw, as it does for its users.
        qunsetenv("QT_XCB_GL_INTEGRATION");
        qunsetenv("QT_QUICK_BACKEND");
        run();
    });
}
