#include "DeskTest.h"
#include "KeyReceiver.h"
#include "XKeyboard.h"
#include "core/settings/HotkeySettings.h"
#include "core/workers/SubService.h"
#include "desktop/HotKeyInfo.h"
#include "desktop/KeyboardListener.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyManager.h"

#include <QDir>
#include <QSignalSpy>

#include <atomic>
#include <thread>

namespace {

/// Longer than the listener needs to see a key and than two clicks may lie apart, milliseconds.
constexpr int Silence = 300;

void store(bool useHotkey, const QString &hotKey, const QString &p2tKey) {
    HotkeySettings settings;
    settings.UseHotkey = useHotkey;
    settings.HotKey = hotKey;
    settings.P2TKey = p2tKey;
}

/// How often the listener's thread has gone to sleep so far; -1 without such a thread.
int listenerSleeps() {
    const QDir tasks("/proc/self/task");
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString status = VirtualDesk::read(tasks.filePath(task + "/status"));
        // The system keeps fifteen letters of a name.
        if (status.startsWith("Name:\tKeyboardListene\n"))
            return status.section("\nvoluntary_ctxt_switches:", 1).section('\n', 0, 0).toInt();
    }
    return -1;
}

/// All emissions as "1/0/1 1/0/2".
QString seen(const QSignalSpy &spy) {
    QStringList emissions;
    for (const QList<QVariant> &arguments : spy) {
        QStringList values;
        for (const QVariant &argument : arguments)
            values.append(QString::number(argument.toInt()));
        emissions.append(values.join('/'));
    }
    return emissions.join(' ');
}

} // namespace

/// Gestures on the keys of the session, pressed through the server.
class TestHotKeys : public QObject {
    Q_OBJECT

private slots:
    void init() { store(true, "DoubleCtrl", "Ctrl"); }

    void gesturesActivate_data() {
        // In the edges "|" stands for a pause.
        columns<bool, QString, QString, QString>("useHotkey", "key", "edges", "activated");
        const QString click = "+Control_L -Control_L ";
        const QString caps = "+Caps_Lock -Caps_Lock ";
        const auto toggle = [](const char *name, const QString &keys, const char *seen) {
            QTest::newRow(name) << true << "DoubleCtrl" << keys << seen;
        };
        toggle("double Ctrl", click + click, "0/0/0");
        toggle("left, then right Ctrl", click + "+Control_R -Control_R", "0/0/0");
        toggle("too slow; the second counts as a first", click + '|' + click, "");
        toggle("too slow, then quick", click + '|' + click + click, "0/0/0");
        toggle("the third click starts anew", click.repeated(3), "0/0/0");
        toggle("twice double", click.repeated(4), "0/0/0 0/0/0");
        toggle("typing in between", click + "+c -c " + click, "");
        toggle("copy and paste", "+Control_L +c -c +v -v -Control_L " + click, "");
        QTest::newRow("double Caps Lock") << true << "DoubleCapsLock" << caps + caps << "0/1/0";
        QTest::newRow("the other gesture") << true << "DoubleCapsLock" << click + click << "";
        QTest::newRow("an unknown setting is double Ctrl")
            << true << "F13" << click + click << "0/0/0";
        const auto hold = [](const char *name, const char *key, const QString &keys,
                             const char *seen) {
            QTest::newRow(name) << false << key << keys << seen;
        };
        hold("talk while Ctrl is down", "Ctrl", click, "1/0/1 1/0/2");
        hold("typing while Ctrl is down", "Ctrl", "+Control_L +c -c +d -d -Control_L",
             "1/0/1 1/0/2");
        hold("held Ctrl repeats", "Ctrl", "+Control_L +Control_L +Control_L -Control_L",
             "1/0/1 1/0/2");
        hold("talk while Pause is down", "Pause", "+Pause -Pause +Pause -Pause",
             "1/1/1 1/1/2 1/1/1 1/1/2");
        hold("Ctrl is not Pause", "Pause", click + click, "");
        hold("an unknown key is Ctrl", "F13", click, "1/0/1 1/0/2");
    }

    void gesturesActivate() {
        QFETCH(bool, useHotkey);
        QFETCH(QString, key);
        QFETCH(QString, edges);
        QFETCH(QString, activated);
        store(useHotkey, key, key);
        m_keyboard.setRepeating("Control_L", true);
        XHotKeyManager manager;
        QTRY_VERIFY(manager.IsInitialized());
        QSignalSpy spy(&manager, &HotKeyManager::activated);

        // Nothing comes here, so that waiting for it lets the time pass and the events in.
        QSignalSpy nothing(this, &QObject::destroyed);
        for (const QString &part : edges.split('|')) {
            m_keyboard.play(part);
            QVERIFY(!nothing.wait(Silence));
        }
        m_keyboard.setRepeating("Control_L", false);
        QCOMPARE(seen(spy), activated);
    }

