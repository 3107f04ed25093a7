#include "commands/FileCopyCommandExecutor.h"

CommandResult FileCopyCommandExecutor::Execute(const UserCommand &) const {
    return {};
}
