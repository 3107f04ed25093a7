Label {
    color: "#3BBDC7"
    font.pointSize: 12
}
