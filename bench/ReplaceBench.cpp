#include "VirtualDesk.h"
#include "commands/AutoReplaceManager.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/settings/Settings.h"
#include "recognition/AsrManager.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// What the commands say: phrases all of their own, or all with the same first two words.
enum Kind { Varied, Alike };

QString word(QRandomGenerator *random) {
    static const QStringList stems =
        QStringLiteral("кардио гастро нейро дермато пульмо нефро гепато остео артро ангио мио "
                       "рино ото офтальмо уро эндо лапаро торако цито гемато")
            .split(QLatin1Char(' '));
    static const QStringList endings =
        QStringLiteral("логия скопия грамма патия генный логический метрия томия стомия пластика "
                       "спазм логом скопию граммы патии генного логической метрии томией терапия")
            .split(QLatin1Char(' '));
    return stems[random->bounded(stems.size())] + endings[random->bounded(endings.size())];
}

QString opening(Kind kind, QRandomGenerator *random) {
    return kind == Alike ? QStringLiteral("общее состояние") : word(random);
}

QList<UserCommand> commandsOf(Kind kind, int count) {
    QRandomGenerator random(1);
    QList<UserCommand> commands;
    for (int i = 0; i < count; ++i) {
        UserCommand command(UserCommandNamespace::UserCommandType::Text);
        command.Pattern = QStringList{opening(kind, &random), word(&random), word(&random)}.join(
            QLatin1Char(' '));
        command.Text = QStringLiteral("замена %1").arg(i);
        commands.append(command);
    }
    return commands;
}

/// Dictated words, with the phrase of a command some every 50 characters.
QString textOf(const QList<UserCommand> &commands, Kind kind, int characters) {
    QRandomGenerator random(2);
    QString text;
    for (int phrases = 0; text.size() < characters;) {
        if (text.size() / 50 >= phrases) {
            ++phrases;
            text += commands[random.bounded(commands.size())].Pattern + QLatin1Char(' ');
        } else {
            text += opening(kind, &random) + QStringLiteral(" , ");
        }
    }
    return text.left(characters);
}

/// The replacements of this many commands, as the program sets them up.
class Replacements {
public:
    Replacements(Kind kind, int count) : m_commands(commandsOf(kind, count)) {
        m_store.set_AsrManager(&m_asr);
        m_store.LoadAll();
        m_store.set_Commands({{QString(), m_commands}});
    }

    const QList<UserCommand> &commands() const { return m_commands; }

    std::unique_ptr<AutoReplaceManager> build() {
        auto manager = std::make_unique<AutoReplaceManager>();
        manager->set_Managers(&m_asr, &m_store);
        return manager;
    }

private:
    QList<UserCommand> m_commands;
    WebSocketClient m_client{nullptr};
    AsrManager m_asr{&m_client};
    UserCommandsManager m_store;
};

using Expressions = QMap<AutoReplaceManager::Info, QRegularExpression>;

/// All expressions of a set, compiled; made once for each set.
const Expressions &expressionsOf(Kind kind, int count) {
    static QMap<QPair<int, int>, Expressions> made;
    Expressions &expressions = made[qMakePair(static_cast<int>(kind), count)];
    if (expressions.isEmpty()) {
        const QList<UserCommand> commands = commandsOf(kind, count);
        for (const UserCommand &command : commands) {
            expressions.insert({command.Pattern, command.Text},
                               AutoReplaceManager::CreateRegexp(command.get_NormalizedPattern()));
        }
    }
    return expressions;
}

/// Every expression over the whole text.
QList<AutoReplaceManager::Entry> plainWalk(const Expressions &expressions, const QString &text) {
    QList<AutoReplaceManager::Entry> entries;
    for (auto each = expressions.cbegin(); each != expressions.cend(); ++each) {
        for (auto matches = each->globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            entries.append({each.key(), match.capturedStart(QStringLiteral("Z")),
                            match.capturedLength(QStringLiteral("Z"))});
        }
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto &a, const auto &b) { return a.start < b.start; });
    return AutoReplaceManager::GetTextAndCommands(entries);
}

/// A result against so many commands, and how many times longer the plain walk takes for it.
void processes(benchmark::State &state, Kind kind) {
    const int count = static_cast<int>(state.range(0));
    Replacements replacements(kind, count);
    const QString text = textOf(replacements.commands(), kind, static_cast<int>(state.range(1)));
    const auto manager = replacements.build();
    const int matches = manager->Process(text).size();
    const Clock::time_point start = Clock::now();
    for (auto _ : state)
        benchmark::DoNotOptimize(manager->Process(text));
    const double own = secondsSince(start) / static_cast<double>(state.iterations());

    constexpr int rounds = 5;
    const Expressions &expressions = expressionsOf(kind, count);
    if (plainWalk(expressions, text).size() != matches)
        state.SkipWithError("the plain walk finds something else");
    const Clock::time_point plainStart = Clock::now();
    for (int i = 0; i < rounds; ++i)
        benchmark::DoNotOptimize(plainWalk(expressions, text));
    const double plain = secondsSince(plainStart) / rounds;
    state.counters["matches"] = matches;
    state.counters["plain_us"] = plain * 1e6;
    state.counters["times_faster"] = plain / own;
}
BENCHMARK_CAPTURE(processes, varied, Varied)
    ->ArgsProduct({{100, 1000, 10000}, {20, 200, 2000}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(processes, alike, Alike)
    ->ArgsProduct({{100, 1000, 10000}, {20, 200, 2000}})
    ->Unit(benchmark::kMicrosecond);

/// From the commands in the store to the moment at which a result can be processed.
void builds(benchmark::State &state) {
    Replacements replacements(Varied, static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(replacements.build());
}
BENCHMARK(builds)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

/// The first result after that, whose expressions have yet to be compiled.
void processesFirst(benchmark::State &state) {
    Replacements replacements(Varied, static_cast<int>(state.range(0)));
    const QString text = textOf(replacements.commands(), Varied, static_cast<int>(state.range(1)));
    for (auto _ : state) {
        const auto manager = replacements.build();
        const Clock::time_point start = Clock::now();
        benchmark::DoNotOptimize(manager->Process(text));
        state.SetIterationTime(secondsSince(start));
    }
}
BENCHMARK(processesFirst)
    ->ArgsProduct({{10000}, {20, 200, 2000}})
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv) {
    try {
        const VirtualDesk desk(VirtualDesk::Folders);
        const QCoreApplication application(argc, argv);
        Settings::setOrganizationName(QStringLiteral("Ostrel"));
        Settings::setApplicationName(QStringLiteral("Vellumar"));
        Settings::setFileName(QStringLiteral("settings"));
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
