import QtQuick 2.15
import QtQuick.Controls 2.15

// Black on white, inverted while it is pressed or checked, with a thick frame while it has the focus.
Button {
    id: button

    font.pixelSize: 20
    implicitHeight: 56
    leftPadding: 14
    rightPadding: 14
    Keys.onReturnPressed: button.press()
    Keys.onEnterPressed: button.press()

    readonly property bool inverted: button.down || button.checked

    // The space bar already does this.
    function press() {
        if (button.checkable) {
            button.toggle()
            button.toggled()
        }
        button.clicked()
    }

    contentItem: Text {
        text: button.text
        font: button.font
        color: !button.enabled ? "#808080" : button.inverted ? "white" : "black"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }
    background: Rectangle {
        color: button.inverted ? "black" : "white"
        border.color: button.enabled ? "black" : "#808080"
        border.width: button.visualFocus ? 5 : 2
    }
}
