#include "commands/HotKeyCommandExecutor.h"

#include "desktop/TextWriter.h"

CommandResult HotKeyCommandExecutor::Execute(const UserCommand &command) const {
    const HotKeyInfo key = m_converter.ConvertFromString(command.Text);
    TextWriter::WriteKey(TextWriter::GetFocusedWindow(), key);
    return {};
}
