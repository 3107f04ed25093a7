import QtQuick 2.15

// What a field shows of its error: the mark at once, the message when the user looks at the field.
// The field has errorText, hasError() and needShowError().
Item {
    id: display

    property Item field
    property alias toolTip: message

    anchors.fill: parent
    z: 1

    ErrorMark {
        objectName: "errorMark"
        anchors.top: parent.top
        anchors.right: parent.right
        visible: display.field.hasError()
    }

    InfoTooltip {
        id: message

        anchors.right: parent.right
        anchors.bottom: parent.top
        maxWidth: display.width - 24
        isShown: display.field.needShowError()
        infoMessage: display.field.errorText
    }
}
