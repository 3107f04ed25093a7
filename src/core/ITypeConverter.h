#pragma once

#include <QString>

/// Converts between a value and its text.
template <typename T>
class ITypeConverter {
public:
    ITypeConverter() = default;
    virtual ~ITypeConverter() = default;
    ITypeConverter(const ITypeConverter &) = delete;
    ITypeConverter &operator=(const ITypeConverter &) = delete;

    virtual QString ConvertToString(const T &value) const = 0;
    virtual T ConvertFromString(QString text) const = 0;
};
