import QtQuick 2.15
import Vellix.Gesture 1.0

// Two lines for a message. They keep their room, so that nothing moves when there is one. A longer message is shown in
// full after a touch.
FocusScope {
    id: line

    property string text
    readonly property bool cut: label.truncated

    // The user wants to read all of it.
    signal opened

    implicitHeight: Math.max(Theme.target, 2 * Math.ceil(metrics.height) + 2 * Theme.line)
    activeFocusOnTab: line.cut
    Accessible.role: Accessible.AlertMessage
    Accessible.name: line.text
    Accessible.ignored: line.text === ""
    Accessible.onPressAction: line.open()
    Keys.onReturnPressed: line.open()
    Keys.onEnterPressed: line.open()
    Keys.onSpacePressed: line.open()
    onTextChanged: {
        if (line.text !== "")
            Gestures.announce(line)
    }

    function open() {
        if (line.cut)
            line.opened()
    }

    FontMetrics {
        id: metrics
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
    }
    Rectangle {
        anchors.fill: parent
        visible: line.text !== ""
        color: Theme.paper
        border { color: Theme.ink; width: line.activeFocus ? Theme.focusLine : Theme.line }
    }
    EinkText {
        id: label
        objectName: "message"
        anchors {
            fill: parent
            leftMargin: Theme.margin; rightMargin: Theme.margin
            topMargin: Theme.line; bottomMargin: Theme.line
        }
        visible: line.text !== ""
        text: line.text
        font.pixelSize: Theme.noteSize
        verticalAlignment: Text.AlignVCenter
        maximumLineCount: 2
        Accessible.ignored: true
    }
    MouseArea {
        anchors.fill: parent
        Accessible.ignored: true
        Accessible.name: qsTr("Show the whole message")
        onClicked: line.open()
    }
}
