#include "DeskTest.h"
#include "SineWave.h"
#include "audio/AudioListManager.h"
#include "audio/PulseAudioManager.h"
#include "audio/RecordingDeviceManager.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QSignalSpy>

#include <algorithm>
#include <stdexcept>
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

/// Whatever is recorded, taken over on this thread.
class Recorder : public QObject {
public:
    explicit Recorder(RecordingDeviceManager *recording) {
        connect(recording, &RecordingDeviceManager::SoundAvailable, this,
                [this](const QByteArray &block) { blocks << block; });
    }
    bool hears(int timeoutMs = patienceMs) {
        return QTest::qWaitFor([this] { return !blocks.isEmpty(); }, timeoutMs);
    }

    QList<QByteArray> blocks;
};

/// The longest time that the main thread was kept from its events since this was made.
class Pulse : public QObject {
public:
    Pulse() {
        startTimer(10, Qt::PreciseTimer);
        m_sinceBeat.start();
    }
    qint64 longestMs() const { return qMax(m_longestMs, m_sinceBeat.elapsed()); }

protected:
    void timerEvent(QTimerEvent *) override {
        m_longestMs = qMax(m_longestMs, m_sinceBeat.restart());
    }

private:
    QElapsedTimer m_sinceBeat;
    qint64 m_longestMs = 0;
};

QString plugMicrophone(const QString &name) {
    return desk().loadModule({"module-remap-source", "master=micfeed.monitor",
                              "source_name=" + name, "source_properties=device.description=Other"});
}
} // namespace

/// Records from a real PulseAudio whose devices come, go and fail.
class TestRecording : public QObject {
    Q_OBJECT

private slots:
    void init() {
        RecordingDeviceSettings().remove(QString());
        m_manager = nullptr;
    }

    void cleanup() {
        m_manager.reset();
        for (const QString &module : qAsConst(m_modules))
            desk().unloadModule(module);
        m_modules.clear();
    }

    void lists_data() {
        columns<bool, QStringList>("useMonitors", "inputs");
        row("microphones", false, QStringList{"mic=Microphone"});
        row("microphones and monitors", true,
            QStringList{"mic=Microphone", "micfeed.monitor=Monitor of Feed",
                        "speaker.monitor=Monitor of Speaker"});
    }

    void lists() {
        QFETCH(bool, useMonitors);
        RecordingDeviceSettings().UseMonitors = useMonitors;
        start();
        QTEST(describe(m_manager->InputListManager()->DeviceList()), "inputs");
        QTRY_COMPARE(describe(m_manager->OutputListManager()->DeviceList()),
                     (QStringList{"micfeed=Feed", "speaker=Speaker"}));
    }

    void recordsWhatIsSaid_data() {
        QTest::addColumn<bool>("useNotifyEvent");
        row("blocks taken when they are ready", false);
        row("blocks taken at the device's intervals", true);
    }

    void recordsWhatIsSaid() {
        QFETCH(bool, useNotifyEvent);
        RecordingDeviceSettings().UseNotifyEvent = useNotifyEvent;
        start();
        Recorder recorder(recording());
        QVERIFY(recorder.hears());
        QProcess *speaker = desk().speak(SineWave(440, 8000, 10).save(desk().folder() + "/a.wav"));
        // 8000 sin is 5093 in the mean, so a whole block sums up to log10(5093) / 4.5154 = 82
        // percent; with PipeWire it is 85, whose one channel out of two is louder by the root of
        // two.
        QTRY_VERIFY(recording()->CurrentLevel() > 80 && recording()->CurrentLevel() < 87);
        recorder.blocks.clear();
        QTRY_VERIFY_WITH_TIMEOUT(recorder.blocks.size() >= 5, patienceMs);
        desk().end(speaker);
        QByteArray sound;
        QVector<int> sizes;
        for (const QByteArray &block : qAsConst(recorder.blocks)) {
            sound += block;
            sizes << block.size();
        }
        // A tone in one piece: a lost sample would spread it over other pitches.
        QVERIFY2(SineWave::share(sound, 440) > 0.95, "the sound is not the tone that was played");
        QVERIFY2(SineWave::share(sound, 700) < 0.05, "a tone is heard that was not played");
        // Pieces of 200 ms, and the rest of what the server had ready.
        std::sort(sizes.begin(), sizes.end());
        const int median = sizes[sizes.size() / 2];
        QVERIFY2(median >= pieceSize && median < 2 * pieceSize,
                 qPrintable(QString::number(median)));
    }

    void mutedBlocksAreThrownAway() {
        start();
        Recorder recorder(recording());
        QVERIFY(recorder.hears());
        recording()->setMuted(true);
        QCoreApplication::processEvents();
        recorder.blocks.clear();
        QVERIFY(!recorder.hears(1000));
        recording()->setMuted(false);
        QVERIFY(recorder.hears());
    }

