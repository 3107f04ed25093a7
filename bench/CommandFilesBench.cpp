#include "VirtualDesk.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/AppVariables.h"
#include "recognition/AsrManager.h"

#include <QCoreApplication>
#include <QUuid>

#include <benchmark/benchmark.h>

namespace {

using UserCommandNamespace::UserCommandType;

QList<UserCommand> manyCommands(int count) {
    QList<UserCommand> commands;
    for (int i = 0; i < count; ++i) {
        commands.append(UserCommand(i % 10 == 0 ? UserCommandType::Key : UserCommandType::Text));
        commands.last().Pattern = QStringLiteral("вставить заключение номер %1").arg(i);
        commands.last().Text = QStringLiteral("Органы грудной клетки без патологии");
        if (i % 10 == 0)
            commands.last().Id = QUuid::createUuid().toString();
    }
    return commands;
}

struct Store {
    Store() { manager.set_AsrManager(&asrManager); }

    WebSocketClient client{nullptr};
    AsrManager asrManager{&client};
    UserCommandsManager manager;
};

/// All files at the start, merged and announced.
void loadsCommands(benchmark::State &state) {
    Store store;
    // The file of the run before is known then.
    store.manager.LoadAll();
    store.manager.Save(ClientThemeInfo(), manyCommands(static_cast<int>(state.range(0))));
    for (auto _ : state)
        store.manager.LoadAll();
}
BENCHMARK(loadsCommands)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

/// One list of the editors', to the disk.
void savesCommands(benchmark::State &state) {
    Store store;
    store.manager.LoadAll();
    const QMap<QString, QList<UserCommand>> lists{
        {QString(), manyCommands(static_cast<int>(state.range(0)))}};
    for (auto _ : state)
        store.manager.set_Commands(lists);
}
BENCHMARK(savesCommands)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

int main(int argc, char **argv) {
    // For folders of its own.
    const VirtualDesk desk(VirtualDesk::Folders);
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QCoreApplication::setApplicationName(QStringLiteral("Vellumar"));
    AppVariables::sm_stdVars.get(QStringLiteral("HomeLocation"), {});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
