#include "DeskTest.h"
#include "audio/AudioDeviceManagerBase.h"
#include "audio/AudioListManager.h"
#include "audio/LevelCalc.h"
#include "audio/PulseAudioListManager.h"
#include "audio/PulseAudioManager.h"

#include <QHash>
#include <QSignalSpy>

#include <pulse/introspect.h>
#include <thread>
#include <vector>

namespace {
using Names = QStringList;
using Samples = QVector<short>;

/// A list whose devices the test names: real ones, in the order told.
class ScriptedList : public AudioListManager {
public:
    ScriptedList() : AudioListManager(QAudio::AudioOutput, nullptr) {}

    void plug(const Names &names) {
        m_names = names;
        UpdateDeviceList();
    }
    Names names() const { return namesOf(DeviceList()); }

    static Names namesOf(const QList<ExtAudioDeviceInfo> &devices) {
        Names result;
        for (const ExtAudioDeviceInfo &device : devices)
            result << device.deviceName();
        return result;
    }

    /// The real devices by their names.
    static inline QHash<QString, QAudioDeviceInfo> devices;

    int descriptionsAsked = 0;

protected:
    ExtAudioDeviceInfo CreateExtDeviceInfo(const QAudioDeviceInfo &device) override {
        ++descriptionsAsked;
        if (device.deviceName() == QLatin1String("hidden"))
            return {};
        return ExtAudioDeviceInfo(device, device.deviceName().toUpper());
    }

    QList<QAudioDeviceInfo> AvailableDevices() override {
        QList<QAudioDeviceInfo> result;
        for (const QString &name : qAsConst(m_names))
            result << devices.value(name);
        return result;
    }

private:
    Names m_names;
};

/// A manager whose device only writes down what happens to it.
class ScriptedDevice : public AudioDeviceManagerBase {
public:
    explicit ScriptedDevice(AudioListManager *list) : AudioDeviceManagerBase(list, nullptr) {
        connect(this, &ScriptedDevice::DeviceListChanged, this, [this] { log << "list"; });
        connect(this, &ScriptedDevice::SelectedIndexChanged, this, [this] { log << "index"; });
        connect(this, &ScriptedDevice::DeviceNotification, this, [this] { log << "notify"; });
    }

    ExtAudioDeviceInfo DefaultDevice() const override { return {}; }
    void StopDevice() override { log << "stop"; }
    void StartDevice() override {
        MarkStart();
        log << "start " + CurrentDevice().deviceName();
    }
    void OnDeviceStateChanged(QAudio::State) override {}

    using AudioDeviceManagerBase::Reopen;

    Names takeLog() {
        Names result;
        result.swap(log);
        return result;
    }

    Names log;

protected:
    void OnDeviceStart() override {}
    void OnDeviceStop() override {}
    QObject *CreateDevice(const ExtAudioDeviceInfo &) override { return nullptr; }
};

/// Counts its updates, and is asked for more while the first of them is under way.
class CountingList : public PulseAudioListManager {
public:
    explicit CountingList(PulseAudioManager *manager)
        : PulseAudioListManager(QAudio::AudioInput, false, manager) {}

    int updates = 0;

protected:
    QList<QAudioDeviceInfo> AvailableDevices() override {
        if (++updates == 1) {
            for (int i = 0; i < 20; ++i)
                asyncUpdateDeviceList(0);
        }
        return {};
    }
};
} // namespace

/// The rules of levels, lists and selections, on devices that are not recorded from.
class TestAudioRules : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void level_data();
    void level();
    void listIsPublishedWhenItChanges_data();
    void listIsPublishedWhenItChanges();
    void knownDeviceKeepsItsDescription();
    void newListMovesTheSelection_data();
    void newListMovesTheSelection();
    void firstListTakesTheWantedDevice_data();
    void firstListTakesTheWantedDevice();
    void choiceCountsAgainAfterAnEmptyList();
    void indexSelects_data();
    void indexSelects();
    void unknownNameSelectsTheFirst();
    void failingDeviceIsOpenedOnceASecond();
    void manyRequestsCostOneMoreUpdate();
    void activePortIsPartOfTheDescription();
};

