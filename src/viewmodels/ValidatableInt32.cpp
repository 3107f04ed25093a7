#include "viewmodels/ValidatableInt32.h"

ValidatableInt32::ValidatableInt32(QObject *parent) : ValidatableValue<int>(parent) {
    connect(this, &ValidatableText::changed_Text, this, &ValidatableInt32::onTextChanged);
}

void ValidatableInt32::onTextChanged() {
    std::optional<int> value;
    try {
        value = GetValue();
    } catch (const ConveterException &) {
        return; // The field's error tells the user.
    }
    if (value == m_lastValue)
        return;
    m_lastValue = value;
    emit changed_Value(*value);
}
