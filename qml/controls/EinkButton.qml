import QtQuick 2.15

// Black on white, inverted while it is pressed or checked, with a thick frame while it has the keyboard.
Item {
    id: button

    property string text
    property bool checkable: false
    property bool checked: false
    readonly property bool down: touch.pressed && touch.containsMouse
    readonly property bool inverted: button.down || button.checked

    signal clicked
    // The user has changed `checked`.
    signal toggled

    implicitWidth: Math.max(Theme.target, Math.ceil(caption.needed) + 2 * (Theme.focusLine + Theme.spacing))
    implicitHeight: Math.max(Theme.target, Math.ceil(caption.implicitHeight) + 2 * Theme.focusLine)
    activeFocusOnTab: true

    Keys.onReturnPressed: event => button.press(event)
    Keys.onEnterPressed: event => button.press(event)
    Keys.onSpacePressed: event => button.press(event)

    Accessible.role: Accessible.Button
    Accessible.name: button.text
    Accessible.checkable: button.checkable
    Accessible.checked: button.checked
    Accessible.focusable: true
    Accessible.onPressAction: button.activate()
    Accessible.onToggleAction: button.activate()

    function press(event) {
        if (!event.isAutoRepeat)
            button.activate()
    }

    function activate() {
        if (button.checkable) {
            button.checked = !button.checked
            button.toggled()
        }
        button.clicked()
    }

    Rectangle {
        anchors.fill: parent
        color: button.inverted && button.enabled ? Theme.ink : Theme.paper
        border.color: button.enabled ? Theme.ink : Theme.dim
        border.width: button.enabled ? Theme.line : Theme.hairline

        // Within the edge, so that it can also be seen on black.
        Rectangle {
            objectName: "focusFrame"
            anchors { fill: parent; margins: Theme.line }
            visible: button.activeFocus
            color: "transparent"
            border.color: button.inverted ? Theme.paper : Theme.ink
            border.width: Theme.focusLine
        }
    }
    FittedText {
        id: caption
        objectName: "caption"
        anchors {
            fill: parent
            leftMargin: Theme.focusLine + Theme.spacing; rightMargin: Theme.focusLine + Theme.spacing
            topMargin: Theme.focusLine; bottomMargin: Theme.focusLine
        }
        text: button.text
        color: !button.enabled ? Theme.dim : button.inverted ? Theme.paper : Theme.ink
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    MouseArea {
        id: touch
        anchors.fill: parent
        Accessible.ignored: true
        Accessible.name: button.text
        onClicked: button.activate()
    }
}