void TestAudioRules::initTestCase() {
    for (const char *name : {"a", "b", "c", "hidden"})
        desk().loadModule({QStringLiteral("module-null-sink"),
                           QStringLiteral("sink_name=") + QLatin1String(name)});
    const auto all = QAudioDeviceInfo::availableDevices(QAudio::AudioOutput);
    for (const QAudioDeviceInfo &device : all)
        ScriptedList::devices.insert(device.deviceName(), device);
    QVERIFY(ScriptedList::devices.contains("hidden"));
}

void TestAudioRules::level_data() {
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<int>("level");
    QTest::newRow("nothing") << Samples() << 0;
    QTest::newRow("silence") << Samples(3200, 0) << 0;
    // 3200 * 999 / 3200 = 999, log10 = 2.9996
    QTest::newRow("a steady thousand") << Samples(3200, 1000) << 66;
    // 100 * 101 / 100 = 101, log10 = 2.0043: the magnitude is that of the sample less one
    QTest::newRow("minus a hundred") << Samples(100, -100) << 44;
    // The same in a longer block is 101 / 3200 = 0.03 for each sample, which is skipped.
    QTest::newRow("minus a hundred in a long block") << Samples(3200, -100) << 0;
    // 12 / 100 is the limit, which is skipped; a step more is 100 * 0.13 = 13, log10 = 1.1139
    QTest::newRow("noise at the limit") << Samples(100, 13) << 0;
    QTest::newRow("noise above the limit") << Samples(100, 14) << 24;
    // 4999 / 1000 = 4.999, log10 = 0.6989
    QTest::newRow("one click in silence") << Samples(999, 0) + Samples(1, 5000) << 15;
    // 899 / 1000 = 0.899, whose logarithm is negative
    QTest::newRow("one faint click") << Samples(999, 0) + Samples(1, 900) << 0;
    QTest::newRow("ten at full scale") << Samples(990, 0) + Samples(10, 32767) << 55;
    QTest::newRow("eleven at full scale") << Samples(989, 0) + Samples(11, 32767) << 100;
    QTest::newRow("the lowest samples") << Samples(3200, -32768) << 100;
}

void TestAudioRules::level() {
    QFETCH(Samples, samples);
    QTEST(LevelCalc::GetSoundLevel(samples.constData(), samples.size()), "level");
}

void TestAudioRules::listIsPublishedWhenItChanges_data() {
    QTest::addColumn<Names>("before");
    QTest::addColumn<Names>("after");
    QTest::addColumn<Names>("list");
    QTest::addColumn<bool>("published");
    QTest::newRow("nothing is plugged still") << Names() << Names() << Names() << false;
    QTest::newRow("the same") << Names{"a", "b"} << Names{"a", "b"} << Names{"a", "b"} << false;
    QTest::newRow("another order") << Names{"a", "b"} << Names{"b", "a"} << Names{"b", "a"} << true;
    QTest::newRow("one plugged") << Names{"a"} << Names{"a", "b"} << Names{"a", "b"} << true;
    QTest::newRow("the last unplugged") << Names{"a"} << Names() << Names() << true;
    QTest::newRow("one exchanged") << Names{"a"} << Names{"b"} << Names{"b"} << true;
    QTest::newRow("one without a description")
        << Names{"a"} << Names{"a", "hidden"} << Names{"a"} << false;
}

void TestAudioRules::listIsPublishedWhenItChanges() {
    QFETCH(Names, before);
    QFETCH(Names, after);
    ScriptedList list;
    QSignalSpy published(&list, &AudioListManager::DeviceListChanged);
    list.plug(before);
    QCOMPARE(published.size(), 1);
    list.plug(after);
    QTEST(list.names(), "list");
    QTEST(published.size() == 2, "published");
}

