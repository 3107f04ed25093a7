#include "DeskTest.h"
#include "audio/AudioDeviceManagerBase.h"
#include "audio/AudioListManager.h"
#include "audio/LevelCalc.h"

#include <QSignalSpy>

namespace {
using Samples = QVector<short>;

/// A list whose devices the test names, "a b", in the order told.
class ScriptedList : public AudioListManager {
public:
    ScriptedList() : AudioListManager(QAudio::AudioOutput, nullptr) {}

    void plug(const QString &names, const QString &description = QString()) {
        QList<ExtAudioDeviceInfo> devices;
        for (const QString &name : names.split(' ', Qt::SkipEmptyParts))
            devices << ExtAudioDeviceInfo(name, description);
        UpdateDeviceList(devices);
    }
    static QString namesOf(const QList<ExtAudioDeviceInfo> &devices) {
        QStringList result;
        for (const ExtAudioDeviceInfo &device : devices)
            result << device.deviceName();
        return result.join(' ');
    }
};

/// A manager without a stream, and what it asks of one and tells.
class ScriptedDevice : public AudioDeviceManagerBase {
public:
    explicit ScriptedDevice(AudioListManager *list) : AudioDeviceManagerBase(list, nullptr) {
        connect(this, &ScriptedDevice::DeviceListChanged, this, [this] { log << "list"; });
        connect(this, &ScriptedDevice::SelectedIndexChanged, this, [this] { log << "index"; });
        connect(this, &ScriptedDevice::DeviceNotification, this, [this] { log << "notify"; });
        connect(this, &ScriptedDevice::CloseRequested, this, [this] { log << "stop"; });
        connect(
            this, &ScriptedDevice::OpenRequested, this,
            [this](const ExtAudioDeviceInfo &device) { log << "start-" + device.deviceName(); });
    }

    QStringList log;
};
} // namespace

/// The rules of levels, lists and selections, on devices that are not recorded from.
class TestAudioRules : public QObject {
    Q_OBJECT

private slots:
    void level_data() {
        columns<Samples, int>("samples", "level");
        row("nothing", Samples(), 0);
        // 3200 * 999 / 3200 = 999, log10 = 2.9996
        row("a steady thousand", Samples(3200, 1000), 66);
        // 100 * 101 / 100 = 101, log10 = 2.0043: the magnitude is that of the sample less one
        row("minus a hundred", Samples(100, -100), 44);
        // 12 / 100 is the limit, which is skipped; a step more is 100 * 0.13 = 13, log10 = 1.1139
        row("noise at the limit", Samples(100, 13), 0);
        row("noise above the limit", Samples(100, 14), 24);
        // 4999 / 1000 = 4.999, log10 = 0.6989
        row("one click in silence", Samples(999, 0) + Samples(1, 5000), 15);
        // 899 / 1000 = 0.899, whose logarithm is negative
        row("one faint click", Samples(999, 0) + Samples(1, 900), 0);
        row("ten at full scale", Samples(990, 0) + Samples(10, 32767), 55);
        row("eleven at full scale", Samples(989, 0) + Samples(11, 32767), 100);
        row("the lowest samples", Samples(3200, -32768), 100);
    }

    void level() {
        QFETCH(Samples, samples);
        QTEST(LevelCalc::GetSoundLevel(samples.constData(), samples.size()), "level");
    }

    void listIsPublishedWhenItChanges_data() {
        columns<QString, QString, bool>("before", "after", "published");
        row("the same", "a b", "a b", false);
        row("another order", "a b", "b a", true);
        row("one plugged", "a", "a b", true);
        row("the last unplugged", "a", "", true);
    }

    void listIsPublishedWhenItChanges() {
        QFETCH(QString, before);
        QFETCH(QString, after);
        ScriptedList list;
        QSignalSpy published(&list, &AudioListManager::DeviceListChanged);
        list.plug(before);
        QCOMPARE(published.size(), 1);
        list.plug(after);
        QCOMPARE(ScriptedList::namesOf(list.DeviceList()), after);
        QTEST(published.size() == 2, "published");
    }

    void knownDeviceKeepsItsDescription() {
        ScriptedList list;
        list.plug("a", "first");
        list.plug("a b", "second");
        QCOMPARE(list.DeviceList()[0].Description(), "first");
        list.plug("b");
        list.plug("a b", "third");
        QCOMPARE(list.DeviceList()[0].Description(), "third");
    }

