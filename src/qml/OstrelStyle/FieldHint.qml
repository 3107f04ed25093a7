import QtQuick 2.15

// What an empty field says about itself.
Text {
    property Item field

    x: field.leftPadding
    y: field.topPadding
    width: field.width - field.leftPadding - field.rightPadding
    height: field.height - field.topPadding - field.bottomPadding
    text: field.placeholderText
    font: field.font
    color: field.placeholderTextColor
    horizontalAlignment: field.horizontalAlignment
    verticalAlignment: field.verticalAlignment
    renderType: field.renderType
    elide: Text.ElideRight
}
