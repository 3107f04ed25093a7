import QtQuick 2.15

// The head of the microphone. No Shape: without GL that is not clipped at double scale.
Rectangle {
    width: 22
    height: 35
    radius: width / 2
    color: "#000000"
    antialiasing: true
}
