import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// The gestures of a service, grouped by their sections, filtered by kind.
Item {
    id: page

    // The service whose gestures are shown. Call reload() after another one was set or its gestures have changed.
    property GestureService service: null
    // What ConfigurationState tells of the defaults: a map of "path" and "title" by the id of the gesture.
    property var defaults: ({})
    readonly property alias count: list.count

    signal opened(var gesture)

    // A list of what is shown, headings among it: {heading} or {gesture, defaultTitle}.
    property var rows: []

    GestureKindFilterModel {
        id: filter
    }

    function offers(kind) {
        return page.service !== null && page.service.containsGestureKind(kind)
    }

    // The filter looks at its lists only when it gets a source model; the same one again is none.
    function reload() {
        const y = list.contentY
        filter.sourceModel = null
        filter.whiteList = kinds.kind < 0 ? [] : [kinds.kind]
        filter.noActionVisible = withoutChoice.checked
        filter.sourceModel = page.service ? page.service.gestures : null
        page.rows = page.grouped()
        list.contentY = Math.max(0, Math.min(y, list.contentHeight - list.height))
    }

    function grouped() {
        const order = []
        const bySection = {}
        for (let i = 0; i < filter.rowCount(); ++i) {
            const gesture = filter.data(filter.index(i, 0))
            if (!bySection[gesture.section]) {
                bySection[gesture.section] = [{heading: Words.sectionWords(gesture)}]
                order.push(gesture.section)
            }
            bySection[gesture.section].push({gesture: gesture, defaultTitle: page.defaultTitle(gesture)})
        }
        return order.reduce((rows, section) => rows.concat(bySection[section]), [])
    }

    // The title of the default action, or nothing while the gesture has it.
    function defaultTitle(gesture) {
        const usual = page.defaults[gesture.id]
        const now = gesture.currentAction ? gesture.currentAction.path : ""
        if (now === (usual ? usual.path : ""))
            return ""
        return usual ? usual.title || usual.path : "nothing"
    }

    function open(row) {
        if (row && row.gesture && row.gesture.actionTree)
            page.opened(row.gesture)
    }

    function scrollBy(pages) {
        const y = list.contentY + pages * (list.height - 90)
        list.contentY = Math.max(0, Math.min(y, list.contentHeight - list.height))
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 6

        RowLayout {
            id: kinds
            property int kind: -1
            Layout.fillWidth: true
            spacing: 4

            Repeater {
                model: [["All", -1], ["Tap", Gesture.Tap], ["Hold", Gesture.Hold], ["Swipe", Gesture.Swipe],
                        ["Drag", Gesture.Drag]]
                EinkButton {
                    required property var modelData
                    objectName: "kind-" + modelData[0]
                    Layout.fillWidth: true
                    text: modelData[0]
                    checked: kinds.kind === modelData[1]
                    enabled: modelData[1] < 0 || page.offers(modelData[1])
                    onClicked: {
                        kinds.kind = modelData[1]
                        page.reload()
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 4
            EinkButton {
                id: withoutChoice
                objectName: "withoutChoice"
                Layout.fillWidth: true
                checkable: true
                text: withoutChoice.checked ? "Hide those without a choice" : "Show those without a choice"
                onToggled: page.reload()
            }
            EinkButton {
                objectName: "pageUp"
                text: "\u25b2"
                enabled: list.contentY > 0
                onClicked: page.scrollBy(-1)
            }
            EinkButton {
                objectName: "pageDown"
                text: "\u25bc"
                enabled: list.contentY < list.contentHeight - list.height
                onClicked: page.scrollBy(1)
            }
        }

        ListView {
            id: list
            objectName: "gestureList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            focus: true
            activeFocusOnTab: true
            model: page.rows
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            flickDeceleration: 100000 // a moving list is a blurred one
            Keys.onReturnPressed: page.open(page.rows[list.currentIndex])
            Keys.onEnterPressed: page.open(page.rows[list.currentIndex])
            Keys.onSpacePressed: page.open(page.rows[list.currentIndex])

            delegate: Loader {
                id: entry
                required property var modelData
                required property int index

                function part(name) {
                    return entry.modelData[name]
                }

                width: list.width
                sourceComponent: entry.part("gesture") ? gestureRow : heading

                Component {
                    id: heading
                    Text {
                        objectName: "heading"
                        text: entry.part("heading")
                        font { pixelSize: 20; bold: true }
                        topPadding: 14
                        bottomPadding: 4
                        leftPadding: 10
                    }
                }
                Component {
                    id: gestureRow
                    GestureRow {
                        objectName: "gesture-" + entry.part("gesture").id
                        gesture: entry.part("gesture")
                        defaultTitle: entry.part("defaultTitle")
                        selected: list.activeFocus && list.currentIndex === entry.index
                        onClicked: page.open(entry.modelData)
                    }
                }
            }
        }

        Text {
            Layout.fillWidth: true
            visible: list.count === 0
            text: "No gesture to show."
            font.pixelSize: 20
            horizontalAlignment: Text.AlignHCenter
        }
    }
}
