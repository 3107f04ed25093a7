#pragma once

#include "commands/UserCommandExecutor.h"
#include "desktop/XHotKeyConverter.h"

/// Presses the key combination that the text of the command names, wherever the focus is. A key
/// that is not known is pressed as the code 0, which does nothing.
class HotKeyCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;

private:
    XHotKeyConverter m_converter;
};
