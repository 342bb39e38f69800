import QtQuick 2.15
import QtQuick.Window 2.15

Window {
    id: window
    property string appId: "reader"
    width: 600
    height: 800
    visible: true
    title: screen.title

    ReaderScreen {
        id: screen
        anchors.fill: parent
        appId: window.appId
        focus: true
    }
}
