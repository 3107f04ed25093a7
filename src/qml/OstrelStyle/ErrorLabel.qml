Label {
    color: "#CE3535"
}
