#include "DeskTest.h"
#include "audio/PulseAudioManager.h"
#include "audio/RecordingDeviceManager.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QSignalSpy>

/// The program is started before PulseAudio. In an executable of its own, because Qt connects to
/// PulseAudio once in a process.
class TestLateSound : public QObject {
    Q_OBJECT

private slots:
    void recordsOnceThereIsPulseAudio();
};

void TestLateSound::recordsOnceThereIsPulseAudio() {
    RecordingDeviceSettings().Name = "mic";
    PulseAudioManager manager;
    RecordingDeviceManager *recording = manager.RecordingDevice();
    QSignalSpy lists(recording, &RecordingDeviceManager::DeviceListChanged);
    QSignalSpy selected(recording, &RecordingDeviceManager::SelectedIndexChanged);
    manager.Start();
    QVERIFY(lists.wait(patienceMs));
    QVERIFY(recording->DeviceList().isEmpty());
    QCOMPARE(recording->SelectedIndex(), -1);
    QVERIFY(!manager.GetInputDeviceInfo("mic").found);
    QVERIFY(!selected.wait(2500));

    desk().startSound();
    QSignalSpy blocks(recording, &RecordingDeviceManager::SoundAvailable);
    QVERIFY(blocks.wait(10000));
    QCOMPARE(recording->CurrentDevice().deviceName(), "mic");
}

DESK_CORE_TEST_MAIN(TestLateSound)
#include "TestLateSound.moc"
