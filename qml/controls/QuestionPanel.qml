import QtQuick 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// Asks over the whole page. Below it, nothing reacts.
FocusScope {
    id: panel

    property string text
    // The last one changes nothing; it is the answer of Escape.
    property var answers: []

    signal answered(int answer)

    visible: false
    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Dialog
    Accessible.name: panel.text
    Accessible.ignored: !panel.visible
    Keys.onEscapePressed: panel.answer(buttons.count - 1)
    Keys.onBackPressed: panel.answer(buttons.count - 1)

    function ask(text, answers) {
        panel.text = text
        panel.answers = answers
        panel.visible = true
        buttons.itemAt(answers.length - 1).forceActiveFocus(Qt.TabFocusReason) // with its frame
        Gestures.announce(panel)
    }

    function answer(number) {
        panel.visible = false
        panel.answered(number)
    }

    function move(from, by) {
        const to = Math.max(0, Math.min(from + by, buttons.count - 1))
        buttons.itemAt(to).forceActiveFocus(Qt.TabFocusReason)
    }

    MouseArea { // blocks touches below
        anchors.fill: parent
        Accessible.ignored: true
        Accessible.name: panel.text
        onWheel: wheel => { wheel.accepted = true }
    }
    Rectangle {
        anchors { fill: parent; margins: Theme.margin }
        color: Theme.paper
        border { color: Theme.ink; width: Theme.focusLine }

        ColumnLayout {
            anchors { fill: parent; margins: Theme.focusLine + Theme.margin }
            spacing: Theme.spacing

            EinkText {
                objectName: "questionText"
                Layout.fillWidth: true
                Layout.fillHeight: true
                text: panel.text
                verticalAlignment: Text.AlignVCenter
                fontSizeMode: Text.VerticalFit
                minimumPixelSize: Math.round(Theme.noteSize * 0.6)
                font.pixelSize: Theme.labelSize
            }
            Repeater {
                id: buttons
                model: panel.answers
                EinkButton {
                    id: button
                    required property int index
                    required property string modelData
                    objectName: "answer" + button.index
                    Layout.fillWidth: true
                    text: button.modelData
                    Keys.onUpPressed: panel.move(button.index, -1)
                    Keys.onDownPressed: panel.move(button.index, 1)
                    onClicked: panel.answer(button.index)
                }
            }
        }
    }
}
