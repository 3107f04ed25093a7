import QtQuick 2.15
import QtQuick.Controls.impl 2.15

// The text beside the indicator of a CheckBox or a RadioButton.
MnemonicLabel {
    property Item choice

    text: choice.text
    font: choice.font
    leftPadding: choice.indicator.width + choice.spacing
    verticalAlignment: Text.AlignVCenter
    wrapMode: Text.WordWrap

    // A checked indicator has the colour of focus already.
    DashedFrame {
        x: parent.leftPadding - 2
        y: (parent.height - height) / 2
        width: parent.contentWidth + 4
        height: parent.contentHeight
        visible: choice.visualFocus && choice.text !== ""
    }
}
