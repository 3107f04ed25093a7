#include "commands/AutoReplaceManager.h"
#include "commands/ExecutableCommandsManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace {

QString textOf(int characters) {
    const QString sentence =
        QStringLiteral("общее состояние удовлетворительное , жалоб нет . ( давление 120 / 80 ) ");
    return sentence.repeated(characters / sentence.size() + 1).left(characters);
}

/// Formatting one final result.
void formatsResult(benchmark::State &state) {
    WebSocketClient client(nullptr);
    AsrManager asrManager(&client);
    ExecutableCommandsManager commands({}, &client);
    AutoReplaceManager autoReplace;
    ResultManager results(&client, &asrManager, &autoReplace, &commands);
    const QString text = textOf(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(results.formatText(text, true));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(formatsResult)->Arg(20)->Arg(200)->Arg(1000)->Arg(10000);

/// From the text of a frame to the signal with the record.
void parsesResult(benchmark::State &state) {
    DataMessageProcessor processor(nullptr);
    const QString frame =
        QStringLiteral(R"({"MessageType":3,"Data":{"Text":"%1","IsFinal":true,"CommandId":""}})")
            .arg(textOf(static_cast<int>(state.range(0))));
    for (auto _ : state)
        processor.onTextMessageReceived(frame);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(parsesResult)->Arg(20)->Arg(200)->Arg(1000)->Arg(10000);

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
