import QtQuick 2.15
import QtQuick.Window 2.15
import QtQuick.Controls 2.15
import QtQuick.Templates 2.15 as T

// The list of a ComboBox.
T.Popup {
    id: popup

    property Item combo

    y: combo.height + 2
    width: combo.width
    height: Math.min(implicitHeight, combo.Window.height - topMargin - bottomMargin)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: 6
    padding: 1
    transformOrigin: Item.Top

    contentItem: ListView {
        implicitHeight: contentHeight
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: popup.combo.delegateModel
        currentIndex: popup.combo.highlightedIndex
        highlightMoveDuration: 50
        highlightMoveVelocity: -1
        highlightResizeDuration: 0
        highlight: Rectangle {
            color: "#2200BFCC"
            border.width: 1
            border.color: "#2FBECA"
        }

        ScrollBar.vertical: ScrollBar {}
    }

    background: Rectangle {
        color: "#FFFFFF"
        border.width: 1
        border.color: "#C0C0C0"
    }

    enter: Transition {
        NumberAnimation {
            property: "scale"
            from: 0.9
            to: 1
            duration: 220
            easing.type: Easing.OutQuint
        }
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 150
            easing.type: Easing.OutCubic
        }
    }

    exit: Transition {
        NumberAnimation {
            property: "scale"
            from: 1
            to: 0.9
            duration: 220
            easing.type: Easing.OutQuint
        }
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: 150
            easing.type: Easing.OutCubic
        }
    }
}
