import QtQuick 2.15

// One action or menu of an ActionPicker.
Item {
    id: row

    required property string entryTitle
    required property string entryPath
    required property bool isMenu
    required property bool isCurrent
    required property int sourceRow

    // The user wants it, with a screen reader.
    signal pressed

    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.ListItem
    Accessible.name: row.entryTitle
    Accessible.description: row.isMenu ? row.isCurrent ? qsTr("A menu with the present action.") : qsTr("A menu.")
                                       : row.isCurrent ? qsTr("The present action.") : ""
    Accessible.checked: row.isCurrent
    Accessible.onPressAction: row.pressed()

    ChoiceSign {
        id: sign
        objectName: "current"
        anchors { left: parent.left; leftMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        opacity: row.isCurrent ? 1 : 0
    }
    FittedText {
        objectName: "entryTitle"
        anchors {
            left: sign.right; leftMargin: Theme.margin
            right: arrow.left; rightMargin: Theme.spacing
            verticalCenter: parent.verticalCenter
        }
        text: row.entryTitle
        font.bold: row.isCurrent
        Accessible.ignored: true
    }
    EinkText {
        id: arrow
        objectName: "menuArrow"
        anchors { right: parent.right; rightMargin: Theme.margin; verticalCenter: parent.verticalCenter }
        width: Theme.labelSize * 0.6
        text: !row.isMenu ? "" : Theme.mirrored ? "\u2039" : "\u203a"
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }
}
