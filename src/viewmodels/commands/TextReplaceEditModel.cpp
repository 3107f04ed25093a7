#include "viewmodels/commands/TextReplaceEditModel.h"

TextReplaceEditModel::TextReplaceEditModel(UserCommandViewModel *command,
                                           CommandsCollectionViewModel *collection)
    : PatternEditModel(command, collection) {
    if (command)
        m_text.SetText(command->get_Text());
    m_text.setValidator(ValidateText);
}

void TextReplaceEditModel::ValidateText(ValidatableText::ValidationArgs *args) {
    constexpr int maxLength = 128;
    if (args->text.size() > maxLength) {
        args->error =
            tr("Размер текста в поле ввода не может превышать %0 символов").arg(maxLength);
    }
}

bool TextReplaceEditModel::validate() {
    return PatternEditModel::validate() && m_text.CheckAndSetFocus();
}

void TextReplaceEditModel::copyTo(UserCommandViewModel *command) {
    PatternEditModel::copyTo(command);
    command->set_Text(m_text.get_Text());
}
