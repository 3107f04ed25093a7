import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15 as T

Item {
    id: control

    // View models, one a page: a list or a list model.
    property var itemsSource
    property alias currentIndex: position.currentIndex
    // From a page's view model to the URL of its view.
    property var getViewTemplate
    property Component tabTemplate: TabButton {
        text: qsTr(modelData.HeaderText)
    }
    property Component contentTemplate: Loader {
        source: control.getViewTemplate ? control.getViewTemplate(modelData) : ""
    }

    QtObject {
        id: internal

        property bool isReady: false

        // Makes all tabs and pages anew; the page that was open stays open if there is one like it.
        function rebuild() {
            isReady = false
            tabs.model = control.itemsSource
            pages.model = control.itemsSource
            isReady = true
            if (bar.count === 0)
                return
            bar.setCurrentIndex(Math.max(0, Math.min(position.currentIndex, bar.count - 1)))
            position.setCurrentIndex(bar.currentIndex)
        }
    }

    // Holds the index: tabs that come and go in a rebuild do not move it, and setting it from here
    // leaves a binding of the view as it is.
    T.Container {
        id: position

        currentIndex: 0
        visible: false
        onCurrentIndexChanged: {
            if (internal.isReady && currentIndex < bar.count)
                bar.setCurrentIndex(currentIndex)
        }
    }

    TabBar {
        id: bar

        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.topMargin: 8
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        z: 1
        onCurrentIndexChanged: if (internal.isReady) position.setCurrentIndex(currentIndex)

        Repeater {
            id: tabs

            delegate: control.tabTemplate
        }
    }

    Rectangle {
        anchors.top: bar.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.topMargin: -1
        anchors.leftMargin: 1
        anchors.rightMargin: 1
        anchors.bottomMargin: 1
        color: "#FFFFFF"
        border.width: 1
        border.color: "#C0C0C0"

        StackLayout {
            anchors.fill: parent
            anchors.margins: 1
            currentIndex: bar.currentIndex

            Repeater {
                id: pages

                delegate: control.contentTemplate
            }
        }
    }

    onItemsSourceChanged: if (internal.isReady) internal.rebuild()
    Component.onCompleted: internal.rebuild()
}
