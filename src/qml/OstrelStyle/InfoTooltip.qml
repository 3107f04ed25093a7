import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A message that slides up from behind its lower edge.
Item {
    id: tip

    // The widest that the text may be; NaN: no limit.
    property real maxWidth: NaN
    property bool isShown: false
    property alias infoMessage: message.text

    // 4 to the right leave room for the shadow.
    implicitWidth: content.width + 4
    implicitHeight: content.height + 64
    clip: true

    Shadow {
        source: content
        visible: content.visible
        opacity: content.opacity
        offset: 2
        radius: 4
        samples: 9
        color: "#66000000"
    }

    Rectangle {
        id: content

        objectName: "content"
        x: tip.width / 8
        y: tip.height
        width: message.width + 20
        height: message.height + 12
        opacity: 0
        visible: opacity > 0 && message.text !== ""
        radius: 4
        color: "#2FBECA"

        T.Label {
            id: message

            x: 10
            y: 6
            width: implicitWidth >= tip.maxWidth ? tip.maxWidth : implicitWidth
            color: "white"
            font.pointSize: 9
            textFormat: Text.PlainText
            wrapMode: Text.WordWrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text
        }
    }

    states: [
        State {
            name: "shown"
            when: tip.isShown
            PropertyChanges { target: content; opacity: 1; x: 0; y: tip.height - content.height }
        },
        State {
            name: "hidden"
            when: !tip.isShown
            PropertyChanges { target: content; opacity: 0; x: tip.width / 8; y: tip.height }
        }
    ]

    transitions: [
        Transition {
            to: "shown"
            NumberAnimation { property: "opacity"; target: content; duration: 100 }
            NumberAnimation {
                properties: "x,y"
                target: content
                duration: 150
                easing.type: Easing.OutBack
                easing.overshoot: 1.752
            }
        },
        Transition {
            to: "hidden"
            NumberAnimation { properties: "opacity,x,y"; target: content; duration: 100 }
        }
    ]
}
