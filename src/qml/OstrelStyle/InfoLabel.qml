import QtQuick 2.15

Label {
    color: "#909090"
    font.italic: true
    wrapMode: Text.WordWrap
}
