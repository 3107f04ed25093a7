#include "commands/ExecutableCommandsManager.h"

#include "commands/CommandsInfo.h"
#include "commands/ExecutableCommandsSource.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"

ExecutableCommandsManager::ExecutableCommandsManager(
    const QList<ExecutableCommandsSource *> &sources, WebSocketClient *client)
    : m_sources(sources), m_client(client) {
    for (const ExecutableCommandsSource *source : m_sources) {
        connect(source, &ExecutableCommandsSource::commandsChanged, this,
                &ExecutableCommandsManager::refreshCommands);
    }
    refreshCommands();
}

void ExecutableCommandsManager::startAnnouncing(int connectionNumber) {
    m_announcedConnection = connectionNumber;
}

bool ExecutableCommandsManager::isAnnouncing() const {
    // This thread may not have heard yet that the connection is gone and another one opens.
    return m_announcedConnection == m_client->connectionNumber();
}

void ExecutableCommandsManager::refreshCommands() {
    if (!isAnnouncing())
        return;
    QList<CommandInfo> commands;
    for (const ExecutableCommandsSource *source : m_sources)
        commands += source->executableCommands();
    const CommandsInfo info(commands);
    m_client->sendData(MessageType::SetCommands, &info);
    for (const ExecutableCommandsSource *source : m_sources)
        source->onCommandsRefreshed();
}

QString ExecutableCommandsManager::executeCommand(const QString &id) {
    for (const ExecutableCommandsSource *source : m_sources) {
        const QList<CommandInfo> commands = source->executableCommands();
        for (const CommandInfo &command : commands) {
            if (command.id() == id)
                return source->executeCommand(command);
        }
    }
    return QString();
}
