import QtQuick 2.15
import QtQuick.Layouts 1.15

SettingsPage {
    id: page

    RecordingDeviceManagerView {
        Layout.fillWidth: true
        viewmodel: page.viewmodel.RecordingDevice
    }

    PlaybackDeviceManagerView {
        Layout.fillWidth: true
        Layout.topMargin: 12
        viewmodel: page.viewmodel.PlaybackDevice
    }
}
