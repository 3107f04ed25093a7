#include "DeskTest.h"
#include "Files.h"
#include "SineWave.h"
#include "audio/PulseAudioListManager.h"
#include "audio/PulseAudioManager.h"
#include "audio/RecordingDeviceManager.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QAudioInput>
#include <QSignalSpy>

#include <algorithm>
#include <csignal>
#include <thread>

namespace {
constexpr int pieceSize = 6400; // 200 ms

QStringList describe(const QList<ExtAudioDeviceInfo> &devices) {
    QStringList result;
    for (const ExtAudioDeviceInfo &device : devices)
        result << device.deviceName() + '=' + device.Description();
    result.sort();
    return result;
}

QString plugMicrophone(const QString &name) {
    return desk().loadModule({"module-remap-source", "master=micfeed.monitor",
                              "source_name=" + name, "source_properties=device.description=Other"});
}
} // namespace

/// Records from a real PulseAudio whose devices come, go and fail.
class TestRecording : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void lists_data();
    void lists();
    void recordsWhatIsSaid_data();
    void recordsWhatIsSaid();
    void mutedBlocksAreThrownAway();
    void gainGoesBothWays();
    void savesTheChoice();
    void pluggedMicrophone_data();
    void pluggedMicrophone();
    void wantedMicrophoneGivesWayToTheNext();
    void keepsUpWithABurst();
    void killedStreamIsOpenedAgain();
    void survivesARestartOfPulseAudio_data();
    void survivesARestartOfPulseAudio();
    void lookUpEndsWhenPulseAudioDies();
    void endsWhilePulseAudioIsAway();
    void stopsWithoutStart();

private:
    void start();
    RecordingDeviceManager *recording() const { return m_manager->RecordingDevice(); }
    bool hears() const {
        return QSignalSpy(recording(), &RecordingDeviceManager::SoundAvailable).wait(patienceMs);
    }
    QAudioInput *input() const { return recording()->findChild<QAudioInput *>(); }

    std::unique_ptr<PulseAudioManager> m_manager;
    QStringList m_modules;
};

void TestRecording::init() {
    RecordingDeviceSettings().remove(QString());
    m_manager = nullptr;
}

void TestRecording::cleanup() {
    m_manager.reset();
    for (const QString &module : qAsConst(m_modules))
        desk().unloadModule(module);
    m_modules.clear();
}

/// Starts the sound as the program does, and waits until a device is open.
void TestRecording::start() {
    m_manager = std::make_unique<PulseAudioManager>();
    QSignalSpy selected(recording(), &RecordingDeviceManager::SelectedIndexChanged);
    m_manager->Start();
    QVERIFY(selected.wait(patienceMs));
    QVERIFY(input());
}

void TestRecording::lists_data() {
    columns<bool, QStringList>("useMonitors", "inputs");
    row("microphones", false, QStringList{"mic=Microphone"});
    row("microphones and monitors", true,
        QStringList{"mic=Microphone", "micfeed.monitor=Monitor of Null Output",
                    "speaker.monitor=Monitor of Speaker"});
}

void TestRecording::lists() {
    QFETCH(bool, useMonitors);
    RecordingDeviceSettings().UseMonitors = useMonitors;
    start();
    QTEST(describe(m_manager->InputListManager()->DeviceList()), "inputs");
    QTRY_COMPARE(describe(m_manager->OutputListManager()->DeviceList()),
                 (QStringList{"micfeed=Null Output", "speaker=Speaker"}));
    const PulseDeviceInfo monitor = m_manager->GetDeviceInfo(QAudio::AudioInput, "speaker.monitor");
    QVERIFY(monitor.found && monitor.monitor);
    QVERIFY(!m_manager->GetDeviceInfo(QAudio::AudioOutput, "no such device").found);
}

void TestRecording::recordsWhatIsSaid_data() {
    QTest::addColumn<bool>("useNotifyEvent");
    row("blocks taken when they are ready", false);
    row("blocks taken at the device's intervals", true);
}

