import QtQuick 2.15
import QtQuick.Controls 2.15

// A link that does something in the program, by mouse or by key.
Label {
    id: label

    property string caption

    signal activated()

    text: "<a href='#'>" + caption + "</a>"
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: caption
    Keys.onReturnPressed: activated()
    Keys.onEnterPressed: activated()
    Keys.onSpacePressed: activated()
    onLinkActivated: activated()

    background: Rectangle {
        visible: label.activeFocus
        color: "transparent"
        border.width: 1
        border.color: "#2FBECA"
    }
}
