#include "DeskTest.h"
#include "Editor.h"
#include "ProcessUsage.h"
#include "Program.h"
#include "ProgramWindow.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/LaunchSettings.h"
#include "core/settings/ServersConnectionSettings.h"

#include <QElapsedTimer>
#include <QMap>

#include <algorithm>
#include <functional>

namespace {

constexpr int secondMs = 1000;
constexpr int minuteMs = 60 * secondMs;

int wantedMinutes() {
    return qMax(3, qEnvironmentVariableIntValue("VELLUMAR_LONG_RUN_MINUTES"));
}

/// As the numbers of the stand stand before the full stops of a document. One that has none yet is
/// still being typed.
QStringList numbersIn(const QString &text) {
    QStringList numbers = text.toLower().split('.');
    numbers.removeLast();
    for (QString &number : numbers)
        number = number.simplified();
    return numbers;
}

/// What a list has that another one has not.
QStringList surplus(QStringList list, const QStringList &other) {
    for (const QString &one : other)
        list.removeOne(one);
    return list;
}

} // namespace

/// Speech into the microphone for minutes or, if VELLUMAR_LONG_RUN_MINUTES says so, for hours,
/// while servers, devices and windows come and go. Each result is to be typed exactly once, and in
/// the end the program is to hold no more than after the first sixth of the time.
class TestLongRun : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        makeSpeech();
        m_stand = std::make_unique<Stand>(QJsonObject(), QStringList{"--engine", "counting"});
        m_stand->offerServers(3);
        // A lost server may be tried again as soon as another one has been lost.
        ServersConnectionSettings().ServersListRefreshMinTimeout = 1;
        ServersConnectionSettings().ServerStatusRefreshMinTimeout = 1;
        // Windows take the focus, but not the text.
        LaunchSettings().OutputToBackground = true;
        ASRSettings().CanEditAvocadoWords = true;
        m_program = startProgram(m_stand.get());
        QVERIFY(m_program);

        // Minutes in a run of an hour, and seconds at the least, so that a short run has every
        // event.
        const auto period = [this](int minutesOfAnHour, int leastSeconds) {
            return qMax(minutesOfAnHour * minuteMs / 60 * m_minutes, leastSeconds * secondMs);
        };
        m_events = {{"server lost", period(5, 30), &TestLongRun::loseServer},
                    {"microphone unplugged", period(8, 45), &TestLongRun::unplugMicrophone},
                    {"PulseAudio restarted", period(20, 100), &TestLongRun::restartSound},
                    {"dictionary changed", period(15, 80), &TestLongRun::changeDictionary},
                    {"windows opened", period(4, 35), &TestLongRun::openWindows},
                    {"minute", minuteMs, &TestLongRun::report}};
        for (Event &event : m_events)
            event.dueMs = event.periodMs;
    }

    void everythingIsTypedOnce() {
        m_sinceStart.start();
        QVERIFY(dictate());
        const ProcessUsage start = usage();
        // Caches fill when something is shown for the first time.
        QVERIFY(openWindows());
        QVERIFY(changeDictionary());
        const qint64 wholeMs = qint64(m_minutes) * minuteMs;
        QVERIFY(runEvents(wholeMs / 6));
        QVERIFY(goesOn());
        const ProcessUsage baseline = usage();
        qInfo("start: %d threads, %d handles; baseline: %lld kB, %d threads, %d handles",
              start.threads, start.handles, baseline.residentKb, baseline.threads,
              baseline.handles);
        QVERIFY(runEvents(wholeMs));
        QVERIFY(goesOn());
        report();
        checkUsage(start, baseline);
        checkText();
        QCOMPARE(m_program->terminate(), 0);
    }