    void listenerSleepsWithoutKeys() {
        XHotKeyManager manager;
        QTRY_VERIFY(manager.IsInitialized());
        const int before = listenerSleeps();
        QVERIFY(before >= 0);
        QSignalSpy nothing(this, &QObject::destroyed);
        QVERIFY(!nothing.wait(5 * Silence));
        const int sleeps = listenerSleeps() - before;
        QVERIFY2(sleeps < 5, qPrintable(QString("it looks for keys by itself: %1").arg(sleeps)));
    }

    void listenerReducesEdges_data() {
        columns<bool, QString, QString>("pushToTalk", "edges", "emitted");
        const QString down = QString("0/%1 ").arg(Qt::Key_Control);
        const QString other = "0/-1 1/-1";
        const QString up = QString("1/%1").arg(Qt::Key_Control);
        QTest::newRow("second Ctrl cancels the first")
            << false << "+Control_L +Control_R -Control_L -Control_R" << down + "1/-1";
        QTest::newRow("a letter cancels; the releases pass")
            << false << "+Control_L +c -c -Control_L" << down + "1/-1";
        QTest::newRow("a letter does not end push-to-talk")
            << true << "+Control_L +c -Control_L -c" << down + up;
        QTest::newRow("an unknown key") << false << "+c -c" << other;
        QTest::newRow("an unknown key holds, too")
            << true << "+c +Control_L -Control_L -c" << other;
        QTest::newRow("key repeat") << false << "+c +c +c -c" << other;
    }

    void listenerReducesEdges() {
        QFETCH(bool, pushToTalk);
        QFETCH(QString, edges);
        QFETCH(QString, emitted);
        auto *listener = new KeyboardListener;
        SubService service(listener, true);
        listener->ResetKeys(pushToTalk);
        listener->AddKey(Qt::Key_Control, 0);
        QSignalSpy spy(listener, &KeyboardListener::keyEventAction);
        service.Start();
        QTRY_VERIFY(listener->IsInitialized());

        // A menu that holds the keyboard hides no key from the listener.
        for (const bool isGrabbed : {false, true}) {
            QVERIFY(!isGrabbed || m_keyboard.grab());
            m_keyboard.play(edges);
            QTRY_COMPARE(seen(spy), emitted);
            spy.clear();
        }
        m_keyboard.ungrab();
        service.Stop();
        QCOMPARE(seen(spy), QString());
    }

    void followsItsSettings() {
        XHotKeyManager manager;
        QSignalSpy modes(&manager, &HotKeyManager::activationModeChanged);
        QSignalSpy spy(&manager, &HotKeyManager::activated);
        store(false, "DoubleCtrl", "Pause");
        manager.onSettingsChanged();
        QCOMPARE(seen(modes), "1/1");
        QTRY_VERIFY(manager.IsInitialized());
        m_keyboard.play("+Pause -Pause");
        QTRY_COMPARE(seen(spy), "1/1/1 1/1/2");
    }

    void stopsAndStarts() {
        const QString gesture = "+Control_L -Control_L +Control_L -Control_L";
        XHotKeyManager manager;
        QSignalSpy spy(&manager, &HotKeyManager::activated);
        QTRY_VERIFY(manager.IsInitialized());
        manager.stopKeyListener();
        QVERIFY(!manager.IsInitialized());
        m_keyboard.play(gesture);
        QVERIFY(!spy.wait(Silence));

        manager.startKeyListener();
        QTRY_VERIFY(manager.IsInitialized());
        m_keyboard.play(gesture);
        QTRY_COMPARE(spy.size(), 1);

        manager.keyboardHookUnreg();
        manager.onSettingsChanged();
        QVERIFY(!manager.IsInitialized());
    }

    void takesNoKeyAway() {
        XHotKeyManager manager;
        QTRY_VERIFY(manager.IsInitialized());
        QSignalSpy spy(&manager, &HotKeyManager::activated);
        const KeyReceiver receiver;
        const QString edges = "+Control_L -Control_L +Control_L -Control_L +a -a "
                              "+Caps_Lock -Caps_Lock +Caps_Lock -Caps_Lock +Pause -Pause";
        m_keyboard.play(edges);
        QTRY_COMPARE(spy.size(), 1);
        QTRY_COMPARE(receiver.count(), edges.split(' ').size());
        const QVector<KeyReceiver::Edge> seenEdges = receiver.edges();
        for (int i = 0; i < seenEdges.size(); ++i) {
            const QString key = edges.section(' ', i, i);
            QCOMPARE(seenEdges[i].isPress, key.startsWith('+'));
            QCOMPARE(seenEdges[i].keycode, m_keyboard.keycode(key.mid(1)));
        }
    }

