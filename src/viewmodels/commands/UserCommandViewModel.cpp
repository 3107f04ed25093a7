#include "viewmodels/commands/UserCommandViewModel.h"

#include "viewmodels/StoreProperty.h"

#include <QUuid>

UserCommandViewModel::UserCommandViewModel(UserCommandNamespace::UserCommandType type,
                                           const QString &themeId, QObject *parent)
    : QObject(parent), m_command(type), m_theme(themeId) {
    m_command.Id = QUuid::createUuid().toString();
}

UserCommandViewModel::UserCommandViewModel(const UserCommand &command, const QString &themeId,
                                           QObject *parent)
    : QObject(parent), m_command(command), m_theme(themeId) {
    m_command.Text = ConvertSpecialText(command.Text);
    // A mark of the system's stays one, or the server's own punctuation would be set twice.
    m_command.IsPunctuation = command.IsSystem && command.IsPunctuation;
}

QString UserCommandViewModel::ConvertSpecialText(QString text) {
    return text.replace(QChar(1), QLatin1Char('-'))
        .replace(QChar(2), QLatin1Char('"'))
        .replace(QChar(3), QLatin1Char('"'));
}

void UserCommandViewModel::set_Pattern(const QString &pattern) {
    storeProperty(this, &m_command.Pattern, pattern, &UserCommandViewModel::changed_Pattern);
}

void UserCommandViewModel::set_Text(const QString &text) {
    storeProperty(this, &m_command.Text, text, &UserCommandViewModel::changed_Text);
}
