import QtQuick 2.15
import Vellix.Gesture 1.0

// One gesture of a GestureListView: its place, its name, its action, and whose choice that is.
Item {
    id: row

    required property var gesture
    required property string gestureTitle
    required property string actionTitle
    required property string defaultTitle
    required property bool isDefault
    required property bool isEdited
    required property bool isConflicting
    required property bool isChangeable
    required property int sourceRow

    // Rows that are replaced may outlive their gestures.
    readonly property Gesture shown: row.gesture

    // A sentence about the choice; empty for the default.
    property string mark

    // The user wants to change it, with a screen reader.
    signal pressed

    enabled: row.isChangeable
    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.ListItem
    Accessible.name: qsTr("%1: %2", "a gesture, and its action").arg(row.gestureTitle).arg(row.actionTitle)
    Accessible.description: row.isChangeable ? row.mark : qsTr("This gesture cannot be changed.")
    Accessible.onPressAction: row.pressed()

    ZonePicture {
        id: picture
        anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        zone: row.shown ? row.shown.zone : Qt.rect(0, 0, 1, 1)
        direction: row.shown ? row.shown.direction : 4
    }
    // Not a positioner, which would need another frame.
    Item {
        anchors {
            left: picture.right; leftMargin: Theme.margin
            right: arrow.left
            verticalCenter: parent.verticalCenter
        }
        height: title.height + action.height + (row.mark === "" ? 0 : note.height)

        FittedText {
            id: title
            objectName: "gestureTitle"
            width: parent.width
            text: row.gestureTitle
            Accessible.ignored: true
        }
        FittedText {
            id: action
            objectName: "actionTitle"
            anchors.top: title.bottom
            width: parent.width
            text: row.actionTitle
            font.bold: true
            Accessible.ignored: true
        }
        ChoiceSign {
            id: sign
            objectName: "sign"
            anchors { left: parent.left; verticalCenter: note.verticalCenter }
            visible: row.mark !== ""
            edited: row.isEdited
            conflicting: row.isConflicting
        }
        EinkText {
            id: note
            objectName: "mark"
            anchors { top: action.bottom; left: sign.right; leftMargin: Theme.spacing; right: parent.right }
            visible: row.mark !== ""
            text: row.mark
            font.pixelSize: Theme.noteSize
            maximumLineCount: 2
            Accessible.ignored: true
        }
    }
    EinkText {
        id: arrow
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: Theme.labelSize * 0.6
        visible: row.isChangeable
        text: Theme.mirrored ? "\u2039" : "\u203a"
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
}
