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

    // Which gestures there are and what each may be bound to. A merge pairs them by their position.
    function shapeOf(service) {
        const shape = []
        const model = service.gestures
        for (let i = 0; i < model.rowCount(); ++i) {
            const gesture = model.data(model.index(i, 0))
            const available = gesture.availableActions // a copy each time
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

    // The state of the files, whoever has changed them. Our own changes are known already.
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

    // What shows the old copy goes before it.
    function put(copy) {
        pages.toList()
        listPage.show(copy)
        screen.copy = copy
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
        screen.put(copy)
    }

    function availableAction(gesture, path) {
        const available = gesture.availableActions // a copy each time
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

    // The provider is writable for this moment only: a writable service would save once more at exit.
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
        provider.readonly = true // the change calls refresh(), which tells of an overtaking
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
        pages.currentItem.forceActiveFocus() // the button is off now
    }

    // In words, the gestures of which others say another choice.
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
        // A service of what is there now; the provider itself makes one when it hears of the change.
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
            // Pages change at once: an e-ink screen shows no movement.
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
        visible: false // the stack shows it
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

    // Asks before everything that the user chose is forgotten.
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
