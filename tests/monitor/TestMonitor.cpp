#include "ClientHarness.h"
#include "DeskTest.h"
#include "core/settings/RecordingDeviceSettings.h"
#include "desktop/TextWriter.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"
#include "viewmodels/MonitorViewModel.h"

#include <QRect>
#include <QSignalSpy>

#include <thread>

/// The windows of others: which has the focus, and where it stands.
class Windows : public TextWriter {
public:
    Windows(unsigned long focused, const QRect &rect) : m_focused(focused), m_rect(rect) {}
    static void set(unsigned long focused, const QRect &rect) {
        Writer = std::make_unique<Windows>(focused, rect);
    }

protected:
    bool writeText(unsigned long, const QString &, const TypingFailure &) override { return true; }
    bool writeKey(unsigned long, const HotKeyInfo &) override { return true; }
    unsigned long getFocusedWindow() override { return m_focused; }
    bool windowExists(unsigned long) override { return true; }
    bool takesText(unsigned long) override { return true; }
    bool getWindowRect(unsigned long, QRect *rect) override { return (*rect = m_rect).isValid(); }

private:
    const unsigned long m_focused;
    const QRect m_rect;
};

/// A view model and what it listens to.
struct Monitor {
    void say(const QString &text, bool isFinal = false) {
        emit worker.resultManager()->resultReady(text, isFinal);
    }
    QByteArray states() const {
        QByteArray on;
        for (const char *name : {"Loading", "Visible", "GainVisible", "ThemeVisible", "ResultText"})
            on += view.property(name).toBool() ? QByteArray(name) + ' ' : "";
        return on;
    }

    NoDevices noDevices;
    RecordingDeviceManager recording{&noDevices, nullptr};
    UserCommandsManager userCommands;
    AutoReplaceManager autoReplace;
    WebSocketWorker worker{&autoReplace, &userCommands};
    AsrManager *asr = worker.asrManager();
    ConnectionManager connection{worker.wsClient(), asr, &recording};
    MonitorViewModel view{asr, worker.resultManager(), &recording, &connection};
};

Q_DECLARE_METATYPE(RecognitionMode)

