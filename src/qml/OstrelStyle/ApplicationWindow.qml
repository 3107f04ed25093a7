import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ApplicationWindow {
    id: window

    width: 912
    height: 513
    minimumWidth: 912
    minimumHeight: 513

    overlay.modal: OverlayDim {
        shadow: window.palette.shadow
        strength: 0.5
    }
    overlay.modeless: OverlayDim {
        shadow: window.palette.shadow
        strength: 0.12
    }
}