private:
    struct Event {
        const char *name;
        int periodMs;
        bool (TestLongRun::*happen)();
        qint64 dueMs = 0;
        int times = 0;
    };

    void makeSpeech() {
        const QString words = desk().folder() + "/words.wav";
        m_wav = desk().folder() + "/speech.wav";
        desk().run("espeak-ng", {"-v", "ru", "-w", words,
                                 "Жалобы на кашель, одышку и слабость. Общее состояние "
                                 "удовлетворительное, температура тела в норме."});
        desk().run("sox", {words, m_wav, "repeat", "9"});
    }

    void keepSpeaking() {
        desk().end(m_speech);
        m_speech = desk().speak(m_wav);
        connect(m_speech, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
                [this](int status) {
                    // Without a sound server there is nobody to speak to.
                    if (status == 0)
                        QMetaObject::invokeMethod(
                            this, [this] { keepSpeaking(); }, Qt::QueuedConnection);
                });
    }

    bool dictate() {
        keepSpeaking();
        m_editor = std::make_unique<Editor>(QString("document%1.txt").arg(++m_documents));
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        return nextMode(m_stand.get()).isNull() && goesOn();
    }

    bool endDocument() {
        // The last result before the end may still be on its way to this test.
        m_stand->forget();
        const bool isComplete = QTest::qWaitFor([this] { return isTyped(); }, 20 * secondMs);
        m_typedBefore += m_editor->text();
        m_editor.reset();
        return isComplete;
    }

    bool goesOn() {
        m_stand->forget();
        return !m_stand
                    ->waitFor(
                        "result", [](const QJsonObject &event) { return event["final"].toBool(); },
                        minuteMs)
                    .isEmpty();
    }

    bool isTyped() const { return typedNumbers() == sentNumbers(); }

    QStringList sentNumbers() const {
        QStringList sent;
        QMap<int, QString> begun;
        const auto take = [&](int session) { sent += numbersIn(begun.take(session)); };
        for (const QJsonObject &event : m_stand->events()) {
            const int session = event["session"].toInt();
            if (event["event"] == "result") {
                begun.insert(session, event["text"].toString());
                if (event["final"].toBool())
                    take(session);
            } else if (event["event"] == "disconnected") {
                // What was begun on a connection that broke is the client's to end.
                take(session);
            }
        }
        return sent;
    }

    QStringList typedNumbers() const {
        return numbersIn(m_typedBefore + (m_editor ? m_editor->text() : QString()));
    }

    bool runEvents(qint64 untilMs) {
        while (true) {
            const auto next =
                std::min_element(m_events.begin(), m_events.end(),
                                 [](const Event &a, const Event &b) { return a.dueMs < b.dueMs; });
            // What is due at the very end would not be part of the run any more.
            const qint64 dueMs = next->dueMs < untilMs ? next->dueMs : untilMs;
            const bool isRunning = !QTest::qWaitFor([this] { return !m_program->isRunning(); },
                                                    int(qMax(0LL, dueMs - m_sinceStart.elapsed())));
            if (!isRunning || next->dueMs >= untilMs || m_sinceStart.elapsed() >= untilMs)
                return isRunning;
            next->dueMs += next->periodMs;
            ++next->times;
            if (next->happen != &TestLongRun::report)
                qInfo("%6.1f s: %lld kB, %s", double(m_sinceStart.elapsed()) / secondMs,
                      usage().residentKb, next->name);
            if (!(this->*next->happen)()) {
                qWarning("dictation did not survive: %s", next->name);
                report();
                return false;
            }
        }
    }

    bool loseServer() {
        const QStringList ways{"drop", "close", "ignorePings"};
        const QString way = ways[m_losses++ % ways.size()];
        // A broken connection, unlike an orderly end, loses what was just sent.
        if (way == "drop" && !QTest::qWaitFor([this] { return isTyped(); }, 20 * secondMs))
            return false;
        m_stand->forget();
        m_stand->tell(way);
        return !m_stand->waitFor("disconnected", {}, minuteMs).isEmpty() &&
               !nextMode(m_stand.get(), minuteMs).isUndefined() && goesOn();
    }

    bool unplugMicrophone() {
        m_stand->forget();
        desk().unloadModule("module-remap-source");
        if (nextMode(m_stand.get()).toInt(-1) != 0 || !endDocument())
            return false;
        m_program->forgetLog();
        desk().loadModule({"module-remap-source", "master=micfeed.monitor", "source_name=mic",
                           "source_properties=device.description=Microphone"});
        return m_program->waitForLog("Created audio input") && dictate();
    }

    bool restartSound() {
        m_program->forgetLog();
        desk().stopSound();
        if (!m_program->waitForLog("Connection to pulse audio failed"))
            return false;
        desk().startSound();
        keepSpeaking();
        // Nobody presses a key: what was dictated into goes on.
        return m_program->waitForLog("Connected to pulse audio") && goesOn();
    }

    bool changeDictionary() {
        const QString before = ASRSettings().SelectedTheme;
        const ProgramWindow window =
            ProgramWindow::openFromTray(ProgramWindow::SettingsEntry, "Настройки");
        constexpr int recognitionTab = 263;
        window.click(recognitionTab, 33);
        window.click(300, 103);
        ProgramWindow::key(before == "therapy" ? "Down Return" : "Up Return");
        m_stand->forget();
        window.accept();
        // The new one holds for the next dictation.
        return window.isGone() && nextMode(m_stand.get()).toInt(-1) == 0 &&
               !m_stand->waitForMessage(MessageType::SelectTheme).isEmpty() && endDocument() &&
               dictate();
    }

    bool openWindows() {
        return openWindow(ProgramWindow::SettingsEntry, "Настройки") &&
               openWindow(ProgramWindow::ReplacesEntry, "Автозамена") &&
               openWindow(ProgramWindow::FeedbackEntry, "Обратная связь") &&
               openWindow(ProgramWindow::WordsEntry, "Мои слова") && goesOn();
    }

    bool openWindow(ProgramWindow::Entry entry, const QString &title) {
        const ProgramWindow window = ProgramWindow::openFromTray(entry, title);
        if (!window.isOpen())
            return false;
        ProgramWindow::key("Escape");
        return window.isGone();
    }

    bool report() {
        const ProcessUsage held = usage();
        // A row is to show what is missing, not what is on its way.
        const bool isComplete = QTest::qWaitFor([this] { return isTyped(); }, patienceMs);
        const QStringList sent = sentNumbers();
        const QStringList typed = typedNumbers();
        QString row = QString("| %1 min | %2 kB | %3 threads | %4 handles | %5 sent | %6 typed |")
                          .arg(m_sinceStart.elapsed() / minuteMs)
                          .arg(held.residentKb)
                          .arg(held.threads)
                          .arg(held.handles)
                          .arg(sent.size())
                          .arg(typed.size());
        for (const Event &event : m_events) {
            if (event.happen != &TestLongRun::report)
                row += QString(" %1 %2 |").arg(event.name).arg(event.times);
        }
        qInfo().noquote() << row;
        if (!isComplete)
            qWarning() << "missing:" << surplus(sent, typed) << "unknown:" << surplus(typed, sent);
        return true;
    }

    ProcessUsage usage() const { return ProcessUsage(m_program->processId()); }

    void checkUsage(const ProcessUsage &start, const ProcessUsage &baseline) {
        // Threads of a pool end half a minute after their last work.
        QTRY_VERIFY_WITH_TIMEOUT(usage().threads <= qMin(start.threads, baseline.threads),
                                 minuteMs);
        QTRY_VERIFY_WITH_TIMEOUT(usage().handles <= qMin(start.handles, baseline.handles),
                                 minuteMs);
        const ProcessUsage held = usage();
        const double growth = 100.0 * double(held.residentKb - baseline.residentKb) /
                              double(qMax(1LL, baseline.residentKb));
        qInfo("end: %lld kB (%+.1f %%), %d threads, %d handles", held.residentKb, growth,
              held.threads, held.handles);
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        qInfo("the memory is not judged: a sanitizer keeps what was freed");
#else
        // After half a minute the first ones of some events are still to come, and fill their
        // caches.
        QVERIFY(growth <= (m_minutes >= 60 ? 5 : 15));
#endif
    }

    void checkText() {
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
        const bool isComplete = endDocument();
        const QStringList sent = sentNumbers();
        const QStringList typed = typedNumbers();
        qInfo("results: %d sent, %d typed, %d lost, %d doubled", int(sent.size()),
              int(typed.size()), int(surplus(sent, typed).size()),
              int(surplus(typed, sent).size()));
        QCOMPARE(typed, sent);
        QVERIFY(m_typedBefore.endsWith('.'));
        QVERIFY(isComplete);
    }

    const int m_minutes = wantedMinutes();
    std::vector<Event> m_events;
    QElapsedTimer m_sinceStart;
    QString m_wav;
    QProcess *m_speech = nullptr;
    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<Editor> m_editor;
    QString m_typedBefore;
    int m_documents = 0;
    int m_losses = 0;
};

DESK_TEST_MAIN(TestLongRun, VirtualDesk::Screen | VirtualDesk::Tray | VirtualDesk::Sound)
#include "TestLongRun.moc"
