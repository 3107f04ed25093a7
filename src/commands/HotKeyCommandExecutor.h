#pragma once

#include "commands/UserCommandExecutor.h"

/// Presses the key combination that the text of the command names, wherever the focus is.
class HotKeyCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;
};
