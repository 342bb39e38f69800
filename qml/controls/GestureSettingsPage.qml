import QtQuick 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// A complete page on which the user changes the gestures of an application. Nothing is written before Save.
FocusScope {
    id: page

    property alias appId: session.appId
    readonly property alias editor: session
    readonly property alias edited: session.edited
    // The gesture whose actions are shown; empty while the list is.
    property string openId

    // The user has decided what becomes of the unsaved choices. The page may be closed.
    signal left

    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true

    // Whether the page may be closed now. Otherwise it asks what becomes of the unsaved choices, and emits left() when
    // that is decided.
    function leave() {
        if (!session.edited)
            return true
        question.purpose = question.leaving
        question.ask(qsTr("There are choices that are not saved. Save them before you leave?"),
                     [qsTr("Save the changes"), qsTr("Discard them"), qsTr("Stay here")])
        return false
    }

    function openGesture(id) {
        page.openId = id
        picker.forceActiveFocus()
    }

    function closeGesture() {
        page.openId = ""
        if (!question.visible)
            list.forceActiveFocus()
    }

    // A button that is disabled by its own work must not keep the keyboard.
    function focusView() {
        if (picker.visible)
            picker.forceActiveFocus()
        else
            list.forceActiveFocus()
    }

    function save() {
        const saved = session.save()
        page.focusView()
        return saved
    }

    GestureEditor {
        id: session
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.paper
    }

    GridLayout {
        id: content
        // In low windows, the buttons are beside the list.
        readonly property bool low: page.height < 12 * Theme.target && page.width > page.height

        anchors { fill: parent; margins: Theme.margin }
        columns: content.low ? 2 : 1
        rowSpacing: Theme.spacing
        columnSpacing: Theme.margin
        enabled: !question.visible

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Theme.spacing

            EinkText {
                objectName: "title"
                Layout.fillWidth: true
                visible: page.openId === "" && !content.low && page.height >= 10 * Theme.target
                text: qsTr("Gestures of \u201c%1\u201d").arg(page.appId)
                font.bold: true
                maximumLineCount: 2
                Accessible.role: Accessible.Heading
            }

            FocusScope {
                id: views
                Layout.fillWidth: true
                Layout.fillHeight: true
                focus: true

                EinkText {
                    objectName: "problem"
                    anchors { fill: parent; margins: Theme.margin }
                    visible: session.problem !== "" && session.model.count === 0
                    text: visible ? session.problem : ""
                    font.pixelSize: Theme.labelSize
                    fontSizeMode: Text.VerticalFit
                    minimumPixelSize: Math.round(Theme.noteSize * 0.6)
                    verticalAlignment: Text.AlignVCenter
                    Accessible.role: Accessible.AlertMessage
                    onTextChanged: {
                        if (text !== "")
                            Gestures.announce(this)
                    }
                }
                GestureListView {
                    id: list
                    objectName: "gestureListView"
                    anchors.fill: parent
                    visible: session.model.count > 0 || session.problem === ""
                    opacity: picker.visible ? 0 : 1
                    enabled: !picker.visible
                    focus: true
                    model: session.model
                    KeyNavigation.down: footer.first
                    onOpened: gestureId => page.openGesture(gestureId)
                }
                ActionPicker {
                    id: picker
                    objectName: "picker"
                    anchors.fill: parent
                    visible: page.openId !== ""
                    editor: session
                    gestureId: page.openId
                    KeyNavigation.down: footer.first
                    onLeft: page.closeGesture()
                    onChosen: path => {
                        if (session.choose(page.openId, path))
                            page.closeGesture()
                    }
                    onResetRequested: {
                        session.resetGesture(page.openId)
                        page.closeGesture()
                    }
                }
            }

            MessageLine {
                id: message
                objectName: "messageLine"
                Layout.fillWidth: true
                text: [session.saveProblem, session.model.count > 0 ? session.problem : "", session.news,
                       session.notice].filter(sentence => sentence !== "").join(" ")
                onOpened: {
                    question.purpose = question.reading
                    question.ask(message.text, [qsTr("Close")])
                }
            }
        }

        GridLayout {
            id: footer
            readonly property Item first: !footer.visible ? null : save.enabled ? save
                                                                 : defaults.enabled ? defaults : null

            visible: content.low || page.openId === "" || page.height >= 10 * Theme.target
            Layout.fillWidth: !content.low
            Layout.alignment: content.low ? Qt.AlignTop : Qt.AlignBottom
            columns: content.low ? 1 : 3
            rowSpacing: Theme.spacing
            columnSpacing: Theme.spacing

            EinkButton {
                id: save
                objectName: "save"
                Layout.fillWidth: true
                text: qsTr("Save")
                enabled: session.edited && session.model.count > 0
                KeyNavigation.up: content.low ? null : views
                KeyNavigation.left: content.low ? views : null
                KeyNavigation.right: content.low ? null : undo
                KeyNavigation.down: content.low ? undo : null
                onClicked: page.save()
            }
            EinkButton {
                id: undo
                objectName: "revert"
                Layout.fillWidth: true
                text: qsTr("Undo")
                enabled: save.enabled
                Accessible.description: qsTr("Drops everything that is not saved.")
                KeyNavigation.up: content.low ? save : views
                KeyNavigation.left: content.low ? views : save
                KeyNavigation.right: content.low ? null : defaults
                KeyNavigation.down: content.low ? defaults : null
                onClicked: {
                    session.revert()
                    page.focusView()
                }
            }
            EinkButton {
                id: defaults
                objectName: "defaults"
                Layout.fillWidth: true
                text: qsTr("Defaults")
                enabled: session.hasChoices
                Accessible.description: qsTr("Forgets all your choices.")
                KeyNavigation.up: content.low ? undo : views
                KeyNavigation.left: content.low ? views : undo
                onClicked: {
                    question.purpose = question.restoring
                    question.ask(qsTr("Forget all your choices and use the defaults? Save makes it final."),
                                 [qsTr("Forget them"), qsTr("Keep them")])
                }
            }
        }
    }

    QuestionPanel {
        id: question
        objectName: "question"

        readonly property int leaving: 0
        readonly property int restoring: 1
        readonly property int reading: 2
        property int purpose: question.reading

        anchors.fill: parent
        onAnswered: answer => {
            page.focusView()
            if (question.purpose === question.restoring && answer === 0)
                session.restoreDefaults()
            else if (question.purpose === question.leaving)
                question.endLeave(answer)
        }

        function endLeave(answer) {
            if (answer === 1)
                session.revert()
            if (answer === 1 || (answer === 0 && page.save()))
                page.left()
        }
    }
}
