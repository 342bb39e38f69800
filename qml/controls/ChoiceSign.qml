import QtQuick 2.15

// Tells the states of a choice apart without words or colour: a ring for one that is not saved, a disc for a saved one,
// a square with an exclamation mark for one that another program has decided otherwise.
Rectangle {
    id: sign

    property bool edited: false
    property bool conflicting: false

    readonly property bool filled: sign.conflicting || !sign.edited

    implicitWidth: Math.round(Theme.noteSize * 0.8)
    implicitHeight: sign.implicitWidth
    radius: sign.conflicting ? 0 : sign.width / 2
    color: sign.filled ? Theme.ink : Theme.paper
    border { color: Theme.ink; width: Math.max(2, Theme.line) }
    Accessible.ignored: true

    Text {
        anchors.centerIn: parent
        visible: sign.conflicting
        text: "!"
        textFormat: Text.PlainText
        color: Theme.paper
        font { family: Theme.fontFamily; pixelSize: Math.round(sign.height * 0.9); bold: true }
        Accessible.ignored: true
    }
}
