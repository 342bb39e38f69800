import QtQml 2.15
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// The menu of the actions of one gesture. It follows the editor: if the gesture changes, the same menu stays open.
FocusScope {
    id: picker

    property GestureEditor editor: null
    // The gesture; empty for none.
    property string gestureId
    readonly property Gesture gesture: inner.gesture

    // The user has chosen the action with this path.
    signal chosen(string path)
    // The user wants the default.
    signal resetRequested
    // The user leaves, or the gesture is gone.
    signal left

    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true
    onGestureIdChanged: inner.open()
    // The next time, the keyboard begins in the list.
    onActiveFocusChanged: {
        if (!picker.activeFocus)
            list.focus = true
    }
    onEditorChanged: inner.open()

    Keys.onEscapePressed: picker.back()
    Keys.onBackPressed: picker.back()
    Keys.onLeftPressed: event => picker.handleArrow(event, !Theme.mirrored)
    Keys.onRightPressed: event => picker.handleArrow(event, Theme.mirrored)

    // Goes to the menu before, or leaves.
    function back() {
        if (menu.nested)
            list.currentRow = menu.back()
        else
            picker.left()
    }

    function handleArrow(event, isBack) {
        if (event.isAutoRepeat)
            return
        if (isBack)
            picker.back()
        else
            list.activate(list.currentRow)
    }

    function openRow(row) {
        const path = menu.open(row)
        if (path === "")
            list.currentRow = Math.max(0, menu.currentRow)
        else
            picker.chosen(path)
    }

    QtObject {
        id: inner
        property Gesture gesture: null
        // Of the row in the editor's model, which tells apart what the gesture alone cannot.
        property int row: -1
        property string title
        property string defaultTitle
        property bool isDefault: true

        function open() {
            inner.read()
            menu.gesture = inner.gesture
            list.currentRow = Math.max(0, menu.currentRow)
        }

        function read() {
            inner.gesture = picker.editor && picker.gestureId !== "" ? picker.editor.gesture(picker.gestureId) : null
            inner.row = inner.rowOf(picker.gestureId)
            inner.title = inner.gesture ? gestures.value(inner.row, "gestureTitle") : ""
            inner.defaultTitle = inner.gesture ? gestures.value(inner.row, "defaultTitle") : ""
            inner.isDefault = !inner.gesture || gestures.value(inner.row, "isDefault")
        }

        function rowOf(id) {
            for (let row = 0; row < gestures.rows; ++row) {
                if (gestures.value(row, "gestureId") === id)
                    return row
            }
            return -1
        }

        // The gestures may be other objects now.
        function follow() {
            if (picker.gestureId === "")
                return
            inner.read()
            if (!inner.gesture) {
                menu.gesture = null
                picker.left()
            } else if (inner.gesture !== menu.gesture) {
                inner.reopen(inner.copied(menu.trail), list.currentRow)
            }
        }

        function reopen(trail, row) {
            menu.gesture = inner.gesture
            while (menu.nested)
                menu.back()
            for (let level = 0; level < trail.length && inner.enter(trail[level]); ++level) {}
            list.currentRow = row
        }

        function enter(title) {
            for (let row = 0; row < list.count; ++row) {
                if (list.value(row, "isMenu") && list.value(row, "entryTitle") === title) {
                    menu.open(row)
                    return true
                }
            }
            return false
        }

        // All titles of the action, from the outermost menu.
        function actionInFull() {
            const action = inner.gesture ? inner.gesture.currentAction : null
            if (!action || action.titles.length === 0)
                return Gestures.actionTitle(action)
            return inner.joined(action.titles)
        }

        // A list that is read from a model changes with it.
        function copied(titles) {
            return titles.slice()
        }

        function joined(titles) {
            return titles.join(" \u203a ") // text from right to left mirrors the sign
        }
    }

    Connections {
        target: picker.editor
        function onChanged() { inner.follow() }
    }
    PageModel {
        id: gestures
        source: picker.editor ? picker.editor.model : null
    }
    ActionMenuModel {
        id: menu
    }
    readonly property real lineHeight: metrics.height
    onLineHeightChanged: picker.measure()

    FontMetrics {
        id: metrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize; bold: true }
    }

    // All rows have one height: two lines if the longest title needs them.
    // Not a binding: the pages change again with the height.
    function measure() {
        if (!list)
            return // while it is created
        let highest = Math.ceil(metrics.height)
        label.width = list.rowWidth - 2 * Theme.margin - Theme.noteSize * 0.8 - Theme.margin - Theme.spacing
                      - Theme.labelSize * 0.6
        for (let row = 0; row < menu.count; ++row) {
            const title = list.value(row, "entryTitle")
            if (metrics.advanceWidth(title) + 1 < label.width)
                continue
            label.text = title
            highest = Math.max(highest, Math.ceil(label.implicitHeight))
        }
        list.rowHeight = Math.max(Theme.target, highest + 2 * Theme.focusLine)
    }

    FittedText {
        id: label
        visible: false
        font.bold: true
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.spacing

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.margin

            EinkButton {
                id: backButton
                objectName: "back"
                Layout.alignment: Qt.AlignTop
                text: Theme.mirrored ? qsTr("Back \u203a") : qsTr("\u2039 Back")
                Accessible.name: qsTr("Back")
                KeyNavigation.down: list
                onClicked: {
                    list.forceActiveFocus()
                    picker.back()
                }
            }
            FittedText {
                objectName: "pickerHeading"
                Layout.fillWidth: true
                text: inner.title
                font.bold: true
                // As many as it needs, but on a small screen, actions need room too.
                maximumLineCount: picker.height < 8 * Theme.target ? 2 : 1000
                Accessible.role: Accessible.Heading
            }
        }
        EinkText {
            objectName: "pickerCurrent"
            Layout.fillWidth: true
            text: qsTr("Now: %1").arg(inner.actionInFull())
            font.pixelSize: Theme.noteSize
            elide: Text.ElideNone
        }
        EinkText {
            objectName: "pickerTrail"
            Layout.fillWidth: true
            visible: menu.nested
            text: inner.joined(menu.trail)
            font { pixelSize: Theme.noteSize; bold: true }
            elide: Text.ElideNone
        }

        PagedList {
            id: list
            objectName: "actionList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            model: menu
            searchRole: "entryTitle"
            title: qsTr("Actions")
            KeyNavigation.up: backButton
            KeyNavigation.down: defaultButton.enabled ? defaultButton : null
            onActivated: row => picker.openRow(row)
            onContentChanged: picker.measure()

            delegate: MenuRow {
                id: entry
                objectName: "action-" + (entry.isMenu ? entry.entryTitle : entry.entryPath)
                onPressed: list.activate(entry.sourceRow)
            }
        }

        EinkButton {
            id: defaultButton
            objectName: "useDefault"
            Layout.fillWidth: true
            text: qsTr("Use the default: %1").arg(inner.defaultTitle)
            enabled: !inner.isDefault
            KeyNavigation.up: list
            onClicked: picker.resetRequested()
        }
    }
}
