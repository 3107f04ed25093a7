#pragma once

#include "core/Exception.h"
#include "viewmodels/TypeConverter.h"
#include "viewmodels/ValidatableText.h"

/// An editable text that stands for a value. Lives on the main thread.
template <typename T>
class ValidatableValue : public ValidatableText {
public:
    using ValueValidator = std::function<void(ValidationArgs *, const T &)>;

    explicit ValidatableValue(QObject *parent = nullptr)
        : ValidatableValue(usualConverter(), parent) {}
    /// @param converter  not owned, outlives this object
    ValidatableValue(const ITypeConverter<T> *converter, QObject *parent)
        : ValidatableText(parent), m_converter(converter) {}

    /// Called with each text that converts. An Exception that it throws is an error.
    void setValueValidator(const ValueValidator &validator) { m_valueValidator = validator; }
    /// What the user is told about a text that does not convert, instead of the exception's text.
    void setConversionError(const QString &error) { m_conversionError = error; }

    /// Stores a value of the program's own, which is not checked.
    void SetValue(const T &value) { SetText(m_converter->ConvertToString(value)); }
    /// The present text as a value.
    /// @throws ConveterException  it does not convert: the caller is to have checked it
    T GetValue() const { return m_converter->ConvertFromString(get_Text()); }

protected:
    void ValidateText(ValidationArgs *args) override {
        ValidatableText::ValidateText(args);
        if (!args->error.isEmpty())
            return;
        try {
            const T value = m_converter->ConvertFromString(args->text);
            if (m_valueValidator)
                m_valueValidator(args, value);
        } catch (const Exception &failure) {
            args->error =
                m_conversionError.isEmpty() ? QString::fromUtf8(failure.what()) : m_conversionError;
        }
    }

private:
    static const ITypeConverter<T> *usualConverter() {
        static const TypeConverter<T> converter;
        return &converter;
    }

    const ITypeConverter<T> *m_converter;
    ValueValidator m_valueValidator;
    QString m_conversionError;
};
