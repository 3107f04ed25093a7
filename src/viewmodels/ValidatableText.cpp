#include "viewmodels/ValidatableText.h"

#include "core/Exception.h"

void ValidatableText::set_Text(const QString &text) {
    const QString error = errorOf(text);
    const bool isChanged = text != m_text;
    if (isChanged)
        m_text = text;
    setError(error);
    if (isChanged)
        emit changed_Text(text);
}

QString ValidatableText::errorOf(const QString &text) {
    ValidationArgs args{text, QString()};
    try {
        ValidateText(&args);
    } catch (const Exception &failure) {
        return QString::fromUtf8(failure.what());
    }
    return args.error;
}

void ValidatableText::setError(const QString &error) {
    if (error == m_error)
        return;
    m_error = error;
    emit changed_Error(error);
    emit changed_IsValid(error.isEmpty());
}

void ValidatableText::ValidateText(ValidationArgs *args) {
    if (m_validator)
        m_validator(args);
}

void ValidatableText::SetText(const QString &text) {
    m_text = text;
    setError(QString());
    emit changed_Text(text);
}

bool ValidatableText::CheckAndSetFocus() {
    set_Text(QString(m_text));
    if (m_error.isEmpty())
        return true;
    emit validateFailed();
    return false;
}