/// What the monitor tells its views.
class TestMonitor : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Windows::Cleanup(); }

    void followsTheRecogniser_data() {
        columns<RecognitionMode, AsrState, QByteArray, QByteArray>("mode", "state", "fromHidden",
                                                                   "fromShown");
        const QByteArray none;
        const QByteArray visible = "Visible ";
        const QByteArray loading = "Loading ";
        const QByteArray shown = "Visible GainVisible ThemeVisible ResultText ";
        using M = RecognitionMode;
        using S = AsrState;
        QTest::newRow("dictation starts") << M::Text << S::Starting << loading << loading + shown;
        QTest::newRow("dictation runs") << M::Text << S::Started << visible << shown;
        QTest::newRow("dictation ends") << M::Text << S::Stopping << loading << loading + shown;
        QTest::newRow("wizard") << M::TemplatedWizardForm << S::Stopped << none << none;
        QTest::newRow("spoken command") << M::VoiceActivation << S::Started << none << shown;
        QTest::newRow("off") << M::Off << S::Stopped << none << shown;
    }

    void followsTheRecogniser() {
        QFETCH(RecognitionMode, mode);
        QFETCH(AsrState, state);
        Monitor monitor;
        QCOMPARE(monitor.states(), "");
        emit monitor.asr->currentModeOrStateChanged(mode, state);
        QTEST(monitor.states(), "fromHidden");
        monitor.view.set_Loading(false);
        for (const char *name : {"Visible", "GainVisible", "ThemeVisible", "ResultText"})
            QVERIFY(monitor.view.setProperty(name, true));
        emit monitor.asr->currentModeOrStateChanged(mode, state);
        QTEST(monitor.states(), "fromShown");
    }

    void followsTheRecogniserFromAnotherThread() {
        Monitor monitor;
        QThread *receiver = nullptr;
        connect(
            &monitor.view, &MonitorViewModel::changed_Visible, this,
            [&receiver] { receiver = QThread::currentThread(); }, Qt::DirectConnection);
        std::thread([&monitor] {
            emit monitor.asr->currentModeOrStateChanged(RecognitionMode::Text, AsrState::Started);
        }).join();
        QVERIFY(!monitor.view.Visible());
        QTRY_VERIFY(monitor.view.Visible());
        QCOMPARE(receiver, thread());
    }

    void storesTheGainOnce() {
        Monitor monitor;
        QCOMPARE(monitor.view.gain(), monitor.recording.Gain());
        QSignalSpy changes(&monitor.view, &MonitorViewModel::changedGain);
        QSignalSpy echoes(&monitor.recording, &RecordingDeviceManager::GainChanged);
        // Whoever writes the settings again would undo this.
        connect(&monitor.view, &MonitorViewModel::changedGain, this, [&monitor] {
            QCOMPARE(int(RecordingDeviceSettings().Gain), monitor.view.gain());
            RecordingDeviceSettings().Gain = 1;
        });
        for (const int gain : {40, 50}) {
            // Changed on the device first, then by the user.
            if (gain == 40)
                monitor.recording.set_Gain(gain);
            for (int i = 0; i < 2; ++i)
                monitor.view.setGain(gain);
            QCOMPARE(monitor.view.gain(), gain);
            QCOMPARE(monitor.recording.Gain(), gain);
            QCOMPARE(int(RecordingDeviceSettings().Gain), 1);
        }
        QCOMPARE(changes.count(), 2);
        QCOMPARE(echoes.count(), 2);
    }

    void showsTheLevelAndTheDictionary() {
        Monitor monitor;
        QSignalSpy levels(&monitor.view, &MonitorViewModel::changed_SoundLevel);
        for (const int level : {30, 30, 70})
            emit monitor.recording.CurrentLevelChanged(level);
        QCOMPARE(levels, (QList<QVariantList>{{30}, {70}}));
        QCOMPARE(monitor.view.SoundLevel(), 70);
        QCOMPARE(monitor.view.ThemeName(), "");
        monitor.view.set_ThemeName("Терапия 1.0");
        QSignalSpy names(&monitor.view, &MonitorViewModel::changed_ThemeName);
        for (int i = 0; i < 2; ++i)
            emit monitor.asr->selectedThemeChanged();
        QCOMPARE(names, (QList<QVariantList>{{""}}));
    }

    void placesThePartialText() {
        Monitor monitor;
        const QRect old(1, 2, 3, 4);
        const std::pair<int, QRect> nowhere[] = {{0, {10, 20, 300, 200}}, {7, {}}};
        for (const auto &[window, rect] : nowhere) {
            Windows::set(1, old);
            monitor.say("жалобы");
            QVERIFY(monitor.view.TooltipOnInputWindow());
            QCOMPARE(monitor.view.InputWindowRect(), old);

            Windows::set(window, rect);
            monitor.say("жалобы на");
            QVERIFY2(!monitor.view.TooltipOnInputWindow(),
                     window ? "no rectangle of the window" : "no window");
            QCOMPARE(monitor.view.InputWindowRect(), old);
        }
        for (const char *shown : {"жалобы на", ""}) {
            QCOMPARE(monitor.view.ResultText(), shown);
            QCOMPARE(monitor.view.ResultTail(), shown);
            monitor.say("Жалобы на кашель", true);
        }
    }

    void cutsTheEndBetweenCharacters() {
        Monitor monitor;
        // A letter, one beyond 16 bits, and one with two marks.
        for (const QString character : {"я", "\U00010330", "\u043E\u0301\u0323"}) {
            const QString text = character.repeated(1000000 / character.size());
            // Each offset puts the cut at another place of the character.
            for (const QString end : {"", "x", "xx"}) {
                monitor.say(text + end);
                QCOMPARE(monitor.view.ResultText().size(), text.size() + end.size());
                const QString tail = monitor.view.ResultTail();
                QVERIFY(tail.size() > 490 && tail.size() <= 500);
                const int count = (tail.size() - end.size()) / character.size();
                QCOMPARE(tail, character.repeated(count) + end);
            }
        }
    }
};

DESK_TEST_MAIN(TestMonitor, VirtualDesk::Screen)
#include "TestMonitor.moc"
