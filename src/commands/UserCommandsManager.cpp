#include "commands/UserCommandsManager.h"

#include "commands/FileCopyCommandExecutor.h"
#include "commands/HotKeyCommandExecutor.h"
#include "commands/ProcessCommandExecutor.h"
#include "recognition/AsrManager.h"

#include <QMutexLocker>

#include <algorithm>

using UserCommandNamespace::UserCommandType;

UserCommandsManager::UserCommandsManager() {
    m_executors[UserCommandType::Exe] = std::make_unique<ProcessCommandExecutor>();
    m_executors[UserCommandType::Key] = std::make_unique<HotKeyCommandExecutor>();
    m_executors[UserCommandType::FileCopy] = std::make_unique<FileCopyCommandExecutor>();
}

UserCommandsManager::~UserCommandsManager() = default;

void UserCommandsManager::LoadAll() {
    updateCommands();
}

QList<UserCommand> UserCommandsManager::LoadFrom(const QString &, ClientThemeInfo *, bool) {
    return {};
}

void UserCommandsManager::SaveTo(const QString &, const ClientThemeInfo &,
                                 const QList<UserCommand> &) {}

void UserCommandsManager::Save(const ClientThemeInfo &, const QList<UserCommand> &) {
    updateCommands();
}

void UserCommandsManager::set_Commands(const QMap<QString, QList<UserCommand>> &commands) {
    {
        const QMutexLocker locker(&m_mutex);
        m_commands = commands;
    }
    emit CommandsChanged();
}

QList<UserCommand> UserCommandsManager::get_ThemeCommands(const QString &themeId) const {
    const QMutexLocker locker(&m_mutex);
    return m_commands.value(themeId);
}

QList<UserCommand> UserCommandsManager::getCommandList() const {
    QList<UserCommand> commands = get_ThemeCommands(QString());
    const QString themeId = m_asrManager->getSelectedTheme().id();
    if (!themeId.isEmpty())
        commands += get_ThemeCommands(themeId);
    return commands;
}

QList<ClientThemeInfo> UserCommandsManager::get_Themes() const {
    const QMutexLocker locker(&m_mutex);
    return m_offeredThemes.values();
}

void UserCommandsManager::UpdateThemesFromAsr() {}

QList<UserCommandType> UserCommandsManager::get_CommandTypes() const {
    return {UserCommandType::Text, UserCommandType::Key, UserCommandType::Exe,
            UserCommandType::FileCopy};
}

void UserCommandsManager::updateCommands() {
    clearCommands();
    const QList<UserCommand> commands = getCommandList();
    for (const UserCommand &command : commands) {
        if (command.Type != UserCommandType::Text)
            m_executableCommands.append(
                CommandInfo(command.Id, command.Pattern, CommandType::User));
    }
    emit commandsChanged();
}

QString UserCommandsManager::executeCommand(const CommandInfo &info) const {
    const QList<UserCommand> commands = getCommandList();
    const auto command =
        std::find_if(commands.cbegin(), commands.cend(),
                     [&info](const UserCommand &own) { return own.Id == info.id(); });
    return command == commands.cend() ? QString() : executeUserCommand(*command);
}

QString UserCommandsManager::executeUserCommand(const UserCommand &command) const {
    const auto executor = m_executors.find(command.Type);
    if (executor == m_executors.cend())
        return QString();
    const CommandResult result = executor->second->Execute(command);
    if (!result.error().isEmpty())
        emit CommandExecutionError(result.error());
    return result.result();
}
