#pragma once

#include "commands/CommandInfo.h"

#include <QList>

/// The announcement of all executable commands to the server; replaces what it held.
class CommandsInfo : public JsonConvertable {
public:
    CommandsInfo() = default;
    explicit CommandsInfo(const QList<CommandInfo> &commands) : m_commands(commands) {}
    explicit CommandsInfo(const QJsonObject &object);

    QList<CommandInfo> commands() const { return m_commands; }
    void setCommands(const QList<CommandInfo> &commands) { m_commands = commands; }

    QJsonValue toJson() const override;

private:
    QList<CommandInfo> m_commands;
};
