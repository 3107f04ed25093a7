#pragma once

#include "viewmodels/commands/PatternEditModel.h"

/// A spoken command: its phrase must be something that can be said. Main thread.
class CommandEditModel : public PatternEditModel {
    Q_OBJECT

public:
    using PatternEditModel::PatternEditModel;

protected:
    void ValidatePattern(ValidatableText::ValidationArgs *args) override;
};
