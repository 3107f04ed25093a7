#include "commands/ProcessCommandExecutor.h"

#include <QDebug>
#include <QProcess>

CommandResult ProcessCommandExecutor::Execute(const UserCommand &command) const {
    if (!QProcess::startDetached(command.Text, QStringList()))
        qWarning().noquote() << "Cannot start:" << command.Text;
    return {};
}
