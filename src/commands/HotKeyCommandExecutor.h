#pragma once

#include "commands/UserCommandExecutor.h"
#include "desktop/XHotKeyConverter.h"

/// Presses the key combination that the text of the command names, wherever the focus is. If the
/// key is not known nothing is pressed, and the log tells.
class HotKeyCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;

private:
    XHotKeyConverter m_converter;
};
