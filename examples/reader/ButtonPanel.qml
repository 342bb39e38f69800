import QtQuick 2.15
import Vellix.Gesture.Controls 1.0

// A panel over the page: a heading and a grid of buttons. The arrow keys, Home and End move between the buttons, Return
// and the space bar press them.
Rectangle {
    id: panel

    property string title
    // The text of each button, and what it picks.
    property var texts: []
    property var keys: []
    property int chosen: -1 // of them
    property int columns: 1
    // The buttons are lower if there is little room, but never too low for a finger.
    property real room: 0

    readonly property int rows: Math.ceil(buttons.count / panel.columns)
    readonly property real buttonHeight: Math.max(Theme.target, Math.min(Theme.millimeters(13),
            (panel.room - heading.height - Theme.margin) / panel.rows - Theme.margin))

    signal picked(string key)

    // Gives the keyboard to the chosen button, else to the first.
    function takeKeys() {
        panel.goTo(panel.chosen)
    }

    function goTo(index) {
        const button = buttons.itemAt(Math.max(0, Math.min(buttons.count - 1, index)))
        if (button)
            button.focus = true
    }

    function current() {
        for (let index = 0; index < buttons.count; ++index) {
            if (buttons.itemAt(index).focus)
                return index
        }
        return 0
    }

    // A step that leaves the grid is none.
    function step(by) {
        const to = panel.current() + by
        if (to >= 0 && to < buttons.count)
            panel.goTo(to)
    }

    function stepAcross(by) {
        const column = panel.current() % panel.columns + by
        if (column >= 0 && column < panel.columns)
            panel.step(by)
    }

    function key(event) {
        const onward = panel.LayoutMirroring.enabled ? -1 : 1
        const moves = {
            [Qt.Key_Left]: () => panel.stepAcross(-onward),
            [Qt.Key_Right]: () => panel.stepAcross(onward),
            [Qt.Key_Up]: () => panel.step(-panel.columns),
            [Qt.Key_Down]: () => panel.step(panel.columns),
            [Qt.Key_Home]: () => panel.goTo(0),
            [Qt.Key_End]: () => panel.goTo(buttons.count - 1),
        }
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return false
        const known = moves.hasOwnProperty(event.key)
        if (known)
            moves[event.key]()
        return known
    }

    height: grid.y + grid.height + Theme.margin
    color: Theme.paper
    border.color: Theme.ink
    border.width: Theme.line

    Accessible.role: Accessible.PopupMenu
    Accessible.name: panel.title

    Keys.onPressed: event => { event.accepted = panel.key(event) }

    Text {
        id: heading
        anchors.horizontalCenter: panel.horizontalCenter
        width: panel.width - 2 * Theme.margin
        height: panel.title === "" ? 0 : Theme.target
        text: panel.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize; bold: true }
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        Accessible.name: heading.text
    }

    // Touches beside the buttons are none on the page.
    MouseArea {
        anchors.fill: panel
        z: -1
    }

    Grid {
        id: grid
        readonly property real cellWidth: (panel.width - (panel.columns + 1) * Theme.margin) / panel.columns
        x: Theme.margin
        y: Math.max(Theme.margin, heading.height)
        columns: panel.columns
        spacing: Theme.margin

        Repeater {
            id: buttons
            model: panel.texts
            delegate: EinkButton {
                id: entry
                required property int index
                required property string modelData
                objectName: panel.objectName + "-" + panel.keys[entry.index]
                width: grid.cellWidth
                height: panel.buttonHeight
                activeFocusOnTab: false // the tabulator key is for the mode
                text: entry.modelData
                checked: entry.index === panel.chosen
                onClicked: panel.picked(panel.keys[entry.index])
            }
        }
    }
}
