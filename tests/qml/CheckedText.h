#pragma once

#include "viewmodels/ValidatableText.h"

/// A text that tests own: it refuses to hold a digit and counts how often it was checked.
class CheckedText : public ValidatableText {
    Q_OBJECT
    Q_PROPERTY(int checks MEMBER m_checks)

public:
    using ValidatableText::ValidatableText;

    Q_INVOKABLE void give(const QString &text) { SetText(text); }
    Q_INVOKABLE bool check() { return CheckAndSetFocus(); }

protected:
    void ValidateText(ValidationArgs *args) override {
        ++m_checks;
        for (const QChar character : args->text) {
            if (character.isDigit())
                args->error = "no digits";
        }
    }

private:
    int m_checks = 0;
};
