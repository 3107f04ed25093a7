Label {
    color: "#909090"
}
