#pragma once

#include "commands/CommandInfo.h"

#include <QList>
#include <QObject>

/// Somebody who offers commands for the server to recognise and carries them out. Main thread.
class ExecutableCommandsSource : public QObject {
    Q_OBJECT

public:
    virtual QList<CommandInfo> executableCommands() const { return m_executableCommands; }
    /// @return the text that the command produced, or an empty text
    virtual QString executeCommand(const CommandInfo &command) const = 0;
    /// The commands have reached the server.
    virtual void onCommandsRefreshed() const = 0;

    void clearCommands() { m_executableCommands.clear(); }

signals:
    void commandsChanged();

protected:
    /// What is offered now.
    QList<CommandInfo> m_executableCommands;
};
