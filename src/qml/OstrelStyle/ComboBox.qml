import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ComboBox {
    id: control

    property bool isErrorShown: false
    property string errorText: ""
    property alias toolTip: errorDisplay.toolTip

    function hasError() {
        return isErrorShown || errorText !== ""
    }

    function needShowError() {
        return isErrorShown || (errorText !== "" && (activeFocus || hovered))
    }

    implicitWidth: implicitBackgroundWidth
    implicitHeight: Math.max(30, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 10
    rightPadding: 20
    z: needShowError() ? 1 : 0
    hoverEnabled: true
    font.pointSize: 9

    contentItem: TextInput {
        clip: true
        text: control.editable ? control.editText : shownText.elidedText
        enabled: control.editable
        autoScroll: control.editable
        readOnly: control.down
        selectByMouse: true
        font: control.font
        color: control.enabled ? "#707070" : "#A5A5A5"
        selectionColor: "#2FBECA"
        selectedTextColor: "#FFFFFF"
        inputMethodHints: control.inputMethodHints
        validator: control.validator
        verticalAlignment: TextInput.AlignVCenter
    }

    TextMetrics {
        id: shownText
        font: control.font
        text: control.displayText
        elide: Text.ElideRight
        elideWidth: control.availableWidth
    }

    indicator: ComboArrow {
        x: control.width - width - 10
        y: (control.height - height) / 2
        color: !control.enabled ? "#E5E5E5"
                                : control.activeFocus || control.hovered || control.down
                                  ? "#2FBECA" : "#D5D5D5"
    }

    background: FieldFrame {
        field: control
        isTinted: false
        isAccented: control.activeFocus || control.hasError() || control.down || control.hovered
        isThick: control.activeFocus && control.editable
    }

    delegate: ComboRow {
        width: ListView.view.width
        // Not textAt(): this follows a change of the item.
        text: control.textRole === "" ? modelData
              : Array.isArray(control.model) ? modelData[control.textRole]
                                             : model[control.textRole]
        isCurrent: control.currentIndex === index
        highlighted: control.highlightedIndex === index
    }

    popup: ComboPopup {
        combo: control
    }

    ErrorDisplay {
        id: errorDisplay
        field: control
    }
}
