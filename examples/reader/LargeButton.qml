import QtQuick 2.15

// A button for fingers and e-ink: black on white, inverted while it is pressed or if it is the chosen one.
Rectangle {
    id: button

    property string text
    property bool chosen: false
    readonly property bool inverted: button.chosen !== touch.containsPress

    signal clicked()

    color: button.inverted ? "black" : "white"
    border.color: "black"
    border.width: 2

    Text {
        anchors.fill: parent
        anchors.margins: 6
        text: button.text
        color: button.inverted ? "white" : "black"
        font.pixelSize: 20
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 12
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    MouseArea {
        id: touch
        anchors.fill: parent
        onClicked: button.clicked()
    }
}
