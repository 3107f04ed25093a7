#pragma once

#include "viewmodels/ValidatableValue.h"

#include <optional>

/// An editable text that stands for a whole number.
///
/// The property's change is told only while the text is a number, so a view that is bound to it
/// keeps the last one. Before the first number it must not be read.
class ValidatableInt32 : public ValidatableValue<int> {
    Q_OBJECT
    Q_PROPERTY(int IntValue READ get_IntValue WRITE set_IntValue NOTIFY changed_Value)

public:
    explicit ValidatableInt32(QObject *parent = nullptr);

    /// @throws ConveterException  the text is no number: the caller is to have checked it
    int get_IntValue() const { return GetValue(); }
    void set_IntValue(int value) { SetValue(value); }

signals:
    void changed_Value(int value);

private:
    void onTextChanged();

    std::optional<int> m_lastValue;
};
