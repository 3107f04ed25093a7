import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import "qrc:/OstrelStyle" as Ostrel

// What the user sees until the first news of the connection.
Ostrel.SubWindow {
    id: splash

    property url splashSource
    property url logoSource
    property int logoHeight
    property color descColor
    // Read by Qt when it shows the window: the user's application keeps the focus.
    readonly property bool _q_showWithoutActivating: true

    title: "Splash Window"
    x: Screen.virtualX + (Screen.width - width) / 2
    y: Screen.virtualY + (Screen.height - height) / 2
    width: picture.implicitWidth
    height: picture.implicitHeight
    minimumWidth: width
    minimumHeight: height
    color: "transparent"
    background: null
    modality: Qt.NonModal
    flags: Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint

    Image {
        id: picture
        source: splash.splashSource
    }

    Image {
        id: logo
        anchors { top: parent.top; topMargin: 137; horizontalCenter: parent.horizontalCenter }
        height: splash.logoHeight
        fillMode: Image.PreserveAspectFit
        mipmap: true
        source: splash.logoSource
    }

    Label {
        id: versionLabel
        anchors { top: logo.bottom; horizontalCenter: parent.horizontalCenter }
        visible: false
        text: "v. " + Qt.application.version
        color: "#B3B3B3"
        font.pointSize: 6.5
    }

    Label {
        anchors {
            top: versionLabel.bottom
            topMargin: 12
            horizontalCenter: parent.horizontalCenter
        }
        text: qsTr("Программное обеспечение для преобразования речи в текст")
        color: splash.descColor
        font.pointSize: 8
    }
}
