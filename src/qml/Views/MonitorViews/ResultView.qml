import QtQuick 2.15
import QtQuick.Controls 2.15

// The text that is being recognised; of a long one the end.
Item {
    id: view

    property string text
    property int maxWidth: 220
    property int maxLines: 3
    property int margin: 5

    implicitWidth: label.width + 2 * margin
    implicitHeight: label.height + 2 * margin

    Rectangle {
        anchors { fill: label; margins: -view.margin }
        color: "#FAFAFA"
        border.width: 1
        border.color: "#A0A0A0"
    }

    Label {
        id: label

        x: view.margin
        y: view.margin
        width: Math.min(Math.ceil(widthMeasure.implicitWidth), view.maxWidth)
        height: Math.ceil(heightMeasure.implicitHeight)
        clip: true
        color: "black"
        textFormat: Text.PlainText
        wrapMode: Text.WordWrap
        elide: Text.ElideLeft
        verticalAlignment: Text.AlignBottom
        text: view.text
    }

    Label {
        id: widthMeasure
        visible: false
        textFormat: Text.PlainText
        text: view.text
    }

    Label {
        id: heightMeasure
        visible: false
        width: view.maxWidth
        textFormat: Text.PlainText
        wrapMode: Text.WordWrap
        maximumLineCount: view.maxLines
        text: view.text
    }
}
