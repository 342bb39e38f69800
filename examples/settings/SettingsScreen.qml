import QtQml 2.15
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Examples 1.0
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// Shows the gestures of an application and lets the reader bind them to other actions. It edits a copy of the
// service; nothing is written before Save.
FocusScope {
    id: screen

    property string appId: "reader"

    // The action paths that were chosen here and are not saved yet, by the id of the gesture.
    property var edits: ({})
    readonly property bool edited: Object.keys(screen.edits).length > 0
    property string message: ""

    // The copy under edit. It has no parent: once nobody refers to it, it is collected.
    property var copy: null
    // The action paths by gesture that the copy was made of, and those that the user's file is known to give.
    property var copied: ({})
    property var known: ({})

    GestureServiceProvider {
        id: provider
        appId: screen.appId
    }

    ConfigurationState {
        id: configuration
        appId: screen.appId
    }

    Connections {
        target: provider
        // The service is null for a moment while it is replaced.
        function onServiceChanged(value) {
            Qt.callLater(screen.refresh)
        }
    }

    Component.onCompleted: screen.refresh()

    function choicesOf(service) {
        const choices = {}
        const model = service.gestures
        for (let i = 0; i < model.rowCount(); ++i) {
            const gesture = model.data(model.index(i, 0))
            if (gesture && gesture.currentAction)
                choices[gesture.id] = gesture.currentAction.path
        }
        return choices
    }

    function same(a, b) {
        const keys = Object.keys(a)
        return keys.length === Object.keys(b).length && keys.every(key => a[key] === b[key])
    }

    // The state of the files, whoever has changed them. Our own changes are known already.
    function refresh() {
        configuration.refresh()
        const service = provider.service
        if (!service || configuration.problem !== "") {
            screen.copy = null
            pages.toList()
            return
        }
        const now = screen.choicesOf(service)
        const foreign = screen.copy !== null && !screen.same(now, screen.known)
        screen.known = now
        if (screen.copy === null || !screen.same(now, screen.copied))
            screen.takeCopy()
        if (foreign)
            screen.message = screen.edited
                    ? "Another program has changed the choices. They are shown here with your unsaved ones on top."
                    : "Another program has changed the choices. This is how they are now."
    }

    // A fresh copy of the service, with the edits on top of it.
    function takeCopy() {
        const copy = provider.service.cloneAsQObject()
        screen.copied = screen.choicesOf(copy)
        const edits = {}
        const model = copy.gestures
        for (let i = 0; i < model.rowCount(); ++i) {
            const gesture = model.data(model.index(i, 0))
            const wanted = gesture ? screen.edits[gesture.id] : undefined
            const action = wanted === undefined ? null : screen.availableAction(gesture, wanted)
            if (action && wanted !== screen.copied[gesture.id]) {
                gesture.currentAction = action
                edits[gesture.id] = wanted
            }
        }
        screen.edits = edits
        screen.copy = copy
        pages.toList()
        listPage.reload()
    }

    function availableAction(gesture, path) {
        for (let i = 0; i < gesture.availableActions.length; ++i) {
            if (gesture.availableActions[i].path === path)
                return gesture.availableActions[i]
        }
        return null
    }

    function choose(gesture, action) {
        gesture.currentAction = action
        const edits = Object.assign({}, screen.edits)
        if (action.path === screen.copied[gesture.id])
            delete edits[gesture.id]
        else
            edits[gesture.id] = action.path
        screen.edits = edits
        screen.message = ""
        listPage.reload()
    }

    // The provider is writable for this moment only: a writable service would save once more at exit.
    function save() {
        provider.readonly = false
        const service = provider.service
        const others = screen.choicesOf(service)
        let problem = ""
        if (!screen.same(others, screen.known)) {
            problem = "overtaken"
        } else if (!service.fastMergeWithQObject(screen.copy)) {
            problem = "The gestures have changed meanwhile; nothing was saved."
        } else {
            service.save()
            problem = configuration.saveProblem(service)
        }
        if (problem === "") {
            screen.known = screen.choicesOf(service)
            screen.copied = screen.known
            screen.edits = {}
        }
        provider.readonly = true // the change calls refresh(), which tells of an overtaking
        if (problem !== "overtaken")
            screen.message = problem || "Saved."
        listPage.reload()
    }

    function cancel() {
        screen.edits = {}
        screen.message = ""
        screen.takeCopy()
    }

    function reset() {
        screen.edits = {}
        const defaults = {}
        for (const id in configuration.defaults)
            defaults[id] = configuration.defaults[id].path
        screen.known = defaults
        const had = configuration.hasChoices
        const done = provider.service.prune()
        screen.message = done || !had ? "These are the defaults." : "The choices could not be deleted."
        if (screen.copy !== null)
            screen.takeCopy()
    }

    Rectangle {
        anchors.fill: parent
        color: "white"
    }

    ColumnLayout {
        anchors { fill: parent; margins: 10 }
        spacing: 6

        Text {
            objectName: "title"
            Layout.fillWidth: true
            text: "Gestures of \u201c" + screen.appId + "\u201d"
            font { pixelSize: 26; bold: true }
            elide: Text.ElideRight
        }

        Text {
            objectName: "notice"
            Layout.fillWidth: true
            visible: text !== "" && configuration.problem === ""
            text: configuration.notice
            font { pixelSize: 17; italic: true }
            wrapMode: Text.Wrap
        }

        Rectangle {
            Layout.fillWidth: true
            visible: screen.message !== ""
            implicitHeight: messageText.implicitHeight + 20
            border { color: "black"; width: 2 }
            Text {
                id: messageText
                objectName: "message"
                anchors { left: parent.left; right: parent.right; margins: 10; verticalCenter: parent.verticalCenter }
                text: screen.message
                font.pixelSize: 18
                wrapMode: Text.Wrap
            }
            TapHandler {
                onTapped: screen.message = ""
            }
        }

        Text {
            objectName: "problem"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: configuration.problem !== ""
            text: configuration.problem
            font.pixelSize: 24
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }

        StackView {
            id: pages
            objectName: "pages"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: configuration.problem === ""
            clip: true
            focus: true
            initialItem: listPage
            // Pages change at once: an e-ink screen shows no movement.
            pushEnter: null
            pushExit: null
            popEnter: null
            popExit: null

            function toList() {
                pages.pop(null)
                listPage.forceActiveFocus()
            }

            function enter(gesture, node, path, heading) {
                pages.push(actionPage, {gesture: gesture, node: node, path: path, heading: heading})
                pages.currentItem.forceActiveFocus()
            }

            // The menu of a gesture, opened at the branch of its current action.
            function openMenu(gesture) {
                let node = gesture.actionTree
                let path = ""
                let heading = Words.gestureWords(gesture)
                while (node) {
                    pages.enter(gesture, node, path, heading)
                    const next = pages.branchOf(node, gesture.currentAction)
                    if (next) {
                        path += next.pathSegment + "/"
                        heading += " \u203a " + (next.title || next.pathSegment)
                    }
                    node = next
                }
            }

            function branchOf(node, action) {
                for (let i = 0; action && i < node.childNodes.length; ++i) {
                    if (node.childNodes[i].isAnsestorOf(action))
                        return node.childNodes[i]
                }
                return null
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 6
            EinkButton {
                objectName: "save"
                Layout.fillWidth: true
                text: "Save"
                enabled: screen.edited
                onClicked: screen.save()
            }
            EinkButton {
                objectName: "cancel"
                Layout.fillWidth: true
                text: "Cancel"
                enabled: screen.edited
                onClicked: screen.cancel()
            }
            EinkButton {
                objectName: "reset"
                Layout.fillWidth: true
                text: "Reset"
                enabled: provider.service !== null && (screen.edited || configuration.hasChoices)
                onClicked: question.visible = true
            }
        }
    }

    GestureListPage {
        id: listPage
        visible: false // the stack shows it
        service: screen.copy
        defaults: configuration.defaults
        onOpened: gesture => pages.openMenu(gesture)
    }

    Component {
        id: actionPage
        ActionPage {
            id: onePage
            onLeft: {
                pages.pop()
                pages.currentItem.forceActiveFocus()
            }
            onEntered: (node, path, heading) => pages.enter(onePage.gesture, node, path, heading)
            onChosen: action => {
                screen.choose(onePage.gesture, action)
                pages.toList()
            }
        }
    }

    // Asks before everything that the user chose is forgotten.
    Rectangle {
        id: question
        objectName: "question"
        anchors.fill: parent
        visible: false
        color: "#f0ffffff"
        onVisibleChanged: {
            if (question.visible)
                keep.forceActiveFocus()
            else
                pages.forceActiveFocus()
        }

        MouseArea { // nothing below is touched meanwhile
            anchors.fill: parent
        }
        Rectangle {
            anchors.centerIn: parent
            width: parent.width - 80
            height: 240
            border { color: "black"; width: 4 }
            ColumnLayout {
                anchors { fill: parent; margins: 20 }
                Text {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    text: "Forget all choices and go back to the defaults?"
                    font.pixelSize: 24
                    wrapMode: Text.Wrap
                }
                RowLayout {
                    spacing: 10
                    EinkButton {
                        objectName: "resetYes"
                        Layout.fillWidth: true
                        text: "Forget them"
                        onClicked: {
                            question.visible = false
                            screen.reset()
                        }
                    }
                    EinkButton {
                        id: keep
                        objectName: "resetNo"
                        Layout.fillWidth: true
                        text: "Keep them"
                        onClicked: question.visible = false
                    }
                }
            }
        }
    }
}
