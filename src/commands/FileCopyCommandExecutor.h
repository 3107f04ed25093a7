#pragma once

#include "commands/UserCommandExecutor.h"
#include "commands/readers/CompositeFileReader.h"

#include <memory>

/// Reads the document at the path that the text of the command holds, for its text to be typed:
/// all line ends as carriage returns, and one blank ahead of a first character that is no white
/// space, so that it does not stick to what was dictated before.
class FileCopyCommandExecutor final : public UserCommandExecutor {
    Q_OBJECT

public:
    CommandResult Execute(const UserCommand &command) const override;

private:
    const std::unique_ptr<CompositeFileReader> m_reader = std::make_unique<CompositeFileReader>();
};
