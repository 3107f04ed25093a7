#pragma once

#include <QObject>
#include <QString>

#include <functional>

/// A text that a user edits, with what is wrong about it. A wrong text is kept, so that the user
/// can go on typing. Lives on the main thread.
class ValidatableText : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Text READ get_Text WRITE set_Text NOTIFY changed_Text)
    Q_PROPERTY(QString Error READ get_Error NOTIFY changed_Error)
    Q_PROPERTY(bool IsValid READ get_IsValid NOTIFY changed_IsValid)

public:
    struct ValidationArgs {
        QString text;  ///< what is to be checked
        QString error; ///< what is wrong about it, for the user; empty if nothing is
    };
    using Validator = std::function<void(ValidationArgs *)>;

    /// Empty and valid.
    explicit ValidatableText(QObject *parent = nullptr) : QObject(parent) {}

    QString get_Text() const { return m_text; }
    /// What the user typed: stored and checked.
    void set_Text(const QString &text);
    /// For the user; empty if the text is valid.
    QString get_Error() const { return m_error; }
    bool get_IsValid() const { return m_error.isEmpty(); }

    /// Takes effect at the next check, not on the present text. An Exception that it throws is an
    /// error with that message.
    void setValidator(const Validator &validator) { m_validator = validator; }

    /// Stores a text of the program's own, which is not checked.
    void SetText(const QString &text);
    /// Checks the present text, and asks the view to go to the field if it is wrong.
    /// @return whether it is valid
    bool CheckAndSetFocus();

signals:
    void changed_Text(QString text);
    void changed_Error(QString err);
    void changed_IsValid(bool isvalid);
    /// The view is to put the focus in the field.
    void validateFailed();

protected:
    /// Checks the text of the arguments and writes their error; may throw an Exception instead.
    virtual void ValidateText(ValidationArgs *args);

private:
    QString errorOf(const QString &text);
    void setError(const QString &error);

    QString m_text;
    QString m_error;
    Validator m_validator;
};
