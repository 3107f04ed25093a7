import QtQuick 2.15
import QtQuick.Controls 1.4

TableView {
    id: grid

    // From a row's number to the colour of its text; may be unset.
    property var fontColorGetter
    // The list model has changed the selection, which it need not be told.
    property bool isSelectionChanging: false
    // The model that the selection belongs to: differs from `model` while that is exchanged.
    property var selectedModel: null

    // Kept in properties, as the plain objects inside the view are its columns.
    readonly property QtObject selectionWatch: Connections {
        target: grid.selection

        function onSelectionChanged() {
            grid.tellModel()
        }
    }
    readonly property QtObject modelWatch: Connections {
        target: grid.keepsIndex(grid.model) ? grid.model : null

        function onChanged_CurrentIndex(v) {
            grid.showIndex(v)
        }
    }

    frameVisible: false
    style: DataGridStyle { }

    function keepsIndex(list) {
        return Boolean(list) && list.CurrentIndex !== undefined
    }

    function lastSelectedRow() {
        let last = -1
        selection.forEach(function(row) { last = row })
        return last
    }

    function tellModel() {
        if (isSelectionChanging || model !== selectedModel)
            return
        const row = lastSelectedRow()
        if (keepsIndex(model))
            model.CurrentIndex = row
    }

    // Selects a row, or none for a negative number, without telling the model.
    function showIndex(row) {
        isSelectionChanging = true
        try {
            // This also makes the view take in rows that have just come.
            currentRow = row
            if (row < 0 || selectionMode === SelectionMode.SingleSelection
                    || lastSelectedRow() >= rowCount)
                selection.clear()
            if (row >= 0 && row < rowCount)
                selection.select(row, row)
        } finally {
            isSelectionChanging = false
        }
    }

    // Rows that are gone cannot be selected, and the model may have moved its index with them.
    function followRows() {
        if (isSelectionChanging)
            return
        if (keepsIndex(model))
            showIndex(model.CurrentIndex)
        else if (lastSelectedRow() >= rowCount)
            selection.clear()
    }

    onRowCountChanged: followRows()
    onModelChanged: {
        selectedModel = model
        // The view takes the model in after this, and starts at its first row.
        Qt.callLater(followRows)
    }

    Rectangle {
        anchors.fill: parent
        z: 2
        color: "transparent"
        border.width: 1
        border.color: "#C0C0C0"
    }
}
