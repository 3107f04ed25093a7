#include "Files.h"
#include "KeyReceiver.h"
#include "ProgramTest.h"
#include "ProgramWindow.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QJsonArray>

namespace {

/// Where the tabs of the settings are.
enum Tab { LaunchTab = 150, RecognitionTab = 263, NetworkTab = 455 };

} // namespace

/// The windows in a user's hands: what is chosen in them reaches the settings, the files and the
/// server.
class TestWindows : public ProgramTest {
    Q_OBJECT

private slots:
    void asksForADictionary() {
        start(false);
        const ProgramWindow window("Выбор темы");
        ProgramWindow::key("Down");
        window.accept();
        QVERIFY(window.isGone());
        const QJsonObject theme = m_stand->waitForMessage(MessageType::SelectTheme);
        QCOMPARE(theme["data"].toObject()["Id"], QJsonValue("cardiology"));
        QVERIFY(!nextMode(m_stand.get()).isUndefined());
        QTRY_COMPARE(ASRSettings().SelectedTheme.get(), QString("cardiology"));
    }

    void doesNotGoOnWithoutADictionary() {
        start(false);
        const ProgramWindow window("Выбор темы");
        ProgramWindow::key("Escape");
        QVERIFY(window.isGone());
        QCOMPARE(m_program->waitForExit(), 0);
        const QString log = m_program->log();
        QVERIFY2(log.lastIndexOf("Start begin") < log.indexOf("Stop begin: WebSocketWorker"),
                 "what is ending starts nothing");
        QCOMPARE(ASRSettings().SelectedTheme.get(), QString());
    }

    void settingsReachTheServer() {
        start(true);
        {
            const ProgramWindow window = openSettings();
            window.click(RecognitionTab, 33);
            window.click(300, 103);
            ProgramWindow::key("Down Down Return");
            window.click(LaunchTab, 33);
            // The lower of the two choices of a key.
            window.click(36, 270);
            window.click(-200, 270);
            ProgramWindow::key("Down Return");
            m_stand->forget();
            m_program->forgetLog();
            window.accept();
            QVERIFY(window.isGone());
        }
        const QJsonObject theme = m_stand->waitForMessage(MessageType::SelectTheme);
        QCOMPARE(theme["data"].toObject()["Id"], QJsonValue("surgery"));
        QTRY_VERIFY(!HotkeySettings().UseHotkey);
        QCOMPARE(HotkeySettings().P2TKey.get(), QString("Pause"));
        QVERIFY(m_program->waitForLog("KeyboardListener::initialize"));
        m_stand->forget();
        XKeyboard keyboard;
        keyboard.play("+Pause");
        QVERIFY2(nextMode(m_stand.get()).isNull(), "the new key counts at once");
        keyboard.play("-Pause");

        // What is not accepted changes nothing.
        const QByteArray before = bytesOf(Settings(QString()).fileName());
        const ProgramWindow window = openSettings();
        window.click(RecognitionTab, 33);
        window.click(36, 143);
        ProgramWindow::key("Escape");
        QVERIFY(window.isGone());
        QCOMPARE(bytesOf(Settings(QString()).fileName()), before);
    }

    void devicesChangeAtOnce() {
        desk().loadModule({"module-remap-source", "master=micfeed.monitor", "source_name=other",
                           "source_properties=device.description=Other"});
        RecordingDeviceSettings().Name = "mic";
        start(true);
        {
            const ProgramWindow window = openSettings();
            window.click(-200, 215);
            ProgramWindow::key("End Return");
            QVERIFY(m_program->waitForLog("Created audio input Other"));
            // Closed by the window manager.
            ProgramWindow::key("alt+F4");
            QVERIFY(window.isGone());
            QVERIFY2(m_program->waitForLog("Created audio input Microphone"), "not accepted");
            QCOMPARE(RecordingDeviceSettings().Name.get(), QString("mic"));
        }
        const QString stored = RecordingDeviceSettings().Name;
        {
            const ProgramWindow window = openSettings();
            desk().unloadModule("module-remap-source");
            QVERIFY(m_program->waitForLog("Delete audio input"));
            ProgramWindow::key("Escape");
            QVERIFY(window.isGone());
            QCOMPARE(RecordingDeviceSettings().Name.get(), stored);
        }
        const ProgramWindow window = openSettings();
        window.accept();
        QVERIFY2(window.isGone(), "a page whose devices are gone can be applied");
        QCOMPARE(RecordingDeviceSettings().Name.get(), stored);
        desk().stopSound();
        desk().startSound();
    }

    void wrongAddressIsRefused() {
        start(true);
        const ProgramWindow window = openSettings();
        window.click(NetworkTab, 33);
        window.click(300, 144, 3);
        ProgramWindow::type("two words");
        window.click(70, 33);
        window.accept();
        // The page at fault is shown, with the focus where the fault is.
        ProgramWindow::key("ctrl+a");
        ProgramWindow::type("localhost");

        QVERIFY(window.isOpen());
        QCOMPARE(BalancerConnectionSettings().Ip.get(), QString("127.0.0.1"));
        m_stand->forget();
        // To the port, and past "Отмена".
        ProgramWindow::key("Tab Tab Tab Return");
        QVERIFY(window.isGone());
        QVERIFY2(!m_stand->waitFor("connected").isEmpty(), "the new address is tried at once");
        QCOMPARE(BalancerConnectionSettings().Ip.get(), QString("localhost"));
    }

    void commandsAreEdited() {
        KeyReceiver receiver;
        start(true);
        {
            const ProgramWindow window =
                ProgramWindow::openFromTray(ProgramWindow::ReplacesEntry, "Автозамена");
            ProgramWindow::key("Insert");
            const ProgramWindow dialog("Добавить");
            ProgramWindow::type("bp");
            ProgramWindow::key("Tab");
            ProgramWindow::type("blood pressure");
            ProgramWindow::key("Tab Right Return");
            QVERIFY(dialog.isGone());
            // The new one is the current row.
            ProgramWindow::key("F4");
            const ProgramWindow change("Изменить");
            ProgramWindow::key("Down");
            ProgramWindow::type(" 120");
            change.accept();
            QVERIFY(change.isGone());
            window.accept();
            QVERIFY(window.isGone());
        }
        desk().run("xdotool", {"windowfocus", "--sync", QString::number(receiver.window())});
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        QCOMPARE(nextMode(m_stand.get()), QJsonValue());
        m_stand->sayResult("bp");
        QVERIFY(receiver.waitForLength(18, 5000));
        QCOMPARE(receiver.text().trimmed().toLower(), QString("blood pressure 120"));
    }

private:
    void start(bool isThemeChosen) {
        if (!isThemeChosen) {
            ASRSettings().SelectedTheme = QString();
            ConnectionManagerSettings().QuietConnectionEnabled = false;
        }
        // Ports that a user could have set, which nobody connects to.
        FormApiSettings().Port = 40001;
        FormApiSettings().RestPort = 40002;
        Settings(QString()).sync();
        m_program = std::make_unique<Program>();
        if (isThemeChosen)
            QVERIFY(!nextMode(m_stand.get(), patienceMs).isUndefined());
    }

    ProgramWindow openSettings() const {
        return ProgramWindow::openFromTray(ProgramWindow::SettingsEntry, "Настройки");
    }
};

DESK_TEST_MAIN(TestWindows, VirtualDesk::Screen | VirtualDesk::Tray | VirtualDesk::Sound)
#include "TestWindows.moc"
