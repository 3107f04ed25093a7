import QtQuick 2.15
import "qrc:/Views/ThemeViews"

ThemeSelectionWindow {
    id: selection

    title: qsTr("Выбор темы")

    StartThemeSelectionView {
        anchors.fill: parent
        anchors.topMargin: selection.background.contentTop
        onApply: selection.apply()
        onCancel: selection.close()
    }
}