void TestRecording::recordsWhatIsSaid() {
    QFETCH(bool, useNotifyEvent);
    RecordingDeviceSettings().UseNotifyEvent = useNotifyEvent;
    start();
    QSignalSpy blocks(recording(), &RecordingDeviceManager::SoundAvailable);
    QSignalSpy levels(recording(), &RecordingDeviceManager::CurrentLevelChanged);
    QVERIFY(blocks.wait(patienceMs));
    QProcess *speaker = desk().speak(SineWave(440, 8000, 4).save(desk().folder() + "/a.wav"));
    // 8000 sin is 5093 in the mean, so a whole block sums up to log10(5093) / 4.5154 = 82 percent.
    QTRY_COMPARE_WITH_TIMEOUT(recording()->CurrentLevel(), 82, patienceMs);
    blocks.clear();
    QTRY_VERIFY_WITH_TIMEOUT(blocks.size() >= 5, patienceMs);
    desk().end(speaker);
    QByteArray sound;
    QVector<int> sizes;
    for (const QList<QVariant> &block : qAsConst(blocks)) {
        sound += block.first().toByteArray();
        sizes << block.first().toByteArray().size();
    }
    // A tone in one piece: a lost sample would spread it over other pitches.
    QVERIFY2(SineWave::share(sound, 440) > 0.95, "the sound is not the tone that was played");
    QVERIFY2(SineWave::share(sound, 700) < 0.05, "a tone is heard that was not played");
    // Whole pieces of 200 ms, give or take what PulseAudio's resampling does to each: a busy
    // machine hands over several at once.
    QCOMPARE(input()->bufferSize(), pieceSize);
    QCOMPARE(input()->notifyInterval(), 200);
    std::sort(sizes.begin(), sizes.end());
    const int median = sizes[sizes.size() / 2];
    const int pieces = qRound(double(median) / pieceSize);
    QVERIFY2(pieces >= 1 && qAbs(median - pieces * pieceSize) <= pieces * 32,
             qPrintable(QString::number(median)));
    QVERIFY(!levels.isEmpty());
}

void TestRecording::mutedBlocksAreThrownAway() {
    start();
    QSignalSpy blocks(recording(), &RecordingDeviceManager::SoundAvailable);
    QVERIFY(blocks.wait(patienceMs));
    recording()->setMuted(true);
    QVERIFY(!blocks.wait(1000));
    recording()->setMuted(false);
    QVERIFY(blocks.wait(patienceMs));
}

void TestRecording::gainGoesBothWays() {
    start();
    QCOMPARE(recording()->Gain(), 100);
    QSignalSpy changed(recording(), &RecordingDeviceManager::GainChanged);
    std::thread([this] { recording()->set_Gain(0); }).join();
    QVERIFY(changed.wait(patienceMs));
    QCOMPARE(changed.takeFirst(), QVariantList{0});
    QCOMPARE(input()->volume(), 0.0);
    QVERIFY(hears());
    // Not saved: the next device gets the gain all the same.
    recording()->SelectDevice("mic");
    QCOMPARE(recording()->Gain(), 0);
    QVERIFY(changed.isEmpty());
    QVERIFY(hears());
    input()->setVolume(0.294);
    QVERIFY(changed.wait(patienceMs));
    QCOMPARE(changed.first(), QVariantList{29});
    QCOMPARE(recording()->Gain(), 29);
}

void TestRecording::savesTheChoice() {
    start();
    recording()->set_Gain(70);
    recording()->set_IsTrackChanges(true);
    recording()->SaveSettings();
    QCOMPARE(RecordingDeviceSettings().Name.get(), "mic");
    QCOMPARE(RecordingDeviceSettings().Gain.get(), 70);
    QCOMPARE(RecordingDeviceSettings().TrackChanges.get(), true);
    recording()->set_SelectedIndex(-1);
    recording()->SaveSettings();
    QCOMPARE(RecordingDeviceSettings().Name.get(), "mic");
}

void TestRecording::pluggedMicrophone_data() {
    QTest::addColumn<bool>("tracking");
    row("is left alone", false);
    row("is switched to", true);
}

void TestRecording::pluggedMicrophone() {
    QFETCH(bool, tracking);
    start();
    recording()->set_IsTrackChanges(tracking);
    const QAudioInput *before = input();
    m_modules << plugMicrophone("other");
    QTRY_COMPARE(recording()->DeviceList().size(), 2);
    QCOMPARE(recording()->CurrentDevice().deviceName(), tracking ? "other" : "mic");
    QVERIFY(hears());
    QCOMPARE(input() != before, tracking);
}

