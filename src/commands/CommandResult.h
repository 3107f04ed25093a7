#pragma once

#include <QString>

/// What came of carrying out a command. A plain value.
class CommandResult {
public:
    /// Text to be handed on as if it had been recognised.
    QString result() const { return m_result; }
    void setResult(const QString &result) { m_result = result; }
    /// A message for the user, empty after success.
    QString error() const { return m_error; }
    void setError(const QString &error) { m_error = error; }

private:
    QString m_result;
    QString m_error;
};
