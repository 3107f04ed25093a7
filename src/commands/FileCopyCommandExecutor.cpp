#include "commands/FileCopyCommandExecutor.h"

CommandResult FileCopyCommandExecutor::Execute(const UserCommand &command) const {
    QString error;
    QString text = m_reader->ReadFile(command.Text, &error);
    text.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    text.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    if (!text.isEmpty() && !text.front().isSpace())
        text.prepend(QLatin1Char(' '));
    CommandResult result;
    result.setResult(text);
    result.setError(error);
    return result;
}
