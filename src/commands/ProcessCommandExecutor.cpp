#include "commands/ProcessCommandExecutor.h"

CommandResult ProcessCommandExecutor::Execute(const UserCommand &) const {
    return {};
}
