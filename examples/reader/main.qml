import QtQuick 2.15
import QtQuick.Window 2.15
import Vellix.Gesture.Controls 1.0

Window {
    id: window
    property string appId: "reader"
    // A page of 15 by 20 cm, or a smaller screen.
    width: window.fitting(150, "width")
    height: window.fitting(200, "height")
    visible: true
    title: screen.title

    function fitting(millimeters, side) {
        const screens = Qt.application.screens
        const wanted = Math.round(Theme.millimeters(millimeters))
        return screens.length > 0 ? Math.min(wanted, screens[0][side]) : wanted
    }

    ReaderScreen {
        id: screen
        anchors.fill: parent
        appId: window.appId
        focus: true
        LayoutMirroring.enabled: Theme.mirrored
        LayoutMirroring.childrenInherit: true
    }
}
