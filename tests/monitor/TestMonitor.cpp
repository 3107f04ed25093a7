#include "DeskTest.h"
#include "audio/AudioListManager.h"
#include "audio/RecordingDeviceManager.h"
#include "connection/ConnectionManager.h"
#include "connection/WebSocketWorker.h"
#include "core/settings/RecordingDeviceSettings.h"
#include "desktop/TextWriter.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"
#include "viewmodels/MonitorViewModel.h"

#include <QRect>
#include <QSignalSpy>

#include <thread>

namespace {

class NoDevices : public AudioListManager {
public:
    NoDevices() : AudioListManager(QAudio::AudioInput, nullptr) {}

protected:
    ExtAudioDeviceInfo CreateExtDeviceInfo(const QAudioDeviceInfo &) override { return {}; }
    QList<QAudioDeviceInfo> AvailableDevices() override { return {}; }
};

/// The windows of others: which has the focus, and where it stands.
class Windows : public TextWriter {
public:
    static void set(unsigned long focused, const QRect &rect) {
        auto windows = std::make_unique<Windows>();
        windows->m_focused = focused;
        windows->m_rect = rect;
        Writer = std::move(windows);
    }

protected:
    bool writeText(unsigned long, const QString &) override { return true; }
    bool writeKey(unsigned long, const HotKeyInfo &) override { return true; }
    unsigned long getFocusedWindow() override { return m_focused; }
    bool getWindowRect(unsigned long, QRect *rect) override {
        *rect = m_rect;
        return m_rect.isValid();
    }

private:
    unsigned long m_focused = 0;
    QRect m_rect;
};

/// A view model and what it listens to.
struct Monitor {
    NoDevices noDevices;
    RecordingDeviceManager recording{&noDevices, nullptr};
    WebSocketWorker worker;
    ConnectionManager connection{worker.wsClient(), worker.asrManager(), &recording};
    MonitorViewModel view{worker.asrManager(), worker.resultManager(), &recording, &connection};

    void change(RecognitionMode mode, AsrState state) {
        emit worker.asrManager()->currentModeOrStateChanged(mode, state);
    }
    void say(const QString &text, bool isFinal = false) {
        emit worker.resultManager()->resultReady(text, isFinal);
    }
};

QString states(const MonitorViewModel &view) {
    QStringList on;
    for (const char *name : {"Visible", "Loading", "GainVisible", "ThemeVisible", "ResultText"}) {
        if (view.property(name).toBool())
            on << QString::fromLatin1(name);
    }
    return on.join(QLatin1Char(' '));
}

} // namespace

Q_DECLARE_METATYPE(RecognitionMode)

/// What the monitor tells its views.
class TestMonitor : public QObject {
    Q_OBJECT

private slots:
    void cleanup();
    void followsTheRecogniser_data();
    void followsTheRecogniser();
    void followsTheRecogniserFromAnotherThread();
    void storesTheGainOnce_data();
    void storesTheGainOnce();
    void showsTheLevel();
    void startsFromTheBuildProperties();
    void namesTheDictionary();
    void placesThePartialText_data();
    void placesThePartialText();
    void cutsTheEndBetweenCharacters_data();
    void cutsTheEndBetweenCharacters();
};

void TestMonitor::cleanup() {
    Windows::Cleanup();
}

void TestMonitor::followsTheRecogniser_data() {
    QTest::addColumn<RecognitionMode>("mode");
    QTest::addColumn<AsrState>("state");
    QTest::addColumn<QString>("fromHidden");
    QTest::addColumn<QString>("fromShown");
    const QString shown = QStringLiteral("Visible GainVisible ThemeVisible ResultText");
    const QString busy = QStringLiteral("Visible Loading GainVisible ThemeVisible ResultText");
    using Mode = RecognitionMode;
    QTest::newRow("dictation starts") << Mode::Text << AsrState::Starting << "Loading" << busy;
    QTest::newRow("dictation runs") << Mode::Text << AsrState::Started << "Visible" << shown;
    QTest::newRow("dictation ends") << Mode::Text << AsrState::Stopping << "Loading" << busy;
    QTest::newRow("dictation is over") << Mode::Text << AsrState::Stopped << ""
                                       << "";
    QTest::newRow("form") << Mode::TemplatedForm << AsrState::Started << "Visible" << shown;
    QTest::newRow("wizard") << Mode::TemplatedWizardForm << AsrState::Stopped << ""
                            << "";
    QTest::newRow("spoken command") << Mode::VoiceActivation << AsrState::Started << "" << shown;
    QTest::newRow("off") << Mode::Off << AsrState::Stopped << "" << shown;
}

void TestMonitor::followsTheRecogniser() {
    QFETCH(RecognitionMode, mode);
    QFETCH(AsrState, state);
    Monitor monitor;
    QCOMPARE(states(monitor.view), QString());
    monitor.change(mode, state);
    QTEST(states(monitor.view), "fromHidden");

    monitor.view.set_Visible(true);
    monitor.view.set_Loading(false);
    monitor.view.set_GainVisible(true);
    monitor.view.set_ThemeVisible(true);
    monitor.view.set_ResultText(QStringLiteral("слово"));
    monitor.change(mode, state);
    QTEST(states(monitor.view), "fromShown");
}

void TestMonitor::followsTheRecogniserFromAnotherThread() {
    Monitor monitor;
    Qt::HANDLE receiver = nullptr;
    connect(
        &monitor.view, &MonitorViewModel::changed_Visible, this,
        [&receiver] { receiver = QThread::currentThreadId(); }, Qt::DirectConnection);
    std::thread([&monitor] { monitor.change(RecognitionMode::Text, AsrState::Started); }).join();
    QVERIFY(!monitor.view.Visible());
    QTRY_VERIFY(monitor.view.Visible());
    QCOMPARE(receiver, QThread::currentThreadId());
}