void TestAudioRules::knownDeviceKeepsItsDescription() {
    ScriptedList list;
    list.plug({"a"});
    list.plug({"a", "b"});
    QCOMPARE(list.DeviceList()[0].Description(), QStringLiteral("A"));
    QCOMPARE(list.descriptionsAsked, 2);
    list.plug({"b"});
    list.plug({"a", "b"});
    QCOMPARE(list.descriptionsAsked, 3);
}

void TestAudioRules::newListMovesTheSelection_data() {
    QTest::addColumn<bool>("tracking");
    QTest::addColumn<Names>("before");
    QTest::addColumn<QString>("current");
    QTest::addColumn<Names>("after");
    QTest::addColumn<int>("index");
    QTest::addColumn<Names>("happened");
    const Names kept{"list", "index"};
    const Names abc{"a", "b", "c"};
    QTest::newRow("tracking, plugged") << true << Names{"a", "b"} << "a" << abc << 2
                                       << Names{"stop", "start c", "list", "index", "notify"};
    QTest::newRow("tracking, the order changed")
        << true << Names{"a", "b"} << "a" << Names{"b", "a"} << 1 << kept;
    QTest::newRow("tracking, the current unplugged")
        << true << abc << "b" << Names{"a", "c"} << 0
        << Names{"stop", "start a", "list", "index", "notify"};
    QTest::newRow("tracking, the last unplugged")
        << true << Names{"a"} << "a" << Names() << -1
        << Names{"stop", "start ", "list", "index", "notify"};
    QTest::newRow("not tracking, plugged before the current")
        << false << Names{"b", "c"} << "c" << abc << 2 << kept;
    QTest::newRow("not tracking, another unplugged")
        << false << abc << "c" << Names{"b", "c"} << 1 << kept;
    QTest::newRow("not tracking, the current unplugged")
        << false << abc << "b" << Names{"a", "c"} << 0 << Names{"stop", "start a", "list", "index"};
    QTest::newRow("not tracking, the current exchanged")
        << false << Names{"a", "b"} << "b" << Names{"a", "c"} << 1
        << Names{"stop", "start c", "list", "index"};
    QTest::newRow("not tracking, the last unplugged")
        << false << Names{"a"} << "a" << Names() << -1 << Names{"stop", "start ", "list", "index"};
}

void TestAudioRules::newListMovesTheSelection() {
    QFETCH(bool, tracking);
    QFETCH(Names, before);
    QFETCH(QString, current);
    QFETCH(Names, after);
    ScriptedList list;
    ScriptedDevice device(&list);
    device.SelectDevice(current);
    device.set_IsTrackChanges(tracking);
    list.plug(before);
    QTRY_COMPARE(device.CurrentDevice().deviceName(), current);
    device.takeLog();
    list.plug(after);
    QTRY_COMPARE(ScriptedList::namesOf(device.DeviceList()), after);
    QTEST(device.SelectedIndex(), "index");
    QTEST(device.takeLog(), "happened");
}

void TestAudioRules::firstListTakesTheWantedDevice_data() {
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<Names>("plugged");
    QTest::addColumn<int>("index");
    QTest::addColumn<Names>("happened");
    QTest::newRow("the wanted one")
        << "b" << Names{"a", "b"} << 1 << Names{"start b", "list", "index"};
    QTest::newRow("an unknown name")
        << "z" << Names{"a", "b"} << 0 << Names{"start a", "list", "index"};
    QTest::newRow("no device") << "b" << Names() << -1 << Names{"start ", "list", "index"};
}

void TestAudioRules::firstListTakesTheWantedDevice() {
    QFETCH(QString, wanted);
    QFETCH(Names, plugged);
    ScriptedList list;
    ScriptedDevice device(&list);
    device.SelectDevice(wanted);
    QCOMPARE(device.takeLog(), Names());
    list.plug(plugged);
    QTRY_COMPARE(device.log.size(), 3);
    QTEST(device.SelectedIndex(), "index");
    QTEST(device.takeLog(), "happened");
}

