import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.TabBar {
    id: control

    implicitWidth: contentWidth
    implicitHeight: contentHeight
    padding: 0
    spacing: -5

    // Opens the next tab in a direction, -1 or 1, and says that the keyboard has come to it.
    // Returns whether there is one.
    function step(direction) {
        let from = currentIndex
        for (let i = 0; i < count; ++i) {
            if (itemAt(i).activeFocus)
                from = i
        }
        for (let i = from + direction; i >= 0 && i < count; i += direction) {
            if (itemAt(i).enabled) {
                // First, as the list view gives a new current tab the focus without a reason.
                itemAt(i).forceActiveFocus(Qt.TabFocusReason)
                setCurrentIndex(i)
                return true
            }
        }
        return false
    }

    Keys.onLeftPressed: event.accepted = step(-1)
    Keys.onRightPressed: event.accepted = step(1)

    contentItem: ListView {
        model: control.contentModel
        currentIndex: control.currentIndex
        spacing: control.spacing
        orientation: ListView.Horizontal
        boundsBehavior: Flickable.StopAtBounds
        snapMode: ListView.SnapToItem
        clip: contentWidth > width
        keyNavigationEnabled: false

        highlightMoveDuration: 0
        highlightResizeDuration: 0
        highlightRangeMode: ListView.ApplyRange
        preferredHighlightBegin: 48
        preferredHighlightEnd: width - 48

        // Hides the line between the current tab and its page.
        highlight: Item {
            z: 2

            Rectangle {
                x: 3
                y: control.position === T.TabBar.Footer ? 0 : parent.height - height
                width: parent.width - 4
                height: 2
                color: "#FFFFFF"
            }
        }
    }
}
