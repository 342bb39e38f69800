import QtQuick 2.15
import QtQuick.Window 2.15
import Vellix.Gesture.Controls 1.0

Window {
    id: window

    property string appId: "reader"

    title: qsTr("Gestures")
    // At least 9 by 12 cm on a screen of many dots.
    width: Math.max(600, Theme.millimeters(90))
    height: Math.max(800, Theme.millimeters(120))
    visible: true
    onClosing: close => { close.accepted = page.leave() }

    GestureSettingsPage {
        id: page
        anchors.fill: parent
        focus: true
        appId: window.appId
        onLeft: window.close()
    }
}
