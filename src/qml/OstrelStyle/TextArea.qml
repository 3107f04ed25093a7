import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.TextArea {
    id: control

    property bool isErrorShown: false
    property string errorText: ""
    // The item that gives the frame's size, such as the scroll view around; this one if null.
    property Item backgroundSizeSource: null

    function hasError() {
        return isErrorShown || errorText !== ""
    }

    function needShowError() {
        return isErrorShown || (errorText !== "" && (activeFocus || hovered))
    }

    implicitWidth: Math.max(180, contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(30, contentHeight + topPadding + bottomPadding)
    leftPadding: 10
    rightPadding: 10
    topPadding: 6
    bottomPadding: 6
    z: needShowError() ? 1 : 0

    hoverEnabled: true
    selectByMouse: true
    wrapMode: TextEdit.Wrap
    font.pointSize: 9
    color: enabled ? "#707070" : "#A5A5A5"
    placeholderTextColor: "#A5A5A5"
    selectionColor: "#2FBECA"
    selectedTextColor: "#FFFFFF"

    // Written by voice, a tab is of no use here; by hand, Tab goes on to the next field.
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    background: FieldFrame {
        field: control
        width: (control.backgroundSizeSource || control).width
        height: (control.backgroundSizeSource || control).height
    }

    FieldHint {
        field: control
        visible: control.length === 0 && control.preeditText === ""
    }

    // In a view that scrolls it stands on the view: there it is not clipped.
    ErrorDisplay {
        parent: control.backgroundSizeSource || control
        field: control
    }
}
