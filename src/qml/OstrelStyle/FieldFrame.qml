import QtQuick 2.15

// The background of a field that has hasError().
Rectangle {
    property Item field
    property bool isTinted: field.hasError()
    property bool isAccented: field.activeFocus || field.hasError()
    property bool isThick: field.activeFocus

    implicitWidth: 180
    implicitHeight: 30
    color: isTinted ? "#2200BFCC" : "#ffffff"
    border.width: field.enabled && isThick ? 2 : 1
    border.color: !field.enabled ? "#E5E5E5" : isAccented ? "#2FBECA" : "#D5D5D5"
}
