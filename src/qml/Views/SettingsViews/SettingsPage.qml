import QtQuick 2.15
import QtQuick.Layouts 1.15

// The frame of a page: its content in a column.
Item {
    id: page

    property var viewmodel
    default property alias content: column.data

    // Not a binding: a layout within a layout changes its mind while it is asked.
    function fit() {
        implicitHeight = column.implicitHeight + 40
    }

    Component.onCompleted: fit()

    ColumnLayout {
        id: column

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 20 }
        spacing: 10
        onImplicitHeightChanged: Qt.callLater(page.fit)
    }
}
