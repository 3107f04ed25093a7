#include "commands/ProcessCommandExecutor.h"

#include <QProcess>

CommandResult ProcessCommandExecutor::Execute(const UserCommand &command) const {
    QProcess::startDetached(command.Text, QStringList());
    return {};
}
