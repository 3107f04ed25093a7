#include "viewmodels/commands/PatternEditModel.h"

PatternEditModel::PatternEditModel(UserCommandViewModel *command,
                                   CommandsCollectionViewModel *collection)
    : UserCommandEditModel(command, collection) {
    if (command)
        m_pattern.SetText(command->get_Pattern());
    m_pattern.setValidator(
        [this](ValidatableText::ValidationArgs *args) { ValidatePattern(args); });
}

void PatternEditModel::ValidatePattern(ValidatableText::ValidationArgs *args) {
    if (args->text.trimmed().isEmpty())
        args->error = tr("Образец автозамены пуст");
    else if (isTaken(args->text))
        args->error = tr("Такой образец автозамены уже есть");
}

void PatternEditModel::copyTo(UserCommandViewModel *command) {
    command->set_Pattern(m_pattern.get_Text().simplified());
}
