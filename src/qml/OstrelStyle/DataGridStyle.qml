import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Controls.Styles 1.4

TableViewStyle {
    id: look

    readonly property int leastRowHeight: 40

    backgroundColor: "#FFFFFF"
    transientScrollBars: false
    handleOverlap: 0

    function barColor(state) {
        return state.pressed ? "#A0A0A0" : state.hovered ? "#B0B0B0" : "#C0C0C0"
    }

    // A cell that has no column yet has the row's whole object for a value.
    function textOf(value) {
        return value === undefined || typeof value === "object" ? "" : String(value)
    }

    // Makes a row as high as its highest cell. `rowItem` holds the loader of the row's background
    // and, one level deeper, the loaders of its cells.
    function fitRow(rowItem) {
        let row = null
        let height = 0
        for (let i = 0; rowItem && i < rowItem.children.length; ++i) {
            const child = rowItem.children[i]
            if (child.item && child.item.isGridRow)
                row = child.item
            for (let k = 0; k < child.children.length; ++k) {
                const cell = child.children[k].item
                if (cell && cell.contentHeight !== undefined)
                    height = Math.max(height, cell.contentHeight + 20)
            }
        }
        if (row)
            row.height = Math.max(row.implicitHeight, height)
    }

    rowDelegate: Rectangle {
        id: row

        readonly property bool isGridRow: true

        implicitHeight: look.leastRowHeight
        height: implicitHeight
        // The view also fills the room below the last row, with rows that have no number.
        visible: styleData.row !== undefined && styleData.row >= 0
        color: styleData.alternate ? "#F7F7F7" : "#FFFFFF"
        Component.onCompleted: if (visible) look.fitRow(parent.parent)

        Rectangle {
            anchors.fill: parent
            visible: styleData.selected || styleData.hasActiveFocus
            color: styleData.selected ? "#2200BFCC" : "#22D5D5D5"
            border.width: 1
            border.color: styleData.selected ? "#2FBECA" : "#D5D5D5"
        }
    }

    itemDelegate: Controls.Label {
        padding: 4
        leftPadding: 16
        rightPadding: 16
        clip: true
        color: "#353535"
        font.pointSize: 9
        wrapMode: Text.WordWrap
        elide: Text.ElideNone
        horizontalAlignment: styleData.textAlignment
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        text: look.textOf(styleData.value)
        onVisibleChanged: {
            if (visible && look.control.fontColorGetter)
                color = look.control.fontColorGetter(styleData.row)
        }
        onContentHeightChanged: if (parent && parent.parent) look.fitRow(parent.parent.parent)
    }

    headerDelegate: Rectangle {
        implicitWidth: label.implicitWidth + 100
        implicitHeight: Math.max(40, label.implicitHeight)
        color: styleData.pressed ? "#FCFCFC" : styleData.containsMouse ? "#FAFAFA" : "#F4F4F4"

        Controls.Label {
            id: label

            anchors.fill: parent
            padding: 4
            leftPadding: 16
            rightPadding: 16
            font.pointSize: 9.5
            font.weight: Font.DemiBold
            horizontalAlignment: styleData.textAlignment
            verticalAlignment: Text.AlignVCenter
            text: styleData.value
        }
        Rectangle {
            anchors.top: parent.top
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.topMargin: 4
            anchors.bottomMargin: 4
            width: 1
            gradient: Gradient {
                GradientStop { position: 0; color: "#33B7B7B7" }
                GradientStop { position: 0.5; color: "#B7B7B7" }
                GradientStop { position: 1; color: "#33B7B7B7" }
            }
        }
    }

    handle: Item {
        implicitWidth: 14
        implicitHeight: 14

        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: styleData.horizontal ? 0 : 4
            anchors.rightMargin: styleData.horizontal ? 0 : 4
            anchors.topMargin: styleData.horizontal ? 4 : 0
            anchors.bottomMargin: styleData.horizontal ? 4 : 0
            color: look.barColor(styleData)
        }
    }
    scrollBarBackground: Rectangle {
        implicitWidth: 14
        implicitHeight: 14
        color: "#FFFFFF"
    }
    corner: Rectangle {
        color: "#FFFFFF"
    }
    decrementControl: GridScrollButton {
        hovered: styleData.hovered
        arrowColor: look.barColor(styleData)
        turn: styleData.horizontal ? -90 : 0
    }
    incrementControl: GridScrollButton {
        hovered: styleData.hovered
        arrowColor: look.barColor(styleData)
        turn: styleData.horizontal ? 90 : 180
    }
}
