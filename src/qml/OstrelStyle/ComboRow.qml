import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// One item of a ComboBox's list; the list draws the highlight under it.
T.ItemDelegate {
    id: row

    property bool isCurrent: false

    implicitHeight: label.implicitHeight + 10
    leftPadding: 10
    rightPadding: 10
    hoverEnabled: true
    font.pointSize: 9.5
    font.bold: isCurrent
    Accessible.name: text

    contentItem: Text {
        id: label

        text: row.text
        font: row.font
        color: "#707070"
        textFormat: Text.PlainText
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }
}