    void idlesWithoutADisplay() {
        const QByteArray display = qgetenv("DISPLAY");
        qunsetenv("DISPLAY");
        auto *listener = new KeyboardListener;
        SubService service(listener, true);
        QSignalSpy spy(listener, &KeyboardListener::keyEventAction);
        service.Start();
        QVERIFY(!spy.wait(Silence));
        QVERIFY(!listener->IsInitialized());
        service.Stop();
        qputenv("DISPLAY", display);
    }

    void spokenKeysAreNoGesture_data() {
        columns<bool, QString>("useHotkey", "activated");
        QTest::newRow("double Ctrl") << true << "0/0/0";
        QTest::newRow("talk while Ctrl is down") << false << "1/0/1 1/0/2 1/0/1 1/0/2";
    }

    void spokenKeysAreNoGesture() {
        QFETCH(bool, useHotkey);
        QFETCH(QString, activated);
        store(useHotkey, "DoubleCtrl", "Ctrl");
        TextWriter::Init();
        XHotKeyManager manager;
        QTRY_VERIFY(manager.IsInitialized());
        QSignalSpy spy(&manager, &HotKeyManager::activated);
        for (int i = 0; i < 10; ++i)
            QVERIFY(speakCopy());
        QVERIFY2(!spy.wait(Silence), qPrintable(seen(spy)));

        m_keyboard.play("+Control_L");
        QVERIFY(speakCopy());
        m_keyboard.play("-Control_L +Control_L -Control_L");
        QVERIFY(speakCopy());
        QTRY_COMPARE(seen(spy), activated);
        QVERIFY2(!spy.wait(Silence), qPrintable(seen(spy)));
        TextWriter::Cleanup();
    }

    void edgesStandOutFromSpokenKeys_data() {
        QTest::addColumn<bool>("pushToTalk");
        QTest::newRow("double Ctrl") << false;
        QTest::newRow("push-to-talk") << true;
    }

    void edgesStandOutFromSpokenKeys() {
        QFETCH(bool, pushToTalk);
        auto *listener = new KeyboardListener;
        SubService service(listener, true);
        listener->ResetKeys(pushToTalk);
        listener->AddKey(Qt::Key_Control, 0);
        QStringList edges;
        connect(listener, &KeyboardListener::keyEventAction, this, [&edges](bool isUp, int key) {
            edges += (isUp ? '-' : '+') + QString::number(key);
        });
        TextWriter::Init();
        std::atomic<bool> isOver{false};
        std::atomic<int> spoken{0};
        std::thread speaker([&] {
            for (; !isOver; ++spoken)
                speakCopy();
        });

        // The listener comes and goes while commands are spoken without a pause.
        constexpr int Rounds = 10;
        constexpr int ClicksARound = 20;
        const QString click = "+Control_L -Control_L ";
        bool areSeen = true;
        for (int round = 1; round <= Rounds && areSeen; ++round) {
            service.Start();
            areSeen = QTest::qWaitFor([listener] { return listener->IsInitialized(); }, patienceMs);
            XKeyboard().play(click.repeated(ClicksARound));
            const int awaited = 2 * ClicksARound * round;
            areSeen =
                areSeen && QTest::qWaitFor([&] { return edges.size() >= awaited; }, patienceMs);
            service.Stop();
        }
        isOver = true;
        speaker.join();
        TextWriter::Cleanup();
        QCoreApplication::processEvents();
        const QString ctrl = QString::number(Qt::Key_Control);
        const QStringList userClick{'+' + ctrl, '-' + ctrl};
        for (int i = 0; i < edges.size(); ++i)
            QCOMPARE(edges[i], userClick[i % 2]);
        QCOMPARE(edges.size(), 2 * Rounds * ClicksARound);
        QVERIFY2(spoken > 100, qPrintable(QString::number(spoken)));
    }

private:
    bool speakCopy() const {
        constexpr unsigned int Control = 4;
        const auto letter = static_cast<unsigned int>(m_keyboard.keycode("c"));
        return TextWriter::WriteKey(0, HotKeyInfo{letter, Control}) &&
               TextWriter::WaitForTyped(patienceMs);
    }

    XKeyboard m_keyboard;
};

DESK_TEST_MAIN(TestHotKeys, VirtualDesk::Screen)
#include "TestHotKeys.moc"
