#include "DeskTest.h"
#include "Files.h"
#include "Listener.h"
#include "audio/PlaybackDeviceManager.h"
#include "audio/PulseAudioManager.h"
#include "core/settings/PlaybackDeviceSettings.h"

#include <QFile>
#include <QSignalSpy>

#include <thread>

namespace {
constexpr int bytesPerSecond = 2 * 22050;

/// Sound in which every piece tells its place; no sample of it is 0.
QByteArray noise(int seconds) {
    QByteArray sound(seconds * bytesPerSecond, Qt::Uninitialized);
    auto *samples = reinterpret_cast<qint16 *>(sound.data());
    quint32 state = 1;
    for (int i = 0; i < sound.size() / 2; ++i) {
        state = state * 1664525 + 1013904223;
        samples[i] = static_cast<qint16>((state >> 16) | 1);
    }
    return sound;
}
/// Whether the sound is what was sent: to the bit, or with PipeWire, which mixes at a rate of its
/// own, without a gap of 10 ms.
bool isWhole(const QByteArray &heard, const QByteArray &sent) {
    if (!desk().hasPipeWire())
        return heard == sent;
    const auto *samples = reinterpret_cast<const qint16 *>(heard.constData());
    int silence = 0;
    int longest = 0;
    for (int i = 0; i < heard.size() / 2; ++i) {
        silence = samples[i] == 0 ? silence + 1 : 0;
        longest = qMax(longest, silence);
    }
    return longest < bytesPerSecond / 2 / 100;
}
} // namespace

/// Plays into a real PulseAudio; what counts is what its monitor hears.
class TestPlayback : public QObject {
    Q_OBJECT

private slots:
    void init() {
        PlaybackDeviceSettings().remove(QString());
        m_modules << plugExactSpeaker(desk(), QStringLiteral("exact"));
    }

    void cleanup() {
        m_manager.reset();
        for (const QString &module : qAsConst(m_modules))
            desk().unloadModule(module);
        m_modules.clear();
    }

    void playsInFullAndInOrder_data() {
        columns<int>("blockBytes");
        QTest::newRow("one block of six seconds") << 6 * bytesPerSecond;
        QTest::newRow("blocks of 20 ms") << 882;
        QTest::newRow("split in the middle of samples") << 4095;
    }

