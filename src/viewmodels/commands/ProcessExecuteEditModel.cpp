#include "viewmodels/commands/ProcessExecuteEditModel.h"

#include <QUrl>

ProcessExecuteEditModel::ProcessExecuteEditModel(UserCommandViewModel *command,
                                                 CommandsCollectionViewModel *collection)
    : CommandEditModel(command, collection) {
    if (command)
        m_text.SetText(command->get_Text());
    m_text.setValidator(ValidateText);
    connect(&m_text, &ValidatableText::changed_Text, this, &ProcessExecuteEditModel::takePathOfUrl);
}

void ProcessExecuteEditModel::takePathOfUrl(const QString &text) {
    // A path that is none may hold what would end the path of a URL.
    if (text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive))
        m_text.set_Text(QUrl(text).path(QUrl::FullyDecoded));
}

void ProcessExecuteEditModel::ValidateText(ValidatableText::ValidationArgs *args) {
    if (args->text.trimmed().isEmpty())
        args->error = tr("Адрес программы не должен быть пустым");
}

bool ProcessExecuteEditModel::validate() {
    return CommandEditModel::validate() && m_text.CheckAndSetFocus();
}

void ProcessExecuteEditModel::copyTo(UserCommandViewModel *command) {
    CommandEditModel::copyTo(command);
    command->set_Text(m_text.get_Text());
}
