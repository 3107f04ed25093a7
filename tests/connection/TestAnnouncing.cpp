#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "commands/LaunchManager.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"

#include <QDir>
#include <QSemaphore>
#include <QStandardPaths>

using UserCommandNamespace::UserCommandType;

namespace {

const QList<int> openingMessages{MessageType::SetParameters, MessageType::SelectTheme,
                                 MessageType::SetCommands, MessageType::SetPersonalWords,
                                 MessageType::StartMode};

UserCommand keyCommand(const QString &id, const QString &pattern) {
    UserCommand command(UserCommandType::Key);
    command.Id = id;
    command.Pattern = pattern;
    command.Text = "Ctrl+C";
    return command;
}

/// The announced commands as "3/copy/Скопировать".
QStringList announced(const QJsonObject &message) {
    QStringList commands;
    for (const QJsonValue &value : message["data"].toObject()["Commands"].toArray()) {
        const CommandInfo command(value.toObject());
        commands += QStringLiteral("%1/%2/%3")
                        .arg(static_cast<int>(command.type()))
                        .arg(command.id(), command.pattern());
    }
    return commands;
}

} // namespace

/// What the server is told of the commands, and when.
class TestAnnouncing : public QObject {
    Q_OBJECT

private slots:
    void init();
    void opensInOrderEachTime();
    void tellsTheWholeListOfAnotherTheme();
    void keepsItsIds();

private:
    /// Gives the user one command, wired as the application wires it.
    static void prepare(ClientHarness *client);
};

void TestAnnouncing::init() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir(folder + "/commands").removeRecursively();
}

void TestAnnouncing::prepare(ClientHarness *client) {
    UserCommandsManager &commands = client->userCommands();
    connect(client->asr(), &AsrManager::selectedThemeChanged, &commands,
            &UserCommandsManager::updateCommands);
    commands.LoadAll();
    commands.set_Commands({{QString(), {keyCommand("copy", "Скопировать")}}});
    commands.updateCommands();
}

void TestAnnouncing::opensInOrderEachTime() {
    Stand stand;
    ClientHarness client(stand);
    prepare(&client);
    client.manager()->setReconnectDelay(0);
    client.enableVoice();
    client.worker()->launchManager()->updateSettings();
    QVERIFY(client.open());
    const QStringList commands = announced(stand.waitForMessage(MessageType::SetCommands));
    QCOMPARE(commands.size(), 3);
    QCOMPARE(commands[0], "3/copy/Скопировать");
    QVERIFY(commands[1].startsWith("1/vac_"));
    QVERIFY(commands[2].startsWith("2/vdc_"));
    const QJsonObject start = stand.waitForMessage(MessageType::StartMode);
    QCOMPARE(start["data"].toObject()["Type"].toInt(), 1);
    QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);
    QCOMPARE(client.messages(stand), openingMessages);

    // The next connection opens and waits while this thread has heard of nothing yet.
    QSemaphore isOpen;
    QSemaphore mayGoOn;
    const auto onState = [&](const ConnectionStateInfo &info) {
        if (info.is(ConnectionState::WsConnected)) {
            isOpen.release();
            mayGoOn.tryAcquire(1, patienceMs);
        }
    };
    connect(client.manager(), &ConnectionManager::stateChanged, client.manager(), onState,
            Qt::DirectConnection);
    client.forget();
    QMetaObject::invokeMethod(client.manager(), &ConnectionManager::onDisconnectRequested,
                              Qt::QueuedConnection);
    QVERIFY(isOpen.tryAcquire(1, patienceMs));
    QVERIFY(client.asr()->getTargetModeInfo()->mode().has_value());
    client.userCommands().updateCommands();
    client.worker()->launchManager()->updateSettings();
    mayGoOn.release();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    QTRY_COMPARE(client.messages(stand), openingMessages);
    QCOMPARE(announced(stand.waitForMessage(MessageType::SetCommands)), commands);
}

void TestAnnouncing::tellsTheWholeListOfAnotherTheme() {
    Stand stand;
    ClientHarness client(stand);
    prepare(&client);
    QVERIFY(client.open());
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    client.userCommands().UpdateThemesFromAsr();
    client.userCommands().set_Commands(
        {{QString(), client.userCommands().get_ThemeCommands(QString())},
         {"cardiology", {keyCommand("pulse", "Пульс")}}});
    stand.forget();
    ASRSettings().SelectedTheme = "cardiology";
    client.asr()->selectedTheme();
    // Behind the lists of the saving above, which may still be on their way.
    const auto hasBoth = [](const QJsonObject &event) {
        return announced(event) == QStringList{"3/copy/Скопировать", "3/pulse/Пульс"};
    };
    QVERIFY(!stand.waitFor("message", hasBoth).isEmpty());
    QVERIFY(!stand.waitForMessage(MessageType::SelectTheme).isEmpty());
}

void TestAnnouncing::keepsItsIds() {
    Stand stand;
    ClientHarness client(stand);
    client.enableVoice();
    const auto ids = [&client] {
        QStringList result;
        for (const CommandInfo &command : LaunchManager(client.asr()).executableCommands())
            result += command.id();
        return result;
    };
    const QStringList first = ids();
    Settings(QString()).sync();
    QCOMPARE(ids(), first);
    QCOMPARE(first.size(), 2);
    QVERIFY(first[0].startsWith("vac_") && first[0].size() > 4);
    QCOMPARE(first[1], "vdc_" + first[0].mid(4));

    client.enableVoice(false);
    QVERIFY2(ids().isEmpty(), "what is not available is forgotten");
    QVERIFY(!LaunchSettings().VoiceActivationEnabled);
    QVERIFY(!LaunchSettings().VoiceDeactivationEnabled);
}

DESK_CORE_TEST_MAIN(TestAnnouncing)
#include "TestAnnouncing.moc"
