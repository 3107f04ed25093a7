#pragma once

#include "commands/UserCommandExecutor.h"

/// Starts a program, which outlives the client. The whole text of the command is the program; it
/// takes no arguments. A program that does not start is not reported.
class ProcessCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;
};
