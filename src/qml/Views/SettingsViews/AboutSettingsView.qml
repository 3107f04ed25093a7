import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "qrc:/Controls"

Item {
    id: page

    property var viewmodel

    implicitHeight: Math.max(texts.implicitHeight + 40, 300)

    Rectangle {
        id: side

        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        width: page.viewmodel.BackgroundWidth
        color: page.viewmodel.BackgroundColor

        Image {
            anchors { fill: parent; margins: 12 }
            fillMode: Image.PreserveAspectFit
            mipmap: true
            source: "qrc:/replaceable/about_pic.png"
        }
    }

    ColumnLayout {
        id: texts

        anchors { left: side.right; right: parent.right; top: parent.top; margins: 20 }
        spacing: 10

        Image {
            Layout.preferredHeight: 40
            fillMode: Image.PreserveAspectFit
            mipmap: true
            source: "qrc:/replaceable/normal_logo.png"

            MouseArea {
                anchors.fill: parent
                cursorShape: Qt.PointingHandCursor
                onClicked: Qt.openUrlExternally(page.viewmodel.AppLink)
            }
        }

        Label {
            Layout.fillWidth: true
            wrapMode: Text.WordWrap
            text: page.viewmodel.AppDescription
        }

        Label {
            text: qsTr("Версия: %1").arg(page.viewmodel.Version)
        }

        TextEdit {
            Layout.fillWidth: true
            readOnly: true
            selectByMouse: true
            activeFocusOnTab: true
            wrapMode: TextEdit.WrapAnywhere
            font.pointSize: 9
            color: "#707070"
            selectionColor: "#2FBECA"
            text: page.viewmodel.ClientId
        }

        LinkLabel {
            visible: page.viewmodel.EnableTutorial
            caption: qsTr("Как пользоваться приложением?")
            onActivated: page.viewmodel.openTutorial()
        }

        LinkLabel {
            visible: page.viewmodel.VisibleManual
            caption: qsTr("Руководство пользователя")
            onActivated: Qt.openUrlExternally("file://" + page.viewmodel.LocalHelpFile)
        }

        LinkLabel {
            caption: qsTr("Собрать данные о системе")
            onActivated: page.viewmodel.getSystemInfo()
        }

        LinkLabel {
            caption: qsTr("Сообщить о проблеме")
            onActivated: Qt.openUrlExternally(page.viewmodel.SupportLink)
        }
    }
}
