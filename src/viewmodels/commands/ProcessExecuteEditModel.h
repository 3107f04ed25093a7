#pragma once

#include "viewmodels/commands/CommandEditModel.h"

/// A spoken command that starts a program. Main thread.
class ProcessExecuteEditModel : public CommandEditModel {
    Q_OBJECT
    /// The program's path; the URL of a local file becomes its path.
    Q_PROPERTY(ValidatableText *Text READ get_Text CONSTANT)

public:
    ProcessExecuteEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);

    bool validate() override;
    void copyTo(UserCommandViewModel *command) override;

    ValidatableText *get_Text() { return &m_text; }

private:
    static void ValidateText(ValidatableText::ValidationArgs *args);
    /// A "file:" URL as a path; any other text as it is.
    static QString pathOf(const QString &text);
    void takePathOfUrl(const QString &text);

    ValidatableText m_text{this};
};
