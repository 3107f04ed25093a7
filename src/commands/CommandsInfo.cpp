#include "commands/CommandsInfo.h"

#include <QJsonArray>

CommandsInfo::CommandsInfo(const QJsonObject &object) {
    const QJsonArray commands = object[QLatin1String("Commands")].toArray();
    for (const QJsonValue &command : commands)
        m_commands.append(CommandInfo(command.toObject()));
}

QJsonValue CommandsInfo::toJson() const {
    QJsonArray commands;
    for (const CommandInfo &command : m_commands)
        commands.append(command.toJson());
    return QJsonObject{{QStringLiteral("Commands"), commands}};
}
