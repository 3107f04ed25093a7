#include "viewmodels/feedback/AvocadoViewModel.h"

#include "core/AppVariables.h"
#include "recognition/AsrManager.h"
#include "recognition/LocalAvocadoManager.h"

#include <QDebug>
#include <QMessageBox>
#include <QRegularExpression>

AvocadoViewModel::AvocadoViewModel(AsrManager *asrManager, LocalAvocadoManager *localAvocadoManager)
    : m_asrManager(asrManager),
      m_localAvocadoManager(localAvocadoManager),
      m_tooltip(tr("Слова должны состоять только из русских букв и должны быть разделены пробелом, "
                   "переносом строки, точкой или запятой.\n") +
                tr("Если слово из списка не распознаётся, передайте его разработчикам через окно "
                   "«Обратная связь». . %1")
                    .arg(AppVariables::buildProperty("ThemeUpdateText"))) {
    m_words.setValidator(&AvocadoViewModel::ValidateAvocadoWords);
    connect(&m_words, &ValidatableText::changed_IsValid, this, &AvocadoViewModel::isValidChanged);
}

void AvocadoViewModel::ValidateAvocadoWords(ValidatableText::ValidationArgs *args) {
    static const QRegularExpression allowed(
        QRegularExpression::anchoredPattern(QStringLiteral("[ .,\r\n\tА-Яа-яЁё]+")));
    if (!args->text.isEmpty() && !allowed.match(args->text).hasMatch()) {
        args->error = tr("Допустимы только русские слова и разделители: пробелы, перенос строки, "
                         "точки и запятые");
    }
}

void AvocadoViewModel::isValidChanged(bool) {
    emit changed_CanSave(get_CanSave());
}

void AvocadoViewModel::onLoad() {
    m_openingText = m_localAvocadoManager->GetWords().join(QLatin1Char('\n'));
    m_words.SetText(m_openingText);
}

void AvocadoViewModel::applyCommand() {
    if (m_words.get_Text() == m_openingText)
        return;
    UserNotification notification(NotificationType::Information, tr("Мои слова"),
                                  tr("Список слов успешно обновлён."));
    notification.setForce(true);
    try {
        updateWords();
    } catch (const std::exception &error) {
        qCritical().noquote() << "Failed to update Avocado words:" << error.what();
        notification.setType(NotificationType::Critical);
        notification.setMessage(tr("Не удалось обновить список слов. Попробуйте снова через "
                                   "некоторое время или обратитесь к системному администратору."));
    }
    emit notifyUser(notification);
}

void AvocadoViewModel::updateWords() {
    static const QRegularExpression separators(QStringLiteral("[ .,\r\n\t]+"));
    m_localAvocadoManager->UpdateWords(m_words.get_Text().split(separators, Qt::SkipEmptyParts));
    m_asrManager->stopRecognition();
}

bool AvocadoViewModel::cancelCommand() {
    if (m_words.get_Text() == m_openingText)
        return true;
    return QMessageBox::question(
               nullptr, tr("Дообучение"),
               tr("Вы уверены что хотите закрыть окно? Не сохранённые изменения будут утеряны."),
               QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Ok;
}
