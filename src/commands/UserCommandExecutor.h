#pragma once

#include "commands/CommandResult.h"
#include "commands/UserCommand.h"

#include <QObject>

/// Carries out the commands of one type. Main thread.
class UserCommandExecutor : public QObject {
    Q_OBJECT

public:
    virtual CommandResult Execute(const UserCommand &command) const = 0;
};
