#include "commands/HotKeyCommandExecutor.h"

CommandResult HotKeyCommandExecutor::Execute(const UserCommand &) const {
    return {};
}
