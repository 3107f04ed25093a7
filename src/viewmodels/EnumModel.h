#pragma once

#include "core/Enum.h"
#include "viewmodels/EnumModelBase.h"

/// The values of an enumeration by their display names, in the order of the values. Starts with the
/// first one chosen.
template <typename T>
class EnumModel : public EnumModelBase {
public:
    explicit EnumModel(QObject *parent = nullptr) : EnumModelBase(parent) {
        QStringList names;
        for (const EnumElement<T> *element : Enum<T>::Values)
            names << element->get_Name();
        set_Items(names);
        set_CurrentIndex(0);
    }

    /// The chosen value.
    /// @throws ConveterException  none is chosen
    T value() const {
        const QList<T> values = Enum<T>::Values.keys();
        const int index = get_CurrentIndex();
        if (index < 0 || index >= values.size())
            throw ConveterException::create<int, T>();
        return values[index];
    }

    /// @throws ConveterException  the value is not in the table; the choice stays
    void setValue(T value) {
        const int index = Enum<T>::Values.keys().indexOf(value);
        if (index < 0)
            throw ConveterException::create<T, int>();
        set_CurrentIndex(index);
    }
};
