#include "DeskTest.h"
#include "Editor.h"
#include "Figures.h"
#include "Program.h"
#include "Stand.h"
#include "connection/messages/MessageType.h"
#include "connection/messages/RecognitionModeInfo.h"

#include <QRect>
#include <QTimer>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>

// What the tray icon, the monitor's square and the tooltip cost, and how soon they are on the
// screen: read from the screen's pixels, on the desk's clock.

namespace {

constexpr int rounds = 200;
constexpr int resultsOfOneDay = 10000;
const QRect screen(0, 0, 1280, 800);
const QRect panelStrip(1000, 0, 280, 30);

/// Looks at one rectangle of the screen, over and over.
class ScreenWatch {
public:
    explicit ScreenWatch(const QRect &place)
        : m_display(XOpenDisplay(nullptr), &XCloseDisplay),
          m_place(place & screen),
          m_seen(look()) {}

    /// Takes what is there now as what was there before.
    void forget() { m_seen = look(); }

    /// Waits for a change, but only looks; what changed is the next wait's before.
    double awaitChangeMs() {
        const double deadline = nowMs() + 5000;
        while (nowMs() < deadline) {
            const size_t now = look();
            if (now != m_seen) {
                m_seen = now;
                return nowMs();
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        throw std::runtime_error("nothing changed on the screen");
    }

private:
    size_t look() {
        const std::unique_ptr<XImage, int (*)(XImage *)> image(
            XGetImage(m_display.get(), DefaultRootWindow(m_display.get()), m_place.x(), m_place.y(),
                      static_cast<unsigned>(m_place.width()),
                      static_cast<unsigned>(m_place.height()), AllPlanes, ZPixmap),
            [](XImage *one) { return XDestroyImage(one); });
        if (!image)
            throw std::runtime_error("the screen cannot be read");
        return qHashBits(image->data, static_cast<size_t>(image->bytes_per_line) *
                                          static_cast<size_t>(image->height));
    }

    std::unique_ptr<Display, int (*)(Display *)> m_display;
    QRect m_place;
    size_t m_seen;
};

/// The running program, ready, in front of an editor.
struct Scene {
    Stand stand;
    std::unique_ptr<Editor> editor;
    std::unique_ptr<Program> program;
    double trayMs = 0;

    void report(AsrState state) {
        stand.tell(QJsonObject{
            {QStringLiteral("do"), QStringLiteral("message")},
            {QStringLiteral("type"), MessageType::ModeState},
            {QStringLiteral("data"), RecognitionModeInfo(RecognitionMode::Text, state).toJson()}});
    }
};

void startProgram(Scene *scene) {
    writeSettings(scene->stand);
    scene->editor = std::make_unique<Editor>(QStringLiteral("editor"));
    ScreenWatch panel(panelStrip);
    const double start = nowMs();
    scene->program = std::make_unique<Program>();
    scene->trayMs = panel.awaitChangeMs() - start;
    if (scene->stand.waitForMessage(MessageType::StartMode, 20000).isEmpty())
        throw std::runtime_error("the program does not become ready");
}

/// From the report that dictation has started to the first change in the corner of the screen.
Samples measureSquare(Scene *scene) {
    ScreenWatch corner(QRect(screen.bottomRight() - QPoint(109, 109), QSize(100, 100)));
    Samples samples;
    for (int i = 0; i < rounds; ++i) {
        QTest::qWait(150 + i % 17);
        corner.forget();
        const double reported = nowMs();
        scene->report(AsrState::Started);
        samples.push_back(corner.awaitChangeMs() - reported);
        QTest::qWait(100);
        scene->report(AsrState::Stopped);
    }
    scene->report(AsrState::Started);
    QTest::qWait(500);
    return samples;
}

QRect editorRect() {
    const QString shell =
        desk().run(QStringLiteral("xdotool"),
                   {QStringLiteral("getactivewindow"), QStringLiteral("getwindowgeometry"),
                    QStringLiteral("--shell")});
    QRect rect;
    for (const QString &line : shell.split(QLatin1Char('\n'))) {
        const int value = line.section(QLatin1Char('='), 1).toInt();
        if (line.startsWith(QLatin1String("X=")))
            rect.moveLeft(value);
        else if (line.startsWith(QLatin1String("Y=")))
            rect.moveTop(value);
        else if (line.startsWith(QLatin1String("WIDTH=")))
            rect.setWidth(value);
        else if (line.startsWith(QLatin1String("HEIGHT=")))
            rect.setHeight(value);
    }
    return rect;
}

/// From the request for a partial result to the first change where the tooltip stands. With
/// `fromNothing`, each one has to bring the tooltip to the screen first.
Samples measureTooltip(Scene *scene, bool fromNothing) {
    const QRect editor = editorRect();
    ScreenWatch tooltip(QRect(editor.center().x() - 120, editor.y() - 30, 240, 90));
    Samples samples;
    for (int i = 0; i < rounds; ++i) {
        QTest::qWait(100 + i % 17);
        tooltip.forget();
        const double asked = nowMs();
        scene->stand.sayResult(QStringLiteral("жалобы на кашель %1").arg(i), false);
        samples.push_back(tooltip.awaitChangeMs() - asked);
        if (fromNothing) {
            QTest::qWait(50);
            scene->stand.sayResult(QString(), true);
        }
    }
    scene->stand.sayResult(QString(), true);
    return samples;
}

/// Ten partial results a second, each longer than the one before, and a voice in the microphone.
double measureCpu(Scene *scene) {
    const QString voice = desk().folder() + QStringLiteral("/voice.wav");
    desk().run(QStringLiteral("sox"),
               {QStringLiteral("-n"), QStringLiteral("-r"), QStringLiteral("22050"), voice,
                QStringLiteral("synth"), QStringLiteral("14"), QStringLiteral("sine"),
                QStringLiteral("300"), QStringLiteral("tremolo"), QStringLiteral("1.3")});
    desk().speak(voice);
    QTimer speech;
    int spoken = 0;
    QString text;
    QObject::connect(&speech, &QTimer::timeout, &speech, [&] {
        text += QStringLiteral(" кашель");
        const bool isFinal = ++spoken % 30 == 0;
        scene->stand.sayResult(text, isFinal);
        if (isFinal)
            text.clear();
    });
    speech.start(100);
    QTest::qWait(1000);
    return cpuPercent(scene->program->processId());
}

/// What 10,000 partial results leave behind, after as many to get used to them.
long measureGrowthKiB(Scene *scene) {
    const auto sayAll = [scene] {
        for (int i = 0; i < resultsOfOneDay; ++i) {
            scene->stand.sayResult(QStringLiteral("жалобы на кашель и одышку %1").arg(i), false);
            // Faster than that they would queue up in the program.
            if (i % 20 == 0)
                QTest::qWait(30);
        }
        QTest::qWait(1000);
        return residentKiB(scene->program->processId());
    };
    const long before = sayAll();
    return sayAll() - before;
}

void run() {
    Scene scene;
    startProgram(&scene);
    std::printf("%-46s %6.0f ms\n", "start to tray icon", scene.trayMs);
    print("Started to the square on screen (aim: 50)", measureSquare(&scene));
    print("partial Result to the tooltip (aim: 50)", measureTooltip(&scene, true));
    print("partial Result to its text on screen (aim: 50)", measureTooltip(&scene, false));
    std::printf("%-46s %6.2f %% of a core (aim: under 5)\n", "dictating, with monitor and tooltip",
                measureCpu(&scene));
    std::printf("%-46s %6ld KiB\n", "10,000 partial results leave", measureGrowthKiB(&scene));
    std::printf("%-46s %6ld KiB\n", "resident memory", residentKiB(scene.program->processId()));
    if (scene.program->terminate() != 0)
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
