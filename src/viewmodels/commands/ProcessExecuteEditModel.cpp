#include "viewmodels/commands/ProcessExecuteEditModel.h"

#include <QUrl>

ProcessExecuteEditModel::ProcessExecuteEditModel(UserCommandViewModel *command,
                                                 CommandsCollectionViewModel *collection)
    : CommandEditModel(command, collection) {
    if (command)
        m_text.SetText(pathOf(command->get_Text()));
    m_text.setValidator(ValidateText);
    connect(&m_text, &ValidatableText::changed_Text, this, &ProcessExecuteEditModel::takePathOfUrl);
}

QString ProcessExecuteEditModel::pathOf(const QString &text) {
    // A path that is no URL may hold what would end the path of one.
    return text.startsWith(QLatin1String("file:/"), Qt::CaseInsensitive)
               ? QUrl(text).path(QUrl::FullyDecoded)
               : text;
}

void ProcessExecuteEditModel::takePathOfUrl(const QString &text) {
    const QString path = pathOf(text);
    if (path != text)
        m_text.set_Text(path);
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
