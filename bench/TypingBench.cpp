#include "KeyReceiver.h"
#include "VirtualDesk.h"
#include "core/settings/Settings.h"
#include "desktop/TextWriter.h"

#include <QApplication>
#include <QElapsedTimer>

#include <X11/Xlib.h>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

/// How fast a window receives a text of 1,000 Russian letters: from the text writer, from another
/// typing tool, and from the barest loop that sends the same events.
namespace {

constexpr int Letters = 1000;
constexpr int Rounds = 9;
constexpr int PatienceMs = 5000;

/// The writer's own events once more, without anything around them.
class BareLoop {
public:
    BareLoop() : m_display(XOpenDisplay(nullptr), XCloseDisplay) {}

    void send(unsigned long window, const QVector<KeyReceiver::Edge> &edges) {
        XEvent event = {};
        event.xkey.display = m_display.get();
        event.xkey.window = window;
        event.xkey.root = DefaultRootWindow(m_display.get());
        event.xkey.same_screen = True;
        for (const KeyReceiver::Edge &edge : edges) {
            event.xkey.type = edge.isPress ? KeyPress : KeyRelease;
            event.xkey.keycode = static_cast<unsigned int>(edge.keycode);
            event.xkey.state = edge.state;
            XSendEvent(m_display.get(), window, True, NoEventMask, &event);
            XFlush(m_display.get());
        }
    }

private:
    std::unique_ptr<Display, int (*)(Display *)> m_display;
};

/// What the rounds of one way of typing gave.
struct Result {
    std::vector<double> perSecond;
    int wrongLetters = 0;

    double median() {
        const auto middle = perSecond.begin() + static_cast<std::ptrdiff_t>(perSecond.size() / 2);
        std::nth_element(perSecond.begin(), middle, perSecond.end());
        return *middle;
    }
};

QString russianText() {
    const QString pangram = QStringLiteral("съешьжеещёэтихмягкихфранцузскихбулокдавыпейчаю");
    return pangram.repeated(Letters / pangram.size() + 1).left(Letters);
}

int wrongLetters(const QString &expected, const QString &received) {
    int wrong = qAbs(expected.size() - received.size());
    for (int i = 0; i < qMin(expected.size(), received.size()); ++i)
        wrong += expected[i] != received[i] ? 1 : 0;
    return wrong;
}

void measure(KeyReceiver &receiver, const QString &text, Result &result,
             const std::function<void()> &type) {
    receiver.clear();
    QElapsedTimer timer;
    timer.start();
    type();
    receiver.waitForLength(text.size(), PatienceMs);
    constexpr double NanosecondsInSecond = 1e9;
    result.perSecond.push_back(text.size() * NanosecondsInSecond /
                               static_cast<double>(timer.nsecsElapsed()));
    result.wrongLetters += wrongLetters(text, receiver.text());
}

void run(VirtualDesk &desk) {
    const QString text = russianText();
    KeyReceiver receiver;
    BareLoop bareLoop;
    TextWriter::Init();
    Result writer;
    Result tool;
    Result bare;
    for (int round = 0; round < Rounds; ++round) {
        measure(receiver, text, writer, [&] { TextWriter::WriteText(receiver.window(), text); });
        const QVector<KeyReceiver::Edge> edges = receiver.edges();
        measure(receiver, text, bare, [&] { bareLoop.send(receiver.window(), edges); });
        measure(receiver, text, tool, [&] {
            desk.run(QStringLiteral("xdotool"), {QStringLiteral("type"), QStringLiteral("--delay"),
                                                 QStringLiteral("0"), text});
        });
    }
    TextWriter::Cleanup();

    std::printf("%d Russian letters, median of %d rounds\n", Letters, Rounds);
    std::printf("  %-24s %12s %14s\n", "", "letters/s", "wrong letters");
    std::printf("  %-24s %12.0f %14d\n", "text writer", writer.median(), writer.wrongLetters);
    std::printf("  %-24s %12.0f %14d\n", "xdotool type --delay 0", tool.median(),
                tool.wrongLetters);
    std::printf("  %-24s %12.0f %14d\n", "bare loop", bare.median(), bare.wrongLetters);
    std::printf("text writer / xdotool:   %.2f (aim: 5 or more)\n",
                writer.median() / tool.median());
    std::printf("text writer / bare loop: %.2f (aim: 0.5 or more)\n",
                writer.median() / bare.median());
}

} // namespace

int main(int argc, char **argv) {
    try {
        VirtualDesk desk(VirtualDesk::Screen);
        const QApplication application(argc, argv);
        Settings::setOrganizationName(QStringLiteral("Ostrel"));
        Settings::setApplicationName(QStringLiteral("Vellumar"));
        Settings::setFileName(QStringLiteral("settings"));
        run(desk);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