    void newListMovesTheSelection_data() {
        columns<bool, QString, QString, QString, int, QString>("tracking", "before", "wanted",
                                                               "after", "index", "happened");
        const QString noListYet;
        row("first list", false, noListYet, "b", "a b", 1, "stop start-b list index");
        row("first list, unknown name", false, noListYet, "z", "a b", 0, "stop start-a list index");
        row("first list, no device", false, noListYet, "b", "", -1, "stop list index");
        row("tracking, plugged", true, "a b", "a", "a b c", 2, "stop start-c list index notify");
        row("tracking, the order changed", true, "a b", "a", "b a", 1, "list index");
        row("tracking, unplugged", true, "a b c", "b", "a c", 0, "stop start-a list index notify");
        row("tracking, the wanted among others", true, "a", "c", "a b c d", 2,
            "stop start-c list index notify");
        row("plugged before the current", false, "b c", "c", "a b c", 2, "list index");
        row("another unplugged", false, "a b c", "c", "b c", 1, "list index");
        row("the current unplugged", false, "a b c", "b", "a c", 0, "stop start-a list index");
        row("the current exchanged", false, "a b", "b", "a c", 1, "stop start-c list index");
        row("the last unplugged", false, "a", "a", "", -1, "stop list index");
        row("the wanted plugged late", false, "a b", "c", "a b c", 2, "stop start-c list index");
        row("another plugged while the wanted is away", false, "a", "c", "a b", 0, "list index");
        row("the wanted for another stand-in", false, "a", "c", "b c", 1,
            "stop start-c list index");
        row("the first devices at all", false, "", "b", "a b c", 1, "stop start-b list index");
    }

    void newListMovesTheSelection() {
        QFETCH(bool, tracking);
        QFETCH(QString, before);
        QFETCH(QString, wanted);
        QFETCH(QString, after);
        QFETCH(QString, happened);
        ScriptedList list;
        ScriptedDevice device(&list);
        device.SelectDevice(wanted);
        QVERIFY(device.log.isEmpty());
        device.set_IsTrackChanges(tracking);
        device.set_StartLimit(0);
        if (!before.isNull()) {
            list.plug(before);
            QTRY_COMPARE(device.log.value(device.log.size() - 1), "index");
            QCOMPARE(device.CurrentDevice().deviceName(),
                     before.contains(wanted) ? wanted : before.section(' ', 0, 0));
            device.log.clear();
        }
        list.plug(after);
        QTRY_COMPARE(device.log.join(' '), happened);
        QCOMPARE(ScriptedList::namesOf(device.DeviceList()), after);
        QTEST(device.SelectedIndex(), "index");
        // A plugged device that was switched to is the one to come back to.
        if (happened.endsWith("notify") && after.size() > before.size())
            QCOMPARE(device.WantedName(), device.CurrentDevice().deviceName());
    }

    void startingServerPlugsNothing() {
        ScriptedList list;
        ScriptedDevice device(&list);
        device.SelectDevice("b");
        device.set_IsTrackChanges(true);
        for (const char *names : {"a", "a b", "", "a", "a b", "c a b"}) {
            list.plug(names);
            QTRY_COMPARE(ScriptedList::namesOf(device.DeviceList()), names);
        }
        QCOMPARE(device.CurrentDevice().deviceName(), "b");
        QCOMPARE(device.WantedName(), "b");
    }

    void selects_data() {
        // To an index or a name.
        columns<int, QVariant, int, QString>("from", "to", "index", "happened");
        row("another", 0, QVariant(1), 1, "stop start-b index");
        row("the same", 1, QVariant(1), 1, "");
        row("behind the end", 0, QVariant(2), -1, "stop index");
        row("none twice", -1, QVariant(-5), -1, "");
        row("one after none", -1, QVariant(0), 0, "stop start-a index");
        row("a name", 0, QVariant("b"), 1, "stop start-b index");
        row("an unknown name", 1, QVariant("z"), 0, "stop start-a index");
    }

    void selects() {
        QFETCH(int, from);
        QFETCH(QVariant, to);
        ScriptedList list;
        ScriptedDevice device(&list);
        list.plug("a b");
        QTRY_COMPARE(device.SelectedIndex(), 0);
        device.set_SelectedIndex(from);
        device.log.clear();
        if (to.userType() == QMetaType::Int)
            device.set_SelectedIndex(to.toInt());
        else
            device.SelectDevice(to.toString());
        QTEST(device.SelectedIndex(), "index");
        QTEST(device.log.join(' '), "happened");
    }
};

DESK_CORE_TEST_MAIN(TestAudioRules)
#include "TestAudioRules.moc"
