import QtQuick 2.15

Label {
    color: "#505050"
    font.weight: Font.DemiBold
}
