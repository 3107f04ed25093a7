import QtQuick 2.15
import QtQuick.Controls 2.15
import "qrc:/OstrelStyle" as Ostrel

ApplicationWindow {
    id: window

    property var pages: []
    property int currentPage: 0

    title: qsTr("Галерея элементов")
    width: 1100
    height: 760
    visible: true

    Ostrel.TabControl {
        anchors.fill: parent
        itemsSource: window.pages.map(function(name) { return { HeaderText: name } })
        getViewTemplate: function(page) { return "qrc:/gallery/" + page.HeaderText + "Page.qml" }
        currentIndex: window.currentPage
        onCurrentIndexChanged: window.currentPage = currentIndex
    }
}
