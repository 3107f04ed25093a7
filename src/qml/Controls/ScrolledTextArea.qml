import QtQuick 2.15
import QtQuick.Controls 2.15

// A ValidatableTextArea that scrolls.
ScrollView {
    id: area

    property alias validatable: text.validatable

    clip: false

    ValidatableTextArea {
        id: text

        focus: true

        backgroundSizeSource: area
        Accessible.name: area.Accessible.name
    }
}
