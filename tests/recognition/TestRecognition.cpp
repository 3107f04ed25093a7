#include "DeskTest.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"

#include <QFile>
#include <QSignalSpy>

#include <future>

namespace {

using Modes = std::optional<RecognitionMode>;

ClientThemeInfo theme(const char *id) {
    ClientThemeInfo info;
    info.setId(id);
    return info;
}

FormMetadata formOf(const char *themeId) {
    FormMetadata form;
    form.setThemeId(themeId);
    return form;
}

} // namespace

/// The target mode and the mirror of the server's modes, without a connection.
class TestRecognition : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFile::remove(Settings(QString()).fileName());
        Settings(QString()).sync();
    }

    void followsTheSettingWhileIdle_data() {
        // -1 for a target that was never set.
        columns<int, bool, int>("stored", "isVoiceEnabled", "expected");
        row("never set", -1, false, 0);
        row("never set, voice on", -1, true, 1);
        row("off, voice on since", 0, true, 1);
        row("voice, off since", 1, false, 0);
        row("dictation stays", 2, true, 2);
        row("form stays", 3, true, 3);
    }

    void followsTheSettingWhileIdle() {
        QFETCH(int, stored);
        QFETCH(bool, isVoiceEnabled);
        LaunchSettings().VoiceActivationEnabled = isVoiceEnabled;
        TargetModeInfo target;
        if (stored >= 0) {
            target.BackupTargetMode(static_cast<RecognitionMode>(stored), std::nullopt,
                                    std::nullopt, QString());
        }
        QCOMPARE(target.isEmpty(), stored < 0);
        QTEST(static_cast<int>(*target.getTargetMode()), "expected");
        QCOMPARE(target.mode(), target.getTargetMode());
        QCOMPARE(target.isEmpty(), stored < 0);
    }

    void findsTheTargetTheme_data() {
        columns<int, QString, QString, bool, QString>("mode", "formTheme", "targetTheme", "isFine",
                                                      "found");
        row("no target", -1, "", "a", true, "");
        row("idle wants none", 1, "", "a", true, "");
        row("dictation", 2, "", "b", true, "b");
        row("dictation, gone", 2, "", "z", false, "");
        row("dictation without one", 2, "", "", true, "");
        row("form's own", 3, "a", "b", true, "a");
        row("form without one", 4, "", "b", true, "b");
        row("form's own, gone", 3, "z", "b", false, "");
    }

    void findsTheTargetTheme() {
        QFETCH(int, mode);
        QFETCH(QString, formTheme);
        QFETCH(QString, targetTheme);
        TargetModeInfo target;
        if (mode >= 0) {
            target.BackupTargetMode(static_cast<RecognitionMode>(mode),
                                    formOf(qPrintable(formTheme)), std::nullopt, targetTheme);
        }
        std::optional<ClientThemeInfo> found;
        QTEST(target.FindTargetTheme({theme("a"), theme("b")}, &found), "isFine");
        QTEST(found ? found->id() : QString(), "found");
    }

    void changesTheFormOnlyInAFormMode() {
        TargetModeInfo target;
        const auto change = [&target] {
            target.BackupTargetElement("field");
            target.UpdateTargetCommandSet({"c"});
            target.UpdateTargetFormSettings({{"k", 1}});
            target.UpdateTargetTheme("t");
        };
        target.BackupTargetMode(RecognitionMode::Text, formOf("a"), std::nullopt, QString());
        change();
        QVERIFY(!target.formElement() && target.form()->formCommands().isEmpty());
        QCOMPARE(target.form()->themeId(), "a");
        QCOMPARE(target.themeId(), "t");

        target.BackupTargetMode(RecognitionMode::TemplatedForm, formOf("a"), std::nullopt,
                                QString());
        change();
        QCOMPARE(*target.formElement(), "field");
        QCOMPARE(target.form()->formCommands().size(), 1);
        QCOMPARE(target.form()->formSettings(), "{\"k\":1}");
        QCOMPARE(target.form()->themeId(), "t");

        unsigned long window = 0;
        target.UpdateTargetHandles(7);
        QVERIFY(target.GetTargetHandles(&window) && window == 7);
        target.ResetTargetMode();
        QVERIFY(!target.GetTargetHandles(&window) && !target.mode() && !target.form() &&
                target.isEmpty());
    }

    void reportsAModeOnce() {
        WebSocketClient client(nullptr);
        AsrManager manager(&client);
        QSignalSpy changes(&manager, &AsrManager::currentModeOrStateChanged);
        RecognitionMode startedBefore = RecognitionMode::TemplatedForm;
        connect(&manager, &AsrManager::currentModeOrStateChanged, this,
                [&] { startedBefore = manager.getLastStartedMode(); });
        const auto report = [&client](const char *data) {
            client.messageProcessor()->onTextMessageReceived(
                QStringLiteral("{\"MessageType\":2,\"Data\":%1}").arg(QLatin1String(data)));
        };
        report(R"({"Mode":2,"State":1,"Info":"x"})");
        QCOMPARE(changes.count(), 1);
        QCOMPARE(startedBefore, RecognitionMode::Off);
        QCOMPARE(manager.getLastStartedMode(), RecognitionMode::Text);
        report(R"({"Mode":2,"State":1})");
        report(R"({"Mode":5,"State":1})");
        report(R"({"Mode":-1,"State":0})");
        report(R"({"Mode":"2","State":[]})"); // reads as Off, Starting
        QCOMPARE(changes.count(), 2);
        QCOMPARE(changes.last().at(0).value<RecognitionMode>(), RecognitionMode::Off);
    }

    void asksForModes_data() {
        // -1 for no target, and for no report of a mode that stops.
        columns<int, int, bool, int, int>("target", "request", "isVoiceEnabled", "stoppingMode",
                                          "newTarget");
        enum { Start, Stop };
        row("start", -1, +Start, false, 0, 2);
        row("start again", 2, +Start, false, -1, 2);
        row("stop", 2, +Stop, false, 2, 0);
        row("stop again", 0, +Stop, false, -1, 0);
        row("stop, voice on", 2, +Stop, true, 2, 1);
        row("stop a form", 3, +Stop, false, 3, 0);
    }

    void asksForModes() {
        QFETCH(int, target);
        QFETCH(int, request);
        QFETCH(int, stoppingMode);
        QFETCH(bool, isVoiceEnabled);
        WebSocketClient client(nullptr);
        AsrManager manager(&client);
        manager.setIsVoiceActivationEnabled(isVoiceEnabled);
        if (target >= 0) {
            manager.getTargetModeInfo()->BackupTargetMode(static_cast<RecognitionMode>(target),
                                                          FormMetadata(), std::nullopt, QString());
        }
        QSignalSpy changes(&manager, &AsrManager::currentModeOrStateChanged);
        if (request == 0)
            manager.startRecognitionMode(std::nullopt, true);
        else
            manager.stopRecognition();
        QCOMPARE(changes.count(), stoppingMode < 0 ? 0 : 1);
        if (stoppingMode >= 0) {
            QCOMPARE(static_cast<int>(changes[0].at(0).value<RecognitionMode>()), stoppingMode);
            QCOMPARE(changes[0].at(1).value<AsrState>(), AsrState::Stopping);
        }
        QTEST(static_cast<int>(*manager.getTargetModeInfo()->mode()), "newTarget");
        QVERIFY(!manager.getTargetModeInfo()->form());
        changes.clear();
        ConnectionStateInfo info;
        info.setState(static_cast<int>(ConnectionState::ThemesRequested));
        manager.connectionStateChanged(info);
        QCOMPARE(changes.count(), stoppingMode < 0 ? 0 : 1);
        if (stoppingMode >= 0)
            QCOMPARE(changes[0].at(1).value<AsrState>(), AsrState::Stopped);
    }

    void refusesToStartWithoutAConnection() {
        WebSocketClient client(nullptr);
        AsrManager manager(&client);
        QStringList errors;
        connect(&manager, &AsrManager::errorNotification, this,
                [&errors](const QString &error) { errors << error; });
        QSignalSpy sent(&client, &WebSocketConnection::sendText);
        manager.changeRecognition(); // nothing has been tried yet
        ConnectionStateInfo info;
        info.setState(static_cast<int>(ConnectionState::Failed));
        manager.connectionStateChanged(info);
        manager.changeRecognition();
        info.setMessage("Не удалось получить список серверов");
        manager.connectionStateChanged(info);
        manager.startRecognition();
        const QString usual = "Не удалось подключиться к серверу";
        QCOMPARE(errors, QStringList({usual, usual, "Не удалось получить список серверов"}));
        QVERIFY(!manager.getTargetModeInfo()->mode());
        manager.stopRecognition();
        QCOMPARE(sent.count(), 0);
    }

    void keepsNobodyWaitingForItsReceivers() {
        WebSocketClient client(nullptr);
        AsrManager manager(&client);
        std::vector<std::future<AsrState>> blocksOfSound;
        QStringList late;
        const auto receive = [&](const char *signal) {
            if (!late.isEmpty())
                return;
            blocksOfSound.push_back(
                std::async(std::launch::async, [&] { return manager.currentState(); }));
            if (blocksOfSound.back().wait_for(std::chrono::milliseconds(patienceMs)) !=
                std::future_status::ready)
                late << signal;
        };
        connect(&manager, &AsrManager::currentModeOrStateChanged, this, [&] { receive("mode"); });
        connect(&manager, &AsrManager::errorNotification, this, [&] { receive("error"); });
        connect(&manager, &AsrManager::connected, this, [&] { receive("connected"); });
        connect(&manager, &AsrManager::connectionLost, this, [&] { receive("lost"); });
        manager.startRecognition();
        for (const ConnectionState state :
             {ConnectionState::Ready, ConnectionState::Disconnected}) {
            ConnectionStateInfo info;
            info.setState(static_cast<int>(state));
            manager.connectionStateChanged(info);
            manager.stopRecognition();
        }
        QCOMPARE(late, QStringList());
        QVERIFY(blocksOfSound.size() >= 4);
    }
};

DESK_CORE_TEST_MAIN(TestRecognition)
#include "TestRecognition.moc"
