#pragma once

#include "core/EnumElement.h"
#include "core/Exception.h"

#include <QMap>

#include <initializer_list>
#include <memory>
#include <vector>

/// The table of an enumeration's values. Each enumeration defines
/// `template <> const Enum<T>::Container Enum<T>::Values` in one source file; it is built during
/// static initialisation and only read afterwards, from any thread.
template <typename T>
class Enum {
public:
    /// One row: value, display name, invariant name.
    struct Initializer {
        T value;
        const char *name;
        const char *invariantName;
    };

    /// The elements by value; owns them.
    class Container : public QMap<T, EnumElement<T> *> {
    public:
        Container(std::initializer_list<Initializer> rows) {
            for (const Initializer &row : rows) {
                m_elements.push_back(std::make_unique<EnumElement<T>>(
                    row.value, QString::fromUtf8(row.name), QString::fromUtf8(row.invariantName)));
                this->insert(row.value, m_elements.back().get());
            }
        }

    private:
        std::vector<std::unique_ptr<EnumElement<T>>> m_elements;
    };

    static const Container Values;

    /// @throws ConveterException  no value has this invariant name (compared exactly)
    static T FromInvariantString(const QString &text) {
        for (const EnumElement<T> *element : Values) {
            if (element->get_InvariantName() == text)
                return element->value();
        }
        throw ConveterException::create<QString, T>();
    }

    /// The display name.
    /// @throws ConveterException  the value is not in the table
    static QString ToString(T value) {
        const EnumElement<T> *element = Values.value(value, nullptr);
        if (!element)
            throw ConveterException::create<T, QString>();
        return element->get_Name();
    }
};
