import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.TextField {
    id: control

    property bool isErrorShown: false
    property string errorText: ""

    function hasError() {
        return isErrorShown || errorText !== ""
    }

    function needShowError() {
        return isErrorShown || (errorText !== "" && (activeFocus || hovered))
    }

    implicitWidth: Math.max(implicitBackgroundWidth, hint.implicitWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, contentHeight + topPadding + bottomPadding)
    leftPadding: 10
    rightPadding: 10
    topPadding: 4
    bottomPadding: 4
    // Above what stands over it, so that nothing covers the message.
    z: needShowError() ? 1 : 0

    hoverEnabled: true
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    font.pointSize: 9
    color: enabled ? "#707070" : "#A5A5A5"
    placeholderTextColor: "#A5A5A5"
    selectionColor: "#2FBECA"
    selectedTextColor: "#FFFFFF"

    background: FieldFrame {
        field: control
    }

    FieldHint {
        id: hint
        field: control
        visible: control.length === 0 && control.preeditText === ""
    }

    ErrorDisplay {
        field: control
    }
}
