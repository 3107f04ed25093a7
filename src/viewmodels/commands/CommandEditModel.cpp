#include "viewmodels/commands/CommandEditModel.h"

void CommandEditModel::ValidatePattern(ValidatableText::ValidationArgs *args) {
    if (args->text.trimmed().isEmpty())
        args->error = tr("Текст команды не должен быть пустым");
    else if (!UserCommand::ValidatePatternSymbols(UserCommand::NormalizePattern(args->text)))
        args->error = tr("Команда должна содержать произносимый текст");
    else if (isTaken(args->text))
        args->error = tr("Такая команда/автозамена уже существует");
}
