#include "DeskTest.h"
#include "Editor.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/LaunchSettings.h"

#include <QFile>
#include <QJsonArray>

/// The whole program on a whole desk: keys, sound, server, typed text.
class TestDictation : public QObject {
    Q_OBJECT

private slots:
    void init();
    void dictatesIntoTheFocusedWindow();
    void dictatesWhileAKeyIsHeld();
    void staysWithItsWindowInTheBackground();
    void goesOnWithAnotherMicrophone();
    void goesOnAfterPulseAudio();
    void stopsWithoutAMicrophone();
    void endsWhileItDictates();

private:
    /// Starts the program and waits until it is ready, all its messages sent.
    std::unique_ptr<Program> startProgram(Stand *stand);
    bool startDictation(Stand *stand);
    /// Waits until as much more sound has come as a second gives.
    static bool soundFlows(Stand *stand);
    static const QString doubleCtrl;
};

const QString TestDictation::doubleCtrl =
    QStringLiteral("+Control_L -Control_L +Control_L -Control_L");

void TestDictation::init() {
    QFile::remove(Settings(QString()).fileName());
    Settings(QString()).sync();
}

std::unique_ptr<Program> TestDictation::startProgram(Stand *stand) {
    stand->writeSettings();
    {
        ConnectionManagerSettings().QuietConnectionEnabled = true;
        ASRSettings().SelectedTheme = QStringLiteral("therapy");
    }
    Settings(QString()).sync();
    auto program = std::make_unique<Program>();
    // The last of the opening messages.
    if (stand->waitForMessage(MessageType::StartMode, 20000).isEmpty())
        return nullptr;
    return program;
}

bool TestDictation::startDictation(Stand *stand) {
    stand->forget();
    XKeyboard().play(doubleCtrl);
    const QJsonObject start = stand->waitForMessage(MessageType::StartMode);
    return !start.isEmpty() && start["data"].toObject()["Type"].isNull() && soundFlows(stand);
}

bool TestDictation::soundFlows(Stand *stand) {
    constexpr int secondBytes = 32000;
    stand->forget();
    int bytes = 0;
    while (bytes < secondBytes) {
        const QJsonObject sound = stand->waitFor(QStringLiteral("sound"));
        if (sound.isEmpty())
            return false;
        bytes += sound["bytes"].toInt();
    }
    return true;
}