void TestMonitor::storesTheGainOnce_data() {
    QTest::addColumn<bool>("fromTheDevice");
    QTest::newRow("moved by the user") << false;
    QTest::newRow("changed on the device") << true;
}

void TestMonitor::storesTheGainOnce() {
    QFETCH(bool, fromTheDevice);
    Monitor monitor;
    QCOMPARE(monitor.view.gain(), monitor.recording.Gain());
    RecordingDeviceSettings().Gain = 0;
    QSignalSpy changes(&monitor.view, &MonitorViewModel::changedGain);
    QSignalSpy echoes(&monitor.recording, &RecordingDeviceManager::GainChanged);
    // Whoever writes the settings again would undo this.
    connect(&monitor.view, &MonitorViewModel::changedGain, this, [] {
        QCOMPARE(int(RecordingDeviceSettings().Gain), 40);
        RecordingDeviceSettings().Gain = 1;
    });
    if (fromTheDevice)
        monitor.recording.set_Gain(40);
    else
        monitor.view.setGain(40);
    monitor.view.setGain(40);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(echoes.count(), 1);
    QCOMPARE(monitor.view.gain(), 40);
    QCOMPARE(monitor.recording.Gain(), 40);
    QCOMPARE(int(RecordingDeviceSettings().Gain), 1);
}

void TestMonitor::showsTheLevel() {
    Monitor monitor;
    QSignalSpy changes(&monitor.view, &MonitorViewModel::changed_SoundLevel);
    for (const int level : {30, 30, 70})
        emit monitor.recording.CurrentLevelChanged(level);
    QCOMPARE(changes, (QList<QVariantList>{{30}, {70}}));
    QCOMPARE(monitor.view.SoundLevel(), 70);
}

void TestMonitor::startsFromTheBuildProperties() {
    const Monitor monitor;
    QCOMPARE(monitor.view.DescColor(), QStringLiteral("#39DEE2"));
    QCOMPARE(monitor.view.LogoHeight(), 32);
    QVERIFY(!monitor.view.AlternateThemeView());
}

void TestMonitor::namesTheDictionary() {
    Monitor monitor;
    QCOMPARE(monitor.view.ThemeName(), QString());
    monitor.view.set_ThemeName(QStringLiteral("Терапия 1.0"));
    QSignalSpy changes(&monitor.view, &MonitorViewModel::changed_ThemeName);
    emit monitor.worker.asrManager()->selectedThemeChanged();
    emit monitor.worker.asrManager()->selectedThemeChanged();
    QCOMPARE(changes, (QList<QVariantList>{{QString()}}));
}

void TestMonitor::placesThePartialText_data() {
    QTest::addColumn<quint64>("window");
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<bool>("isOverIt");
    const QRect place(10, 20, 300, 200);
    QTest::newRow("no window") << quint64(0) << place << false;
    QTest::newRow("window without a rectangle") << quint64(7) << QRect() << false;
    QTest::newRow("window") << quint64(7) << place << true;
}

void TestMonitor::placesThePartialText() {
    QFETCH(quint64, window);
    QFETCH(QRect, rect);
    QFETCH(bool, isOverIt);
    Monitor monitor;
    // Whatever the result before this one left.
    Windows::set(1, QRect(1, 2, 3, 4));
    monitor.say(QStringLiteral("жалобы"));
    QVERIFY(monitor.view.TooltipOnInputWindow());

    Windows::set(window, rect);
    monitor.say(QStringLiteral("жалобы на"));
    QCOMPARE(monitor.view.TooltipOnInputWindow(), isOverIt);
    if (isOverIt)
        QCOMPARE(monitor.view.InputWindowRect(), rect);
    QCOMPARE(monitor.view.ResultText(), QStringLiteral("жалобы на"));
    QCOMPARE(monitor.view.ResultTail(), QStringLiteral("жалобы на"));
    monitor.say(QStringLiteral("Жалобы на кашель"), true);
    QCOMPARE(monitor.view.ResultText(), QString());
    QCOMPARE(monitor.view.ResultTail(), QString());
}

void TestMonitor::cutsTheEndBetweenCharacters_data() {
    QTest::addColumn<QString>("character");
    QTest::newRow("letter") << QStringLiteral("я");
    QTest::newRow("beyond 16 bits") << QStringLiteral("\U00010330");
    QTest::newRow("with an accent") << QStringLiteral("\u043E\u0301");
    QTest::newRow("with two marks") << QStringLiteral("\u043E\u0301\u0323");
}

void TestMonitor::cutsTheEndBetweenCharacters() {
    QFETCH(QString, character);
    Monitor monitor;
    const QString text = character.repeated(1000000 / character.size());
    // Each offset puts the cut at another place of the character.
    for (int letters = 0; letters < character.size(); ++letters) {
        const QString end = QString(letters, QLatin1Char('x'));
        monitor.say(text + end);
        QCOMPARE(monitor.view.ResultText().size(), text.size() + letters);
        const QString tail = monitor.view.ResultTail();
        QVERIFY(tail.size() > 490 && tail.size() <= 500);
        QCOMPARE(tail, character.repeated(tail.size() / character.size()) + end);
    }
}

DESK_TEST_MAIN(TestMonitor, VirtualDesk::Screen)
#include "TestMonitor.moc"