    void playsInFullAndInOrder() {
        QFETCH(int, blockBytes);
        start(QStringLiteral("exact"));
        Listener listener(desk(), QStringLiteral("exact"));
        playback()->playSound(Listener::leadIn());
        const QByteArray all = noise(6);
        for (int i = 0; i < all.size(); i += blockBytes)
            playback()->playSound(all.mid(i, blockBytes));
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().size() >= all.size(), patienceMs);
        const QByteArray heard = listener.sound().left(all.size());
        const auto differs = std::mismatch(heard.begin(), heard.end(), all.begin());
        QVERIFY2(isWhole(heard, all),
                 qPrintable(QStringLiteral("the first %1 of %2 bytes are right")
                                .arg(differs.first - heard.begin())
                                .arg(all.size())));
        QTRY_COMPARE(playback()->CurrentLevel(), 0);
    }

    void goesOnAfterTheDevice_data() {
        columns<QString>("lost");
        row("unplugged", QStringLiteral("speaker"));
        row("no device for a while", QStringLiteral("devices"));
        row("PulseAudio is restarted", QStringLiteral("server"));
    }

    void goesOnAfterTheDevice() {
        QFETCH(QString, lost);
        start(QStringLiteral("exact"));
        const QByteArray sent = noise(6);
        {
            Listener first(desk(), QStringLiteral("exact"));
            playback()->playSound(sent);
            QTRY_VERIFY_WITH_TIMEOUT(first.sound().size() >= bytesPerSecond, patienceMs);
        }
        if (lost == "speaker") {
            desk().unloadModule(m_modules.takeLast());
        } else {
            desk().stopSound();
            m_modules.clear();
            if (lost == "devices")
                playback()->playSound(noise(1));
            desk().startSound();
        }
        QTRY_COMPARE_WITH_TIMEOUT(playback()->CurrentDevice().deviceName(),
                                  QStringLiteral("speaker"), patienceMs);
        Listener second(desk(), QStringLiteral("speaker"));
        // What the lost device had taken is lost with it, the rest is played, and what comes then.
        QTRY_VERIFY_WITH_TIMEOUT(second.sound().size() >= 3 * bytesPerSecond, patienceMs);
        playback()->playSound(noise(6));
        QTRY_VERIFY_WITH_TIMEOUT(second.sound().size() >= 8 * bytesPerSecond, patienceMs);
    }

    void playsFiles_data() {
        columns<QByteArray, QByteArray>("file", "heard");
        const QByteArray sound = noise(1);
        QTest::newRow("a header is passed over") << QByteArray(44, 'h') + sound << sound;
        QTest::newRow("shorter than a header") << QByteArray(43, 'h') << QByteArray();
        QTest::newRow("missing") << QByteArray() << QByteArray();
    }

    void playsFiles() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, heard);
        start(QStringLiteral("exact"));
        Listener listener(desk(), QStringLiteral("exact"));
        const QString name = desk().folder() + QStringLiteral("/sound.wav");
        QFile::remove(name);
        if (!file.isEmpty())
            QVERIFY(save(name, file));
        const QByteArray after = noise(2).right(bytesPerSecond);
        // Speech may be split within a sample, and the file come between.
        playback()->playSound(Listener::leadIn() + after.left(1));
        playback()->playSoundFile(name);
        playback()->playSound(after.mid(1));
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().size() >= heard.size() + after.size(),
                                 patienceMs);
        QVERIFY(isWhole(listener.sound().left(heard.size() + after.size()), heard + after));
    }

    void volumeGoesBothWays() {
        start(QStringLiteral("exact"));
        QCOMPARE(playback()->Volume(), 100);
        QSignalSpy changed(playback(), &PlaybackDeviceManager::VolumeChanged);
        std::thread([this] { playback()->set_Volume(40); }).join();
        QVERIFY(changed.wait(patienceMs));
        QCOMPARE(changed.takeFirst(), QVariantList{40});
        desk().run("pactl", {"set-sink-input-volume", stream(), "0.7"});
        QVERIFY(changed.wait(patienceMs));
        QCOMPARE(changed.takeFirst(), QVariantList{70});
        playback()->set_IsTrackChanges(true);
        playback()->SaveSettings();
        QCOMPARE(PlaybackDeviceSettings().Volume.get(), 70);
        QCOMPARE(PlaybackDeviceSettings().TrackChanges.get(), true);
        QCOMPARE(PlaybackDeviceSettings().Name.get(), QStringLiteral("exact"));
    }

    void withoutADeviceOnlyTheLevelIsTold() {
        start(QStringLiteral("exact"));
        const QByteArray dropped = noise(1);
        // The device goes in the middle of a sample.
        playback()->playSound(dropped.left(1));
        playback()->set_SelectedIndex(-1);
        QSignalSpy levels(playback(), &PlaybackDeviceManager::CurrentLevelChanged);
        playback()->playSound(dropped.mid(1));
        QCOMPARE(levels.size(), 1);
        QVERIFY(levels.first().first().toInt() > 50);
        Listener listener(desk(), QStringLiteral("exact"));
        playback()->SelectDevice(QStringLiteral("exact"));
        const QByteArray played = noise(2).right(bytesPerSecond);
        playback()->playSound(Listener::leadIn());
        playback()->playSound(played);
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().size() >= played.size(), patienceMs);
        QVERIFY2(isWhole(listener.sound().left(played.size()), played),
                 "what was dropped is not played later");
    }

private:
    void start(const QString &speaker) {
        PlaybackDeviceSettings().Name = speaker;
        m_manager = std::make_unique<PulseAudioManager>();
        QSignalSpy selected(playback(), &PlaybackDeviceManager::SelectedIndexChanged);
        m_manager->Start();
        QVERIFY(selected.wait(patienceMs));
        QCOMPARE(playback()->CurrentDevice().deviceName(), speaker);
        QTRY_VERIFY(!stream().isEmpty());
    }

    PlaybackDeviceManager *playback() const { return m_manager->PlaybackDevice(); }
    /// What the server knows this program's stream by.
    static QString stream() {
        return desk()
            .run("pactl", {"list", "short", "sink-inputs"})
            .split('\n')
            .filter("22050Hz")
            .value(0)
            .section('\t', 0, 0);
    }

    std::unique_ptr<PulseAudioManager> m_manager;
    QStringList m_modules;
};

int main(int argc, char **argv) {
    endProcess(runOnDesk<QCoreApplication, TestPlayback>(argc, argv, VirtualDesk::Sound));
}

#include "TestPlayback.moc"
