import QtQuick 2.15
import QtQuick.Controls 2.15

// One page, which scrolls when the window is too small for it.
Flickable {
    id: area

    property var page
    property url view

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    contentWidth: width
    contentHeight: loader.item ? Math.max(height, loader.item.implicitHeight) : height
    ScrollBar.vertical: ScrollBar {}

    Loader {
        id: loader

        width: area.width
        height: area.contentHeight
        Component.onCompleted: setSource(area.view, { viewmodel: area.page })
    }
}
