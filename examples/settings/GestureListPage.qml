import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// The gestures of a service, grouped by their sections, filtered by kind.
FocusScope {
    id: page

    // The service whose gestures are shown; set by show().
    property GestureService service: null
    // The defaults of ConfigurationState: "path" and "title" by the id of the gesture.
    property var defaults: ({})
    readonly property alias count: list.count

    signal opened(var gesture)

    // The rows of the list: {heading} or {gesture}.
    property var rows: []

    GestureKindFilterModel {
        id: filter
    }

    function offers(kind) {
        return page.service !== null && page.service.containsGestureKind(kind)
    }

    // Releases all objects of the old service. Keeps the place in the list if the gestures are the same.
    function show(service) {
        page.service = service
        // The filter reads its lists only when it gets another source model.
        filter.sourceModel = null
        filter.whiteList = kinds.kind < 0 ? [] : [kinds.kind]
        filter.noActionVisible = withoutChoice.checked
        filter.sourceModel = page.service ? page.service.gestures : null
        const rows = page.grouped()
        const key = row => row.gesture ? row.gesture.id : row.heading
        const before = page.rows
        if (rows.length === before.length && rows.every((row, i) => key(row) === key(before[i]))) {
            page.rows = rows
            return
        }
        list.model = 0
        page.rows = rows
        list.model = rows.length
        page.step(1) // from a heading to its first gesture
        list.positionViewAtBeginning()
    }

    // The arrow keys skip headings.
    function step(by) {
        let to = list.currentIndex + by
        while (page.rows[to] && !page.rows[to].gesture)
            to += by
        if (page.rows[to])
            list.currentIndex = to
        else if (by < 0)
            list.positionViewAtBeginning() // the first heading
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
            bySection[gesture.section].push({gesture: gesture})
        }
        return order.reduce((rows, section) => rows.concat(bySection[section]), [])
    }

    // The title of the default action, or nothing if the gesture has it.
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
        const top = list.originY
        list.contentY = Math.max(top, Math.min(y, top + list.contentHeight - list.height))
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
                        page.show(page.service)
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
                onToggled: page.show(page.service)
            }
            EinkButton {
                objectName: "pageUp"
                text: "\u25b2"
                enabled: !list.atYBeginning
                onClicked: page.scrollBy(-1)
            }
            EinkButton {
                objectName: "pageDown"
                text: "\u25bc"
                enabled: !list.atYEnd
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
            // A number, not the rows: a view keeps raw pointers to its model's entries, and creates delegates later.
            model: 0
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            flickDeceleration: 100000 // a moving list is blurred on e-ink
            Keys.onUpPressed: page.step(-1)
            Keys.onDownPressed: page.step(1)
            Keys.onReturnPressed: page.open(page.rows[list.currentIndex])
            Keys.onEnterPressed: page.open(page.rows[list.currentIndex])
            Keys.onSpacePressed: page.open(page.rows[list.currentIndex])

            delegate: Loader {
                id: entry
                required property int index
                readonly property var row: page.rows[entry.index]

                function part(name) {
                    return entry.row[name]
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
                        defaultTitle: page.defaultTitle(entry.part("gesture"))
                        selected: list.activeFocus && list.currentIndex === entry.index
                        onClicked: {
                            list.currentIndex = entry.index
                            page.open(entry.row)
                        }
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
