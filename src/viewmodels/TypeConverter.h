#pragma once

#include "core/Exception.h"
#include "core/ITypeConverter.h"

/// The usual conversion of a type that has one.
template <typename T>
class TypeConverter;

/// Decimal numbers.
template <>
class TypeConverter<int> : public ITypeConverter<int> {
public:
    QString ConvertToString(const int &value) const override { return QString::number(value, 10); }

    /// @throws ConveterException  the text is no number, or one beyond the range of int
    int ConvertFromString(QString text) const override {
        bool isNumber = false;
        const int value = text.toInt(&isNumber, 10);
        if (!isNumber)
            throw ConveterException::create<QString, int>();
        return value;
    }
};
