#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "commands/LaunchManager.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"

#include <QDir>
#include <QJsonArray>
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
    command.Text = QStringLiteral("Ctrl+C");
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

/// The numbers of the messages behind the last handshake, in their order.
QList<int> messagesOfLastConnection(const Stand &stand) {
    QList<int> types;
    for (const QJsonObject &event : stand.events()) {
        if (event["event"].toString() == QLatin1String("connected"))
            types.clear();
        else if (event["event"].toString() == QLatin1String("message"))
            types << event["type"].toInt();
    }
    return types;
}

void enableVoice(bool isAvailable) {
    LaunchSettings settings;
    settings.GlobalEnableVAC = isAvailable;
    settings.VoiceActivationEnabled = true;
    settings.VoiceDeactivationEnabled = true;
}

} // namespace

/// What the server is told of the commands, and when.
class TestAnnouncing : public QObject {
    Q_OBJECT

private slots:
    void init();
    void opensInOrderEachTime();
    void tellsTheWholeListOfAnotherTheme();
    void tellsAnEmptyList();
    void keepsItsIds();
    void forgetsWhatIsNotAvailable();
    void isSilentOnAConnectionThatOpens();

private:
    /// Gives the user one command, wired as the application wires it.
    static void prepare(ClientHarness *client);
    static bool reconnect(Stand *stand, ClientHarness *client);
};

void TestAnnouncing::init() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir(folder + QStringLiteral("/commands")).removeRecursively();
}

void TestAnnouncing::prepare(ClientHarness *client) {
    UserCommandsManager &commands = client->userCommands();
    connect(client->asr(), &AsrManager::selectedThemeChanged, &commands,
            &UserCommandsManager::updateCommands);
    commands.LoadAll();
    commands.set_Commands(
        {{QString(), {keyCommand(QStringLiteral("copy"), QStringLiteral("Скопировать"))}}});
    commands.updateCommands();
}

bool TestAnnouncing::reconnect(Stand *stand, ClientHarness *client) {
    client->forget();
    stand->forget();
    stand->tell("drop");
    return client->waitFor(ConnectionState::Ready);
}

void TestAnnouncing::opensInOrderEachTime() {
    Stand stand;
    ClientHarness client(stand);
    prepare(&client);
    client.manager()->setReconnectDelay(0);
    enableVoice(true);
    client.worker()->launchManager()->updateSettings();
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    for (int connection = 0; connection < 2; ++connection) {
        const QStringList commands = announced(stand.waitForMessage(MessageType::SetCommands));
        QCOMPARE(commands.size(), 3);
        QCOMPARE(commands[0], QStringLiteral("3/copy/Скопировать"));
        QVERIFY(commands[1].startsWith(QStringLiteral("1/vac_")));
        QVERIFY(commands[2].startsWith(QStringLiteral("2/vdc_")));
        const QJsonObject start = stand.waitForMessage(MessageType::StartMode);
        QCOMPARE(start["data"].toObject()["Type"].toInt(), 1);
        QTRY_COMPARE(client.asr()->getLastStartedMode(), RecognitionMode::VoiceActivation);
        stand.forget();
        QCOMPARE(messagesOfLastConnection(stand), openingMessages);
        QVERIFY(connection == 1 || reconnect(&stand, &client));
    }
}

void TestAnnouncing::tellsTheWholeListOfAnotherTheme() {
    Stand stand;
    ClientHarness client(stand);
    prepare(&client);
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    client.userCommands().UpdateThemesFromAsr();
    client.userCommands().set_Commands(
        {{QString(), client.userCommands().get_ThemeCommands(QString())},
         {QStringLiteral("cardiology"),
          {keyCommand(QStringLiteral("pulse"), QStringLiteral("Пульс"))}}});
    stand.forget();
    ASRSettings().SelectedTheme = QStringLiteral("cardiology");
    client.asr()->selectedTheme();
    QCOMPARE(announced(stand.waitForMessage(MessageType::SetCommands)),
             QStringList({QStringLiteral("3/copy/Скопировать"), QStringLiteral("3/pulse/Пульс")}));
    QVERIFY(!stand.waitForMessage(MessageType::SelectTheme).isEmpty());
}

void TestAnnouncing::tellsAnEmptyList() {
    Stand stand;
    ClientHarness client(stand);
    client.start();
    const QJsonObject data = stand.waitForMessage(MessageType::SetCommands)["data"].toObject();
    QCOMPARE(data, QJsonObject({{"Commands", QJsonArray()}}));
}

void TestAnnouncing::keepsItsIds() {
    Stand stand;
    ClientHarness client(stand);
    enableVoice(true);
    QStringList ids;
    for (int run = 0; run < 2; ++run) {
        Settings(QString()).sync();
        for (const CommandInfo &command : LaunchManager(client.asr()).executableCommands())
            ids += command.id();
    }
    QCOMPARE(ids.size(), 4);
    QCOMPARE(ids.mid(2), ids.mid(0, 2));
    QVERIFY(ids[0].startsWith(QStringLiteral("vac_")) && ids[0].size() > 4);
    QCOMPARE(ids[1], QStringLiteral("vdc_") + ids[0].mid(4));
}

void TestAnnouncing::forgetsWhatIsNotAvailable() {
    Stand stand;
    ClientHarness client(stand);
    enableVoice(false);
    QVERIFY(LaunchManager(client.asr()).executableCommands().isEmpty());
    const LaunchSettings settings;
    QVERIFY(!settings.VoiceActivationEnabled);
    QVERIFY(!settings.VoiceDeactivationEnabled);
}

void TestAnnouncing::isSilentOnAConnectionThatOpens() {
    Stand stand;
    ClientHarness client(stand);
    prepare(&client);
    client.manager()->setReconnectDelay(0);
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());

    // The next connection opens and waits while this thread has heard of nothing yet.
    QSemaphore isOpen;
    QSemaphore mayGoOn;
    const auto onState = [&](const ConnectionStateInfo &info) {
        if (info.is(ConnectionState::WsConnected)) {
            isOpen.release();
            mayGoOn.tryAcquire(1, 20000);
        }
    };
    connect(client.manager(), &ConnectionManager::stateChanged, client.manager(), onState,
            Qt::DirectConnection);
    client.forget();
    QMetaObject::invokeMethod(client.manager(), &ConnectionManager::onDisconnectRequested,
                              Qt::QueuedConnection);
    QVERIFY(isOpen.tryAcquire(1, 10000));
    QVERIFY(client.asr()->getTargetModeInfo()->mode().has_value());
    client.userCommands().updateCommands();
    client.worker()->launchManager()->updateSettings();
    mayGoOn.release();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    QTRY_COMPARE(messagesOfLastConnection(stand), openingMessages);
}

DESK_CORE_TEST_MAIN(TestAnnouncing)
#include "TestAnnouncing.moc"
