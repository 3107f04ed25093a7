#include "commands/FileCopyCommandExecutor.h"

#include "commands/readers/ReadingLimits.h"

#include <algorithm>

namespace {

/// No text holds these; typed, they would be Backspace, Escape and Delete in the user's document.
bool isControlKey(QChar ch) {
    constexpr ushort deleteCode = 0x7F;
    return (ch < QLatin1Char(' ') && !ch.isSpace()) || ch.unicode() == deleteCode;
}

} // namespace

CommandResult FileCopyCommandExecutor::Execute(const UserCommand &command) const {
    QString error;
    QString text = m_reader->ReadFile(command.Text, &error);
    // Old systems end a text with this.
    if (text.endsWith(QChar(0x1A)))
        text.chop(1);
    if (std::any_of(text.cbegin(), text.cend(), isControlKey)) {
        text.clear();
        error = ReadingLimits::unreadable();
    }
    text.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    text.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    if (!text.isEmpty() && !text.front().isSpace())
        text.prepend(QLatin1Char(' '));
    CommandResult result;
    result.setResult(text);
    result.setError(error);
    return result;
}
