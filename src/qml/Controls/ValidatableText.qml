import QtQuick 2.15
import "qrc:/OstrelStyle"

// A TextField over an object with Text, Error and the signal validateFailed.
TextField {
    id: control

    property QtObject validatable: null

    text: validatable ? validatable.Text : ""
    errorText: validatable ? validatable.Error : ""
    // Only what the object does not hold yet, that is, what the user typed: writing back a text that
    // the object itself has set would validate it, and a swap of objects would mix their texts.
    onTextChanged: {
        if (validatable && validatable.Text !== text)
            validatable.Text = text
    }

    Connections {
        target: control.validatable
        function onValidateFailed() { control.forceActiveFocus() }
    }
}
