#pragma once

#include "commands/UserCommandExecutor.h"

/// Reads the document at the path that the text of the command holds, for its text to be typed:
/// line ends as carriage returns, one blank ahead of a first character that is no white space.
class FileCopyCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;
};
