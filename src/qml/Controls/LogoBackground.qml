import QtQuick 2.15

// The ground of the start windows: the product's logo in a band above the content.
Rectangle {
    id: ground

    // Device-independent pixels.
    property int logoHeight: 40
    readonly property real contentTop: band.height

    color: "#FFFFFF"
    border.width: 1
    border.color: "#C0C0C0"

    Rectangle {
        id: band

        anchors { top: parent.top; left: parent.left; right: parent.right; margins: 1 }
        height: ground.logoHeight + 40
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#1D5F61" }
            GradientStop { position: 1.0; color: "#33C9C9" }
        }

        Image {
            anchors.centerIn: parent
            height: ground.logoHeight
            fillMode: Image.PreserveAspectFit
            mipmap: true
            source: "qrc:/replaceable/logo_white_medium.png"
        }
    }
}
