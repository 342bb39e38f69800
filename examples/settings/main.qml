import QtQuick 2.15
import QtQuick.Window 2.15

Window {
    id: window

    property string appId: "reader"

    title: "Gestures"
    width: 600
    height: 800
    visible: true
    color: "white"

    SettingsScreen {
        anchors.fill: parent
        appId: window.appId
        focus: true
    }
}
