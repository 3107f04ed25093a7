#include "viewmodels/commands/FileCopyEditModel.h"

#include "core/settings/FileDialogSettings.h"
#include "viewmodels/StoreProperty.h"

#include <QFileDialog>

FileCopyEditModel::FileCopyEditModel(UserCommandViewModel *command,
                                     CommandsCollectionViewModel *collection)
    : CommandEditModel(command, collection) {
    connect(&m_filePath, &ValidatableText::changed_Text, this, &FileCopyEditModel::ReloadPreview);
    if (command)
        m_filePath.SetText(command->get_Text());
    m_filePath.setValidator(ValidateFilePath);
}

void FileCopyEditModel::ValidateFilePath(ValidatableText::ValidationArgs *args) {
    if (args->text.trimmed().isEmpty())
        args->error = tr("Путь к файлу не может быть пустым");
}

bool FileCopyEditModel::validate() {
    return CommandEditModel::validate() && m_filePath.CheckAndSetFocus();
}

void FileCopyEditModel::copyTo(UserCommandViewModel *command) {
    CommandEditModel::copyTo(command);
    command->set_Text(m_filePath.get_Text());
}

void FileCopyEditModel::selectFile() {
    FileDialogSettings settings;
    const QString path =
        QFileDialog::getOpenFileName(nullptr, tr("Выбрать файл"), settings.LastFilePath,
                                     QStringLiteral("Text files (*.txt *.odt)"));
    m_filePath.set_Text(path);
    settings.LastFilePath = path;
}

void FileCopyEditModel::ReloadPreview(const QString &path) {
    QString error;
    const QString text = path.isEmpty() ? QString() : m_reader.ReadFile(path, &error);
    storeProperty(this, &m_isError, !error.isEmpty(), &FileCopyEditModel::changed_IsError);
    storeProperty(this, &m_previewText, error.isEmpty() ? text : error,
                  &FileCopyEditModel::changed_PreviewText);
}
