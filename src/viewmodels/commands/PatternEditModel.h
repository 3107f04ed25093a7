#pragma once

#include "viewmodels/ValidatableText.h"
#include "viewmodels/commands/UserCommandEditModel.h"

/// A command with the phrase that stands for it. Main thread.
class PatternEditModel : public UserCommandEditModel {
    Q_OBJECT
    Q_PROPERTY(ValidatableText *Pattern READ get_Pattern CONSTANT)

public:
    PatternEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);

    bool validate() override { return m_pattern.CheckAndSetFocus(); }
    void copyTo(UserCommandViewModel *command) override;

    ValidatableText *get_Pattern() { return &m_pattern; }

protected:
    virtual void ValidatePattern(ValidatableText::ValidationArgs *args);

private:
    ValidatableText m_pattern{this};
};
