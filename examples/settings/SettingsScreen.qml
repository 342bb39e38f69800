import QtQml 2.15
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Examples 1.0
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// Shows the gestures of an application and lets the user choose other actions. It edits a clone of the service and
// writes only on Save.
FocusScope {
    id: screen

    property string appId: "reader"

    // The unsaved choices: action paths by the id of the gesture.
    property var edits: ({})
    readonly property bool edited: Object.keys(screen.edits).length > 0
    property string message: ""

    // The clone that is edited. It has no parent, so the engine collects it once nothing refers to it.
    property var copy: null
    // The action paths by gesture when the clone was made, and those that the bindings file is known to have.
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

    // The gestures and the actions of each. A merge pairs them by position.
    function shapeOf(service) {
        const shape = []
        const model = service.gestures
        for (let i = 0; i < model.rowCount(); ++i) {
            const gesture = model.data(model.index(i, 0))
            const available = gesture.availableActions // a new copy at each read
            const paths = []
            for (let j = 0; j < available.length; ++j)
                paths.push(available[j].path)
            shape.push([gesture.id, gesture.section, String(gesture.zone), gesture.direction, paths])
        }
        return JSON.stringify(shape)
    }

    function same(a, b) {
        const keys = Object.keys(a)
        return keys.length === Object.keys(b).length && keys.every(key => a[key] === b[key])
    }

    // The state of the files after any change. Our own changes are already known.
    function refresh() {
        configuration.refresh()
        const service = provider.service
        if (!service || configuration.problem !== "") {
            screen.message = ""
            screen.put(null)
            return
        }
        const now = screen.choicesOf(service)
        let news = ""
        if (screen.copy !== null && screen.shapeOf(service) !== screen.shapeOf(screen.copy))
            news = "The gestures have changed."
        else if (screen.copy !== null && !screen.same(now, screen.known))
            news = "Another program has changed the choices."
        screen.known = now
        if (screen.copy === null || news !== "" || !screen.same(now, screen.copied))
            screen.takeCopy()
        if (news !== "")
            screen.message = news + (screen.edited ? " They are shown here with your unsaved choices on top."
                                                   : " This is how they are now.")
    }

    // Clear the views before the old clone is destroyed.
    function put(copy) {
        pages.toList()
        listPage.show(copy)
        screen.copy = copy
    }

    // A new clone of the service, with the edits applied.
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
        screen.put(copy)
    }

    function availableAction(gesture, path) {
        const available = gesture.availableActions // a new copy at each read
        for (let i = 0; i < available.length; ++i) {
            if (available[i].path === path)
                return available[i]
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
    }

    // Writable for the save only: a writable service also saves at exit.
    function save() {
        provider.readonly = false
        const service = provider.service
        const overtaken = !screen.same(screen.choicesOf(service), screen.known)
                || screen.shapeOf(service) !== screen.shapeOf(screen.copy)
                || !service.fastMergeWithQObject(screen.copy)
        let problem = ""
        if (!overtaken) {
            const reason = service.trySaveAsString()
            problem = reason === "" ? "" : configuration.saveProblem(reason)
        }
        const saved = screen.choicesOf(screen.copy)
        provider.readonly = true // this calls refresh(), which reports changes of other programs
        if (overtaken)
            return
        screen.message = problem
        if (problem === "") {
            screen.known = screen.choicesOf(provider.service)
            screen.copied = saved
            screen.edits = {}
            const overruled = screen.differences(screen.copy, screen.known)
            screen.message = overruled.length === 0
                    ? "Saved." : "Saved, but the configuration decides itself about: " + overruled.join(", ") + "."
        }
        pages.currentItem.forceActiveFocus() // the button is disabled now
    }

    // The gestures for which another program has saved another choice, in words.
    function differences(service, others) {
        const gestures = []
        const model = service.gestures
        for (let i = 0; i < model.rowCount(); ++i) {
            const gesture = model.data(model.index(i, 0))
            if (gesture.currentAction && gesture.currentAction.path !== others[gesture.id])
                gestures.push(Words.gestureWords(gesture))
        }
        return gestures
    }

    function cancel() {
        screen.edits = {}
        screen.message = ""
        screen.takeCopy()
    }

    function reset() {
        provider.service.prune()
        configuration.refresh()
        if (configuration.hasChoices) {
            screen.message = "The choices could not be deleted."
            return
        }
        // A service for the current files. The provider creates its own when it sees the change.
        provider.appId = ""
        provider.appId = Qt.binding(() => screen.appId)
        screen.edits = {}
        screen.put(null)
        screen.refresh()
        screen.message = "These are the defaults."
    }

    Rectangle {
        anchors.fill: parent
        color: "white"
    }

    ColumnLayout {
        anchors { fill: parent; margins: 10 }
        spacing: 6
        enabled: !question.visible

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
            // Pages change without animation, for e-ink.
            pushEnter: null
            pushExit: null
            popEnter: null
            popExit: null

            function toList() {
                pages.pop(null)
                if (!question.visible)
                    listPage.forceActiveFocus()
            }

            function enter(gesture, node, path, heading) {
                pages.push(actionPage, {gesture: gesture, node: node, path: path, heading: heading})
                pages.currentItem.forceActiveFocus()
            }

            function leave() {
                pages.pop()
                pages.currentItem.forceActiveFocus()
            }

            // The menu of a gesture, opened at the branch of its current action.
            function openMenu(gesture) {
                let node = gesture.actionTree
                let path = ""
                let heading = Words.gestureWords(gesture)
                while (node) {
                    pages.enter(gesture, node, path, heading)
                    const next = pages.branchOf(node, path, gesture.currentAction)
                    if (next) {
                        path += next.pathSegment + "/"
                        heading += " \u203a " + (next.title || next.pathSegment)
                    }
                    node = next
                }
            }

            function branchOf(node, path, action) {
                for (let i = 0; action && i < node.childNodes.length; ++i) {
                    const child = node.childNodes[i]
                    const own = child.childNodes.length > 0 && path + child.pathSegment === action.path
                    if (own || child.isAnsestorOf(action))
                        return child
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
                enabled: screen.edited && screen.copy !== null
                onClicked: screen.save()
            }
            EinkButton {
                objectName: "cancel"
                Layout.fillWidth: true
                text: "Cancel"
                enabled: screen.edited && screen.copy !== null
                onClicked: screen.cancel()
            }
            EinkButton {
                objectName: "reset"
                Layout.fillWidth: true
                text: "Reset"
                enabled: provider.service !== null
                         && (configuration.hasChoices || (screen.edited && screen.copy !== null))
                onClicked: question.visible = true
            }
        }
    }

    GestureListPage {
        id: listPage
        objectName: "gestureListPage"
        visible: false // until the stack shows it
        defaults: configuration.defaults
        onOpened: gesture => pages.openMenu(gesture)
    }

    Component {
        id: actionPage
        ActionPage {
            id: onePage
            onLeft: pages.leave()
            onEntered: (node, path, heading) => pages.enter(onePage.gesture, node, path, heading)
            onChosen: action => {
                screen.choose(onePage.gesture, action)
                pages.toList()
            }
        }
    }

    // Asks before it deletes all choices of the user.
    Rectangle {
        id: question
        objectName: "question"
        anchors.fill: parent
        visible: false
        color: "#f0ffffff"
        onVisibleChanged: {
            if (question.visible)
                keep.forceActiveFocus(Qt.TabFocusReason) // with its frame
            else
                pages.currentItem.forceActiveFocus()
        }
        Keys.onEscapePressed: question.visible = false
        Keys.onBackPressed: question.visible = false

        MouseArea { // blocks touches below
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