void TestRecording::wantedMicrophoneGivesWayToTheNext() {
    const QString module = plugMicrophone("other");
    RecordingDeviceSettings().Name = "other";
    start();
    QCOMPARE(recording()->CurrentDevice().deviceName(), "other");
    QCOMPARE(recording()->DeviceList().size(), 2);
    QVERIFY(hears());
    desk().unloadModule(module);
    QTRY_COMPARE(recording()->CurrentDevice().deviceName(), "mic");
    QCOMPARE(recording()->SelectedIndex(), 0);
    QVERIFY(hears());
}

void TestRecording::keepsUpWithABurst() {
    start();
    for (int i = 0; i < 6; ++i)
        m_modules << plugMicrophone(QStringLiteral("other%1").arg(i));
    QTRY_COMPARE(recording()->DeviceList().size(), 7);
    while (m_modules.size() > 1)
        desk().unloadModule(m_modules.takeFirst());
    QTRY_COMPARE(describe(recording()->DeviceList()),
                 (QStringList{"mic=Microphone", "other5=Other"}));
}

void TestRecording::killedStreamIsOpenedAgain() {
    m_modules << desk().loadModule({"module-cli-protocol-unix"});
    start();
    QVERIFY(hears());
    const QStringList streams =
        desk().run("pactl", {"list", "short", "source-outputs"}).split('\n');
    const QStringList ours = streams.filter("16000Hz");
    QCOMPARE(ours.size(), 1);
    desk().run("pacmd", {"kill-source-output", ours.first().section('\t', 0, 0)});
    QSignalSpy failed(recording(), &RecordingDeviceManager::DeviceError);
    QVERIFY(failed.wait(patienceMs));
    QVERIFY(hears());
}

void TestRecording::survivesARestartOfPulseAudio_data() {
    QTest::addColumn<bool>("isLong");
    row("at once", false);
    row("after a while", true);
}

void TestRecording::survivesARestartOfPulseAudio() {
    QFETCH(bool, isLong);
    m_modules << plugMicrophone("other");
    start();
    QTRY_COMPARE(recording()->DeviceList().size(), 2);
    recording()->SelectDevice("mic");
    QVERIFY(hears());
    m_modules.clear();

    desk().stopSound();
    if (isLong) {
        // Longer than Qt itself tries to reconnect.
        QElapsedTimer down;
        down.start();
        QTRY_VERIFY_WITH_TIMEOUT(down.elapsed() > 5000, patienceMs);
    }
    desk().startSound();
    QVERIFY(hears());
    QTRY_COMPARE(describe(recording()->DeviceList()), QStringList{"mic=Microphone"});
    QCOMPARE(recording()->CurrentDevice().deviceName(), "mic");
    m_modules << plugMicrophone("other");
    QTRY_COMPARE(recording()->DeviceList().size(), 2);
}

void TestRecording::lookUpEndsWhenPulseAudioDies() {
    start();
    const pid_t server =
        bytesOf(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/pulse/pid").trimmed().toInt();
    QVERIFY(server > 1);
    QSignalSpy lists(recording(), &RecordingDeviceManager::DeviceListChanged);
    QCOMPARE(kill(server, SIGSTOP), 0);
    m_manager->InputListManager()->asyncUpdateDeviceList(0);
    QVERIFY2(!lists.wait(500), "a list came without an answer");
    QCOMPARE(kill(server, SIGKILL), 0);
    desk().stopSound();
    desk().startSound();
    m_modules << plugMicrophone("other");
    QTRY_COMPARE(recording()->DeviceList().size(), 2);
    QVERIFY(hears());
}

void TestRecording::endsWhilePulseAudioIsAway() {
    start();
    QSignalSpy attempts(recording(), &RecordingDeviceManager::DeviceStopped);
    desk().stopSound();
    QVERIFY(attempts.wait(patienceMs));
    m_manager.reset();
    desk().startSound();
}

void TestRecording::stopsWithoutStart() {
    m_manager = std::make_unique<PulseAudioManager>();
    m_manager->Stop();
    QCOMPARE(recording()->SelectedIndex(), -1);
    start();
    m_manager->Stop();
    QCOMPARE(input()->state(), QAudio::StoppedState);
    m_manager->Stop();
}

int main(int argc, char **argv) {
    endProcess(runOnDesk<QCoreApplication, TestRecording>(argc, argv, VirtualDesk::Sound));
}

#include "TestRecording.moc"
