import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15

// A text with a sign that explains it.
RowLayout {
    id: helped

    property alias text: label.text
    property alias help: mark.help

    spacing: 6

    Label {
        id: label

        Layout.maximumWidth: helped.width - mark.width - helped.spacing
        wrapMode: Text.WordWrap
    }

    QuestionMark {
        id: mark
    }

    Item { Layout.fillWidth: true }
}