void TestAudioRules::choiceCountsAgainAfterAnEmptyList() {
    ScriptedList list;
    ScriptedDevice device(&list);
    device.SelectDevice(QStringLiteral("b"));
    list.plug({});
    QTRY_COMPARE(device.log.size(), 3);
    list.plug({"a", "b", "c"});
    QTRY_COMPARE(device.SelectedIndex(), 1);
}

void TestAudioRules::indexSelects_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("index");
    QTest::addColumn<Names>("happened");
    QTest::newRow("another") << 0 << 1 << 1 << Names{"stop", "start b", "index"};
    QTest::newRow("the same") << 1 << 1 << 1 << Names();
    QTest::newRow("behind the end") << 0 << 2 << -1 << Names{"stop", "index"};
    QTest::newRow("none twice") << -1 << -5 << -1 << Names();
    QTest::newRow("one after none") << -1 << 0 << 0 << Names{"stop", "start a", "index"};
}

void TestAudioRules::indexSelects() {
    QFETCH(int, from);
    QFETCH(int, to);
    ScriptedList list;
    ScriptedDevice device(&list);
    list.plug({"a", "b"});
    QTRY_COMPARE(device.SelectedIndex(), 0);
    device.set_SelectedIndex(from);
    device.takeLog();
    device.set_SelectedIndex(to);
    QTEST(device.SelectedIndex(), "index");
    QTEST(device.takeLog(), "happened");
}

void TestAudioRules::unknownNameSelectsTheFirst() {
    ScriptedList list;
    ScriptedDevice device(&list);
    list.plug({"a", "b"});
    QTRY_COMPARE(device.SelectedIndex(), 0);
    device.SelectDevice(QStringLiteral("b"));
    QCOMPARE(device.SelectedIndex(), 1);
    device.takeLog();
    device.SelectDevice(QStringLiteral("z"));
    QCOMPARE(device.takeLog(), (Names{"stop", "start a", "index"}));
}

void TestAudioRules::failingDeviceIsOpenedOnceASecond() {
    ScriptedList list;
    ScriptedDevice device(&list);
    QElapsedTimer sinceStart;
    sinceStart.start();
    device.StartDevice();
    device.takeLog();
    device.Reopen();
    QCOMPARE(device.log.size(), 0);
    QTRY_COMPARE(device.log.size(), 1);
    QVERIFY2(sinceStart.elapsed() >= 950, qPrintable(QString::number(sinceStart.elapsed())));

    device.Reopen();
    QCOMPARE(device.log.size(), 1);
    device.RetryNow();
    QCOMPARE(device.log.size(), 2);
    device.RetryNow();
    QCOMPARE(device.log.size(), 2);
    QTRY_VERIFY(sinceStart.elapsed() > 2500);
    device.Reopen();
    QCOMPARE(device.log.size(), 3);
}

void TestAudioRules::manyRequestsCostOneMoreUpdate() {
    PulseAudioManager manager;
    CountingList list(&manager);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&list] {
            for (int j = 0; j < 50; ++j)
                list.asyncUpdateDeviceList(0);
        });
    for (std::thread &thread : threads)
        thread.join();
    QCoreApplication::processEvents();
    QCOMPARE(list.updates, 2);
    list.asyncUpdateDeviceList(0);
    QTRY_COMPARE(list.updates, 3);
}

void TestAudioRules::activePortIsPartOfTheDescription() {
    pa_source_port_info port{};
    port.description = "Headset";
    pa_source_info source{};
    source.description = "Built-in";
    QCOMPARE(PulseDeviceInfo::From(source, false).description, QStringLiteral("Built-in"));
    source.active_port = &port;
    QCOMPARE(PulseDeviceInfo::From(source, false).description,
             QStringLiteral("Built-in – Headset"));
}

int main(int argc, char **argv) {
    return runOnDesk<QCoreApplication, TestAudioRules>(argc, argv, VirtualDesk::Sound);
}

#include "TestAudioRules.moc"
