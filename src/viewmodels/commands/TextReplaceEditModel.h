#pragma once

#include "viewmodels/commands/PatternEditModel.h"

/// A phrase and the text that takes its place, which may be empty. Main thread.
class TextReplaceEditModel : public PatternEditModel {
    Q_OBJECT
    Q_PROPERTY(ValidatableText *Text READ get_Text CONSTANT)

public:
    TextReplaceEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);

    bool validate() override;
    void copyTo(UserCommandViewModel *command) override;

    ValidatableText *get_Text() { return &m_text; }

private:
    static void ValidateText(ValidatableText::ValidationArgs *args);

    ValidatableText m_text{this};
};
