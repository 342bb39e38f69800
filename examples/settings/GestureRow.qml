import QtQuick 2.15
import QtQuick.Controls 2.15
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// One gesture: its place, its name, its action, and whether the user has chosen that.
AbstractButton {
    id: row

    // The gesture, and the title of its default action; empty if that is the current one.
    property Gesture gesture
    property string defaultTitle
    property bool selected: false

    readonly property bool changeable: row.gesture.actionTree !== null
    readonly property string actionTitle: {
        const action = row.gesture.currentAction
        return action ? action.lastTitle || action.path : "nothing"
    }

    implicitHeight: 84
    focusPolicy: Qt.NoFocus // the list has it
    enabled: row.changeable
    Accessible.name: name.text + ": " + row.actionTitle

    background: Rectangle {
        color: row.down ? "#d0d0d0" : "white"
        border.color: "black"
        border.width: row.selected ? 4 : 0
    }
    contentItem: Item {
        ScreenPicture {
            id: picture
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            zone: row.gesture.zone
            direction: row.gesture.direction
        }
        Column {
            anchors { left: picture.right; leftMargin: 16; right: arrow.left; verticalCenter: parent.verticalCenter }
            Text {
                id: name
                width: parent.width
                text: Words.gestureWords(row.gesture)
                font.pixelSize: 18
                elide: Text.ElideRight
            }
            Text {
                objectName: "actionTitle"
                width: parent.width
                text: row.actionTitle
                font { pixelSize: 22; bold: true }
                elide: Text.ElideRight
            }
            Text {
                objectName: "changedMark"
                width: parent.width
                visible: row.defaultTitle !== ""
                text: "changed; by default: " + row.defaultTitle
                font { pixelSize: 15; italic: true }
                elide: Text.ElideRight
            }
        }
        Text {
            id: arrow
            anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
            text: row.changeable ? "\u203a" : ""
            font.pixelSize: 34
        }
    }
}
