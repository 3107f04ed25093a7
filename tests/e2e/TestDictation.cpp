#include "Editor.h"
#include "ProgramTest.h"
#include "connection/messages/MessageType.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/LaunchSettings.h"

/// The whole program on a whole desk: keys, sound, server, typed text.
class TestDictation : public ProgramTest {
    Q_OBJECT

private slots:
    void dictatesIntoTheFocusedWindow() {
        Editor editor("plain.txt");
        QVERIFY(start());
        const XKeyboard keyboard;
        const QByteArray map = keyboard.map();
        QVERIFY(startDictation());
        m_stand->sayResult("жалобы на", false);
        m_stand->sayResult("жалобы на кашель ,");
        m_stand->sayResult("одышку . 38,5 ° C ¶ общее состояние");
        QTRY_COMPARE_WITH_TIMEOUT(
            editor.text(), "Жалобы на кашель, одышку. 38,5 ° C\nОбщее состояние", patienceMs);
        QTRY_COMPARE(keyboard.map(), map);

        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
        m_stand->sayResult("не в тексте");
        QVERIFY(startDictation());
        m_stand->sayResult("ещё");
        QTRY_VERIFY(editor.text().endsWith("Общее состояниеЕщё"));
    }

    void dictatesWhileAKeyIsHeld() {
        HotkeySettings().UseHotkey = false;
        HotkeySettings().P2TKey = "Pause";
        Editor editor("held.txt");
        QVERIFY(start());
        m_stand->forget();
        XKeyboard keyboard;
        keyboard.press("Pause");
        QVERIFY(nextMode(m_stand.get()).isNull());
        QVERIFY(soundFlows());
        m_stand->sayResult("пока нажата");
        QTRY_COMPARE(editor.text(), "Пока нажата");
        m_stand->forget();
        keyboard.release("Pause");
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
    }

    void staysWithItsWindowInTheBackground() {
        LaunchSettings().OutputToBackground = true;
        m_stand->offerServers(3);
        Editor first("first.txt");
        QVERIFY(start() && startDictation());
        const Editor second("second.txt");
        m_stand->sayResult("один");
        QTRY_COMPARE(first.text(), "Один");
        for (const char *word : {"два", "три"}) {
            m_stand->sayResult(QString::fromUtf8(word), false);
            m_stand->forget();
            m_stand->tell("drop");
            QVERIFY(!m_stand->waitFor("connected").isEmpty());
            QVERIFY(!nextMode(m_stand.get()).isUndefined());
            QVERIFY(soundFlows());
        }
        m_stand->sayResult("четыре");
        QTRY_COMPARE(first.text(), "Один дваТриЧетыре");

        // The server gets no further than that when the user stops and starts elsewhere.
        m_stand->sayResult("пять", false);
        QVERIFY(m_program->waitForLog("source text: пять"));
        m_stand->tell(QJsonObject{{"do", "answers"}, {"enabled", false}});
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
        m_stand->tell({{"do", "message"},
                       {"type", MessageType::ModeState},
                       {"data", QJsonObject{{"Mode", 2}, {"State", 2}}}});
        QVERIFY(m_program->waitForLog("\"Mode\":2,\"State\":2"));
        XKeyboard().play(doubleCtrl);
        QVERIFY(nextMode(m_stand.get()).isNull());
        m_stand->tell("drop");
        QTRY_COMPARE(first.text(), "Один дваТриЧетыре пять");
        QCOMPARE(second.text(), QString());
    }

    void leavesAWindowThatCloses() {
        LaunchSettings().OutputToBackground = true;
        auto first = std::make_unique<Editor>("closed.txt");
        QVERIFY(start() && startDictation());
        m_stand->sayResult("один");
        QTRY_COMPARE(first->text(), "Один");
        first.reset();
        for (const QString word : {"два", "три"})
            m_stand->sayResult(word);
        QVERIFY(m_program->waitForLog("Notification: Окно, в которое печатался текст, закрыто."));
        const Editor second("open.txt");
        QTRY_COMPARE(second.text(), " два три");
        const Editor third("third.txt");
        m_stand->sayResult("четыре");
        QTRY_COMPARE(third.text(), " четыре");
        QCOMPARE(m_program->log().count("печатался текст, закрыто"), 1);
    }

    void goesOnWithAnotherMicrophone() {
        const QString feed = desk().loadModule({"module-null-sink", "sink_name=otherfeed"});
        const QString other = desk().loadModule(
            {"module-remap-source", "master=otherfeed.monitor", "source_name=other"});
        QVERIFY(start() && startDictation());
        desk().unloadModule(other);
        QVERIFY2(soundFlows(), "the remaining microphone takes over");
        const QString again = desk().loadModule(
            {"module-remap-source", "master=otherfeed.monitor", "source_name=other"});
        QVERIFY(soundFlows());
        desk().unloadModule(again);
        desk().unloadModule(feed);
        QVERIFY(soundFlows());
    }

    void stopsWithoutAMicrophone() {
        desk().stopSound();
        QVERIFY(start());
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        QVERIFY(nextMode(m_stand.get()).isNull());
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
        desk().startSound();
        QVERIFY(m_program->waitForLog("Connected to pulse audio"));
        QVERIFY(m_program->waitForLog("Created audio input"));
        QVERIFY(startDictation());
    }

    void endsWhileItDictates() {
        Editor editor("end.txt");
        QVERIFY(start() && startDictation());
        for (int i = 0; i < 20; ++i)
            m_stand->sayResult("слово №");
        m_stand->forget();
        QCOMPARE(m_program->terminate(), 0);
        QVERIFY(!m_stand->waitFor("disconnected").isEmpty());
        QTRY_VERIFY(editor.text().startsWith("Слово №"));
    }
};

DESK_TEST_MAIN(TestDictation, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestDictation.moc"