void TestDictation::dictatesIntoTheFocusedWindow() {
    Stand stand;
    Editor editor(QStringLiteral("plain.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    const XKeyboard keyboard;
    const QByteArray map = keyboard.map();
    QVERIFY(startDictation(&stand));
    stand.sayResult(QStringLiteral("жалобы на"), false);
    stand.sayResult(QStringLiteral("жалобы на кашель ,"));
    stand.sayResult(QStringLiteral("одышку . 38,5 ° C ¶ общее состояние"));
    QTRY_COMPARE_WITH_TIMEOUT(editor.text(),
                              QStringLiteral("Жалобы на кашель, одышку. 38,5 ° C\nОбщее состояние"),
                              10000);
    QCOMPARE(keyboard.map(), map);

    stand.forget();
    XKeyboard().play(doubleCtrl);
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 0);
    stand.sayResult(QStringLiteral("не в тексте"));
    QVERIFY(startDictation(&stand));
    stand.sayResult(QStringLiteral("ещё"));
    QTRY_VERIFY(editor.text().endsWith(QStringLiteral("Общее состояниеЕщё")));
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::dictatesWhileAKeyIsHeld() {
    HotkeySettings().UseHotkey = false;
    HotkeySettings().P2TKey = QStringLiteral("Pause");
    Stand stand;
    Editor editor(QStringLiteral("held.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    stand.forget();
    XKeyboard keyboard;
    keyboard.press(QStringLiteral("Pause"));
    QVERIFY(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].isNull());
    QVERIFY(soundFlows(&stand));
    stand.sayResult(QStringLiteral("пока нажата"));
    QTRY_COMPARE(editor.text(), QStringLiteral("Пока нажата"));
    stand.forget();
    keyboard.release(QStringLiteral("Pause"));
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 0);
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::staysWithItsWindowInTheBackground() {
    LaunchSettings().OutputToBackground = true;
    Stand stand;
    QJsonArray servers{
        QJsonObject{{"ServerId", "0"}, {"ConnectionString", stand.connectionString()}}};
    for (const char *id : {"1", "2"}) {
        const QJsonObject opened = stand.tell("open");
        servers.append(QJsonObject{{"ServerId", id},
                                   {"ConnectionString", QStringLiteral("127.0.0.1;%1;%2")
                                                            .arg(opened["port"].toInt())
                                                            .arg(opened["rest"].toInt())}});
    }
    stand.tell({{"do", "servers"}, {"mode", "normal"}, {"list", servers}});
    Editor first(QStringLiteral("first.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    QVERIFY(startDictation(&stand));
    const Editor second(QStringLiteral("second.txt"));
    stand.sayResult(QStringLiteral("один"));
    QTRY_COMPARE(first.text(), QStringLiteral("Один"));
    for (const char *word : {"два", "три"}) {
        stand.sayResult(QString::fromUtf8(word), false);
        stand.forget();
        stand.tell("drop");
        QVERIFY(!stand.waitFor(QStringLiteral("connected")).isEmpty());
        QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
        QVERIFY(soundFlows(&stand));
    }
    stand.sayResult(QStringLiteral("четыре"));
    QTRY_COMPARE(first.text(), QStringLiteral("Один дваТриЧетыре"));
    QCOMPARE(second.text(), QString());
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::goesOnWithAnotherMicrophone() {
    Stand stand;
    const QString feed = desk().loadModule(
        {QStringLiteral("module-null-sink"), QStringLiteral("sink_name=otherfeed")});
    const QString other = desk().loadModule({QStringLiteral("module-remap-source"),
                                             QStringLiteral("master=otherfeed.monitor"),
                                             QStringLiteral("source_name=other")});
    const auto program = startProgram(&stand);
    QVERIFY(program);
    QVERIFY(startDictation(&stand));
    desk().unloadModule(other);
    QVERIFY2(soundFlows(&stand), "the remaining microphone takes over");
    const QString again = desk().loadModule({QStringLiteral("module-remap-source"),
                                             QStringLiteral("master=otherfeed.monitor"),
                                             QStringLiteral("source_name=other")});
    QVERIFY(soundFlows(&stand));
    desk().unloadModule(again);
    desk().unloadModule(feed);
    QVERIFY(soundFlows(&stand));
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::goesOnAfterPulseAudio() {
    Stand stand;
    const auto program = startProgram(&stand);
    QVERIFY(program);
    QVERIFY(startDictation(&stand));
    for (int round = 0; round < 2; ++round) {
        desk().stopSound();
        QVERIFY(program->waitForLog(QStringLiteral("pa_context_connect failed")));
        desk().startSound();
        QVERIFY(program->waitForLog(QStringLiteral("Connected to pulse audio")));
        stand.forget();
        if (stand.waitFor(QStringLiteral("sound"), {}, 8000).isEmpty())
            QVERIFY2(startDictation(&stand), "dictation starts again");
        QVERIFY(soundFlows(&stand));
    }
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::stopsWithoutAMicrophone() {
    desk().stopSound();
    Stand stand;
    const auto program = startProgram(&stand);
    QVERIFY(program);
    stand.forget();
    XKeyboard().play(doubleCtrl);
    QVERIFY(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].isNull());
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 0);
    desk().startSound();
    QVERIFY(program->waitForLog(QStringLiteral("Connected to pulse audio")));
    QVERIFY(program->waitForLog(QStringLiteral("Created audio input")));
    QVERIFY(startDictation(&stand));
    QCOMPARE(program->terminate(), 0);
}

void TestDictation::endsWhileItDictates() {
    Stand stand;
    Editor editor(QStringLiteral("end.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    QVERIFY(startDictation(&stand));
    for (int i = 0; i < 20; ++i)
        stand.sayResult(QStringLiteral("слово №"));
    stand.forget();
    QCOMPARE(program->terminate(), 0);
    QVERIFY(!stand.waitFor(QStringLiteral("disconnected")).isEmpty());
    QTRY_VERIFY(editor.text().startsWith(QStringLiteral("Слово №")));
}

DESK_TEST_MAIN(TestDictation, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestDictation.moc"