    void gainGoesBothWays() {
        start();
        QCOMPARE(recording()->Gain(), 100);
        QSignalSpy changed(recording(), &RecordingDeviceManager::GainChanged);
        std::thread([this] { recording()->set_Gain(0); }).join();
        QVERIFY(changed.wait(patienceMs));
        QCOMPARE(changed.takeFirst(), QVariantList{0});
        QVERIFY(hears());
        QTRY_VERIFY(desk().run("pactl", {"list", "source-outputs"}).contains(" 0%"));
        // Not saved: the next device gets the gain all the same.
        recording()->SelectDevice("mic");
        QVERIFY(hears());
        QCOMPARE(recording()->Gain(), 0);
        QVERIFY(changed.isEmpty());
        desk().run("pactl", {"set-source-output-volume", stream(), "0.294"});
        QVERIFY(changed.wait(patienceMs));
        QCOMPARE(changed.first(), QVariantList{29});
        QCOMPARE(recording()->Gain(), 29);
    }

    void savesTheChoice() {
        start();
        recording()->set_Gain(70);
        recording()->set_IsTrackChanges(true);
        recording()->SaveSettings();
        QVERIFY2(RecordingDeviceSettings().Name.get().isEmpty(), "nobody has chosen the first one");
        QCOMPARE(RecordingDeviceSettings().Gain.get(), 70);
        QCOMPARE(RecordingDeviceSettings().TrackChanges.get(), true);
        recording()->SelectDevice("mic");
        recording()->set_SelectedIndex(-1);
        recording()->SaveSettings();
        QCOMPARE(RecordingDeviceSettings().Name.get(), "mic");
    }

    void wantedMicrophoneGivesWayAndComesBack() {
        // Plugged a moment after the start.
        RecordingDeviceSettings().Name = "other";
        start();
        QTRY_COMPARE(current(), "mic");
        QVERIFY(hears());
        recording()->SaveSettings();
        QCOMPARE(RecordingDeviceSettings().Name.get(), "other");
        QString module = plugMicrophone("other");
        for (int i = 0; i < 2; ++i) {
            QTRY_COMPARE(current(), "other");
            QCOMPARE(recording()->DeviceList().at(recording()->SelectedIndex()).deviceName(),
                     "other");
            QVERIFY(hears());
            desk().unloadModule(module);
            QTRY_COMPARE(current(), "mic");
            QCOMPARE(recording()->SelectedIndex(), 0);
            QVERIFY(hears());
            module = plugMicrophone("other");
        }
        m_modules << module;
    }

    void keepsUpWithABurst() {
        start();
        for (int i = 0; i < 6; ++i)
            m_modules << plugMicrophone(QStringLiteral("other%1").arg(i));
        QTRY_COMPARE(recording()->DeviceList().size(), 7);
        while (m_modules.size() > 1)
            desk().unloadModule(m_modules.takeFirst());
        QTRY_COMPARE(describe(recording()->DeviceList()),
                     (QStringList{"mic=Microphone", "other5=Other"}));
    }

    void killedStreamIsOpenedAgain() {
        if (desk().hasPipeWire())
            QSKIP("only PulseAudio can be told to kill a stream");
        m_modules << desk().loadModule({"module-cli-protocol-unix"});
        start();
        QVERIFY(hears());
        QSignalSpy failed(recording(), &RecordingDeviceManager::DeviceError);
        desk().run("pacmd", {"kill-source-output", stream()});
        QVERIFY(failed.wait(patienceMs));
        QVERIFY(hears());
    }

    void survivesTheServer_data() {
        columns<bool, bool>("isThereAtTheStart", "isBare");
        row("restarted with its devices", true, false);
        row("restarted, and the devices come later", true, true);
        row("started after the program", false, false);
        row("started after the program, and the devices come later", false, true);
    }

