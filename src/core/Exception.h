#pragma once

#include <QByteArray>
#include <QException>
#include <QObject>
#include <QString>

/// The program's own exception: a message, kept as UTF-8.
class Exception : public QException {
public:
    explicit Exception(const QString &message);
    explicit Exception(const char *message);

    /// The message as UTF-8; valid as long as this object.
    const char *what() const noexcept override;
    void raise() const override;
    Exception *clone() const override;

private:
    QByteArray m_message;
};

/// A text that does not convert to a value, or a value without a text.
class ConveterException : public Exception {
public:
    /// For a failed conversion of a From into a To.
    template <typename From, typename To>
    static ConveterException create() {
        return ConveterException(QObject::tr("Cannot convert"));
    }

    void raise() const override;
    ConveterException *clone() const override;

private:
    explicit ConveterException(const QString &message) : Exception(message) {}
};
