import QtQuick 2.15
import QtQuick.Controls 2.15

// A row of a list, or none: -1.
ComboBox {
    property int chosen: -1

    signal choose(int index)

    currentIndex: chosen
    displayText: chosen < 0 ? "" : currentText
    // The box moves its own index, with a new list to the first row, which ends the binding.
    onChosenChanged: currentIndex = chosen
    onModelChanged: currentIndex = chosen
    onActivated: function(index) { choose(index) }
}
