#include "core/Exception.h"

Exception::Exception(const QString &message) : m_message(message.toUtf8()) {}

Exception::Exception(const char *message) : m_message(message) {}

const char *Exception::what() const noexcept {
    return m_message.constData();
}

void Exception::raise() const {
    throw *this;
}

Exception *Exception::clone() const {
    return new Exception(*this);
}

void ConveterException::raise() const {
    throw *this;
}

ConveterException *ConveterException::clone() const {
    return new ConveterException(*this);
}
