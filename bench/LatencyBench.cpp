#include "DeskTest.h"
#include "Figures.h"
#include "KeyReceiver.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

// How long the built program takes, from outside: keys, frames and windows of a virtual desk. The
// times of the stand and of this process come from the same monotonic clock.

namespace {

constexpr int rounds = 200;
constexpr int blockBytes = 6400;

/// The running program, ready, with a receiving window in front.
struct Scene {
    Stand stand;
    std::unique_ptr<KeyReceiver> receiver;
    std::unique_ptr<Program> program;
    double firstWindowMs = 0;
};

void startProgram(Scene *scene) {
    writeSettings(scene->stand);
    scene->receiver = std::make_unique<KeyReceiver>();
    const double start = nowMs();
    scene->program = std::make_unique<Program>();
    desk().run(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--name"),
                QStringLiteral("^Vellumar .Qt.$")});
    scene->firstWindowMs = nowMs() - start;
    if (scene->stand.waitForMessage(MessageType::StartMode, 20000).isEmpty())
        throw std::runtime_error("the program does not become ready");
}

double arrivalMs(const QJsonObject &event) {
    if (event.isEmpty())
        throw std::runtime_error("the stand waited in vain");
    return event["us"].toDouble() / 1000;
}

/// From the second release of Ctrl to StartMode on the wire; leaves dictation on.
Samples measureKeys(Scene *scene) {
    XKeyboard keyboard;
    Samples samples;
    // An even number of toggles before the last one, which starts dictation.
    for (int i = 0; i < rounds + 1; ++i) {
        // Each gesture is to fall anywhere in the listener's polling interval.
        QTest::qWait(300 + i % 21);
        scene->stand.forget();
        keyboard.play(QStringLiteral("+Control_L -Control_L +Control_L"));
        QTest::qWait(30);
        const double released = nowMs();
        keyboard.release(QStringLiteral("Control_L"));
        samples.push_back(arrivalMs(scene->stand.waitForMessage(MessageType::StartMode)) -
                          released);
    }
    scene->stand.waitFor(QStringLiteral("sound"));
    return samples;
}

/// From the request for a result to the first key at the window, the way through the stand
/// included.
Samples measureResults(Scene *scene) {
    Samples samples;
    for (int i = 0; i < rounds; ++i) {
        const int before = scene->receiver->text().size();
        const double asked = nowMs();
        scene->stand.sayResult(QStringLiteral("слово"));
        if (!scene->receiver->waitForLength(before + 1, 5000))
            throw std::runtime_error("a result was not typed");
        samples.push_back(nowMs() - asked);
        QTest::qWait(20);
    }
    return samples;
}

/// From a block's entry into the source to its frame on the wire. The source passes on what is
/// written into a pipe, as fast as it is spoken.
Samples measureSound(Scene *scene, int pipe) {
    Samples samples;
    const std::vector<char> block(blockBytes, '\x11');
    QTest::qWait(2000);
    scene->stand.forget();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 60; ++i) {
        QTest::qWait(static_cast<int>(std::max<qint64>(0, 200 * i - clock.elapsed())));
        const double written = nowMs();
        if (::write(pipe, block.data(), block.size()) != blockBytes)
            throw std::runtime_error("the pipe does not take a block");
        int bytes = 0;
        QJsonObject sound;
        while (bytes < blockBytes) {
            sound = scene->stand.waitFor(QStringLiteral("sound"), {}, 3000);
            if (sound.isEmpty())
                throw std::runtime_error("a block did not arrive");
            bytes += sound["bytes"].toInt();
        }
        samples.push_back(arrivalMs(sound) - written);
    }
    return samples;
}

void run() {
    Scene scene;
    startProgram(&scene);
    const qint64 pid = scene.program->processId();
    std::printf("%-46s %6.0f ms\n", "start to first window", scene.firstWindowMs);
    std::printf("%-46s %6.2f %% of a core (aim: under 1)\n", "at rest", cpuPercent(pid));
    print("second release of Ctrl to StartMode (aim: 40)", measureKeys(&scene));
    {
        // A partial result with every block of sound, and a final one each second.
        QTimer speech;
        int spoken = 0;
        QObject::connect(&speech, &QTimer::timeout, &speech, [&] {
            scene.stand.sayResult(QStringLiteral("жалобы на кашель и одышку"), ++spoken % 5 == 0);
        });
        speech.start(200);
        std::printf("%-46s %6.2f %% of a core (aim: under 4)\n", "while dictating",
                    cpuPercent(pid));
    }
    print("Result to first key at the window (aim: 5)", measureResults(&scene));
    std::printf("%-46s %6ld KiB\n", "resident memory", residentKiB(pid));
    if (scene.program->terminate() != 0)
        throw std::runtime_error("the program did not end well");
}

void runSound() {
    const QString path = desk().folder() + QStringLiteral("/microphone.pipe");
    desk().stopSound();
    desk().startSound();
    desk().loadModule({QStringLiteral("module-pipe-source"), QStringLiteral("file=") + path,
                       QStringLiteral("source_name=piped"), QStringLiteral("format=s16le"),
                       QStringLiteral("rate=16000"), QStringLiteral("channels=1")});
    const int pipe = ::open(path.toLocal8Bit().constData(), O_RDWR | O_CLOEXEC);
    if (pipe < 0)
        throw std::runtime_error("the pipe of the microphone cannot be opened");
    { RecordingDeviceSettings().Name = QStringLiteral("piped"); }
    Scene scene;
    startProgram(&scene);
    scene.stand.forget();
    XKeyboard().play(QStringLiteral("+Control_L -Control_L +Control_L -Control_L"));
    scene.stand.waitForMessage(MessageType::StartMode);
    print("sound into the source to its frame", measureSound(&scene, pipe));
    ::close(pipe);
    if (scene.program->terminate() != 0)
        throw std::runtime_error("the program did not end well");
}

} // namespace

int main(int argc, char **argv) {
    benchOnDesk(argc, argv, VirtualDesk::Screen | VirtualDesk::Sound, [] {
        run();
        runSound();
    });
}
