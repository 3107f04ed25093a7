import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// The name of the current dictionary, and the way to another one.
Rectangle {
    id: view

    property string themeName

    signal themeChooseRequested()

    width: row.implicitWidth
    height: 38
    color: "#FAFAFA"
    border.width: 1
    border.color: "#A0A0A0"

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: 0

        Label {
            Layout.leftMargin: 20
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignLeft
            textFormat: Text.PlainText
            text: view.themeName
        }

        Label {
            Layout.leftMargin: 30
            Layout.rightMargin: 20
            font.pixelSize: 11
            text: "<a href='http://'>" + qsTr("Изменить") + "</a>"
            onLinkActivated: view.themeChooseRequested()
        }
    }
}
