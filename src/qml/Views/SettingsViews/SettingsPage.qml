import QtQuick 2.15
import QtQuick.Layouts 1.15

// The frame of a page: its content in a column.
Item {
    id: page

    property var viewmodel
    default property alias content: column.data

    implicitHeight: column.implicitHeight + 40

    ColumnLayout {
        id: column

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 20 }
        spacing: 10
    }
}