    void survivesTheServer() {
        QFETCH(bool, isThereAtTheStart);
        QFETCH(bool, isBare);
        RecordingDeviceSettings().Name = "other";
        if (isThereAtTheStart) {
            plugMicrophone("other");
            start();
            QVERIFY(hears());
        }
        desk().stopSound();
        if (!isThereAtTheStart) {
            start();
            QCOMPARE(recording()->SelectedIndex(), -1);
        }
        for (int round = 0; round < 2; ++round) {
            QSignalSpy lists(recording(), &RecordingDeviceManager::DeviceListChanged);
            desk().startBareSound();
            if (isBare && (isThereAtTheStart || round > 0)) {
                QVERIFY(lists.wait(patienceMs));
                QVERIFY2(recording()->DeviceList().isEmpty(), "nothing stands in for a device");
                QCOMPARE(recording()->SelectedIndex(), -1);
            }
            desk().plugDevices();
            if (isBare) {
                QTRY_COMPARE(current(), "mic");
                QVERIFY(hears());
            }
            plugMicrophone("other");
            QTRY_COMPARE(current(), "other");
            QVERIFY(hears());
            QCOMPARE(describe(recording()->DeviceList()),
                     (QStringList{"mic=Microphone", "other=Other"}));
            QSignalSpy stopped(recording(), &RecordingDeviceManager::DeviceStopped);
            desk().stopSound();
            QVERIFY(stopped.wait(patienceMs));
        }
        // It ends while the server is away.
        m_manager.reset();
        desk().startSound();
    }

    void hungServerHoldsNobody_data() {
        columns<int>("hangMs");
        row("for a moment", 1000);
        row("longer than an answer may take", 9000);
        row("longer than libpulse itself waits", 40000);
    }

    void hungServerHoldsNobody() {
        QFETCH(int, hangMs);
        m_modules << plugMicrophone("other");
        RecordingDeviceSettings().Name = "mic";
        start();
        QVERIFY(hears());
        desk().hangSound();
        QElapsedTimer sinceHang;
        sinceHang.start();
        const Pulse pulse;
        // The answer to this is what the program does not get.
        recording()->SelectDevice("other");
        recording()->set_Gain(50);
        QTRY_VERIFY_WITH_TIMEOUT(sinceHang.hasExpired(hangMs), hangMs + patienceMs);
        desk().resumeSound();
        Recorder recorder(recording());
        QElapsedTimer sinceReturn;
        sinceReturn.start();
        QVERIFY(recorder.hears());
        QVERIFY2(sinceReturn.elapsed() < 5000, qPrintable(QString::number(sinceReturn.elapsed())));
        QCOMPARE(current(), "other");
        desk().hangSound();
        recording()->SelectDevice("mic");
        QElapsedTimer sinceEnd;
        sinceEnd.start();
        m_manager.reset();
        desk().resumeSound();
        QVERIFY2(sinceEnd.elapsed() < 1000, qPrintable(QString::number(sinceEnd.elapsed())));
        QVERIFY2(pulse.longestMs() < 1000, qPrintable(QString::number(pulse.longestMs())));
    }

    void survivesTheSessionManager() {
        if (!desk().hasPipeWire())
            QSKIP("PulseAudio has none");
        start();
        for (int i = 0; i < 3; ++i) {
            QVERIFY(hears());
            // The devices of the manager go with it, and the server has its stand-in meanwhile.
            desk().unplugDevices();
            QTRY_COMPARE(recording()->SelectedIndex(), -1);
            desk().restartSessionManager();
            try {
                desk().plugDevices();
            } catch (const std::runtime_error &error) {
                // Now and then the manager never activates a new node, and the server with it
                // hangs.
                qInfo("The sound server hangs, it is restarted: %s", error.what());
                desk().stopSound();
                desk().startSound();
            }
            QTRY_COMPARE(current(), "mic");
        }
        QVERIFY(hears());
    }

    void stopsWithoutStart() {
        m_manager = std::make_unique<PulseAudioManager>();
        m_manager->Stop();
        QCOMPARE(recording()->SelectedIndex(), -1);
        start();
        QVERIFY(hears());
        QSignalSpy stopped(recording(), &RecordingDeviceManager::DeviceStopped);
        m_manager->Stop();
        QTRY_COMPARE(stopped.size(), 1);
        m_manager->Stop();
    }

private:
    /// Starts the sound as the program does, and waits until a device is open.
    void start() {
        m_manager = std::make_unique<PulseAudioManager>();
        QSignalSpy selected(recording(), &RecordingDeviceManager::SelectedIndexChanged);
        m_manager->Start();
        QVERIFY(selected.wait(patienceMs));
    }

    RecordingDeviceManager *recording() const { return m_manager->RecordingDevice(); }
    QString current() const { return recording()->CurrentDevice().deviceName(); }
    bool hears() const { return Recorder(recording()).hears(); }
    /// What the server knows this program's stream by.
    static QString stream() {
        return desk()
            .run("pactl", {"list", "short", "source-outputs"})
            .split('\n')
            .filter("16000Hz")
            .value(0)
            .section('\t', 0, 0);
    }

    std::unique_ptr<PulseAudioManager> m_manager;
    QStringList m_modules;
};

int main(int argc, char **argv) {
    endProcess(runOnDesk<QCoreApplication, TestRecording>(argc, argv, VirtualDesk::Sound));
}

#include "TestRecording.moc"
