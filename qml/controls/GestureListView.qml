import QtQuick 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// The gestures of a GestureEditor, grouped by their sections, with the filters that the user needs to find one.
FocusScope {
    id: view

    // The `model` of a GestureEditor.
    property alias model: filter.sourceModel
    // The Gesture.Kind that is shown; -1 for all.
    property int kind: -1
    // Whether gestures that offer no action are shown.
    property alias withoutChoice: filter.withoutChoice
    // Whether only gestures with a choice of the user are shown.
    property alias changedOnly: filter.changedOnly
    // Words that must appear in a gesture or its action.
    property alias searchText: filter.searchText
    readonly property alias count: list.count

    // On a small screen, the filters are shown instead of the list.
    readonly property bool compact: view.height < 7 * Theme.target
    property bool filtersOpen: false

    // The user wants to change this gesture.
    signal opened(string gestureId)

    LayoutMirroring.enabled: Theme.mirrored
    LayoutMirroring.childrenInherit: true

    // The next time, the keyboard begins in the list.
    onActiveFocusChanged: {
        if (!view.activeFocus)
            list.focus = true
    }

    function open(row) {
        if (list.value(row, "isChangeable"))
            view.opened(list.value(row, "gestureId"))
    }

    // A sentence about the choice for a gesture; empty if the user has chosen nothing.
    function mark(isDefault, isEdited, isConflicting, defaultTitle) {
        if (isConflicting)
            return qsTr("Not saved; another program has saved another choice.")
        if (isEdited && isDefault)
            return qsTr("Not saved; the default again.")
        if (isEdited)
            return qsTr("Not saved; by default: %1").arg(defaultTitle)
        return isDefault ? "" : qsTr("Your choice; by default: %1").arg(defaultTitle)
    }

    GestureFilterModel {
        id: filter
        kinds: view.kind < 0 ? [] : [view.kind]
    }

    // All rows have one height: that of the row with most lines. Not a binding: the pages change again with the height.
    function measure() {
        if (!list)
            return // while it is created
        let highest = Math.round(Theme.millimeters(10)) // of the picture
        for (let row = 0; row < filter.count; ++row)
            highest = Math.max(highest, view.heightOf(row))
        list.rowHeight = highest + 2 * Theme.focusLine
    }

    // With room for a mark, whether it has one or not: a choice must not move the list.
    function heightOf(row) {
        const width = list.rowWidth - Math.round(Theme.millimeters(7.5)) - 3 * Theme.margin - Theme.labelSize * 0.6
        const mark = view.mark(list.value(row, "isDefault"), list.value(row, "isEdited"),
                               list.value(row, "isConflicting"), list.value(row, "defaultTitle"))
        return view.heightIn(title, labelMetrics, list.value(row, "gestureTitle"), width)
               + view.heightIn(action, boldMetrics, list.value(row, "actionTitle"), width)
               + view.heightIn(note, noteMetrics, mark, width - Theme.noteSize * 0.8 - Theme.spacing)
    }

    // Only what has several lines needs a label to lay it out.
    function heightIn(label, metrics, text, width) {
        if (metrics.advanceWidth(text) + 1 < width)
            return Math.ceil(metrics.height)
        label.width = width
        label.text = text
        return Math.ceil(label.implicitHeight)
    }

    FittedText {
        id: title
        visible: false
    }
    FittedText {
        id: action
        visible: false
        font.bold: true
    }
    EinkText {
        id: note
        visible: false
        font.pixelSize: Theme.noteSize
        maximumLineCount: 2
    }
    FontMetrics {
        id: labelMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize }
        onFontChanged: view.measure()
    }
    FontMetrics {
        id: boldMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize; bold: true }
        onFontChanged: view.measure()
    }
    FontMetrics {
        id: noteMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
        onFontChanged: view.measure()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.spacing

        EinkButton {
            id: filterButton
            objectName: "filters"
            Layout.fillWidth: true
            visible: view.compact
            text: view.kind < 0 ? qsTr("Filter") : qsTr("Filter: %1").arg(Gestures.kindTitle(view.kind))
            checked: view.filtersOpen
            Accessible.checkable: true
            Accessible.description: qsTr("Shows the filters instead of the list.")
            Keys.onDownPressed: {
                if (view.filtersOpen)
                    filters.button(0).forceActiveFocus(Qt.TabFocusReason)
                else
                    list.forceActiveFocus()
            }
            onClicked: view.filtersOpen = !view.filtersOpen
        }

        Flow {
            id: filters
            Layout.fillWidth: true
            visible: !view.compact || view.filtersOpen
            spacing: Theme.spacing
            Keys.onUpPressed: event => {
                event.accepted = view.compact
                if (view.compact)
                    filterButton.forceActiveFocus(Qt.TabFocusReason)
            }
            Keys.onDownPressed: event => {
                event.accepted = list.visible
                if (list.visible)
                    list.forceActiveFocus()
            }
            Keys.onLeftPressed: filters.move(Theme.mirrored ? 1 : -1)
            Keys.onRightPressed: filters.move(Theme.mirrored ? -1 : 1)

            function button(index) {
                return kinds.itemAt(index) || (index === kinds.count ? changed : fixed)
            }

            function move(by) {
                let index = 0
                while (!filters.button(index).activeFocus)
                    index += 1
                for (index += by; index >= 0 && index < kinds.count + 2; index += by) {
                    if (filters.button(index).enabled) {
                        filters.button(index).forceActiveFocus(Qt.TabFocusReason)
                        return
                    }
                }
            }

            Repeater {
                id: kinds
                model: [-1, Gesture.Tap, Gesture.Hold, Gesture.Swipe, Gesture.Drag]
                EinkButton {
                    id: kindButton
                    required property int modelData
                    readonly property GestureFilterModel found: GestureFilterModel {
                        sourceModel: view.model
                        kinds: [kindButton.modelData]
                        withoutChoice: true
                    }

                    objectName: "kind" + kindButton.modelData
                    text: kindButton.modelData < 0 ? qsTr("All", "gestures of all kinds")
                                                   : Gestures.kindTitle(kindButton.modelData)
                    checked: view.kind === kindButton.modelData
                    enabled: kindButton.modelData < 0 || kindButton.found.count > 0
                    Accessible.checkable: true
                    Accessible.description: qsTr("Shows gestures of this kind.")
                    onClicked: view.kind = kindButton.modelData
                }
            }
            EinkButton {
                id: changed
                objectName: "changedOnly"
                text: qsTr("Changed", "gestures")
                checked: view.changedOnly
                Accessible.checkable: true
                Accessible.description: qsTr("Shows only gestures with a choice of yours.")
                onClicked: view.changedOnly = !view.changedOnly
            }
            EinkButton {
                id: fixed
                objectName: "withoutChoice"
                text: qsTr("Without a choice")
                checked: view.withoutChoice
                Accessible.checkable: true
                Accessible.description: qsTr("Shows also gestures that cannot be changed.")
                onClicked: view.withoutChoice = !view.withoutChoice
            }
        }

        PagedList {
            id: list
            objectName: "gestureList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            model: filter
            headingRole: "sectionTitle"
            keyRole: "gestureId"
            searchRole: "gestureTitle"
            title: qsTr("%n gesture(s)", "", filter.count)
            visible: !view.compact || !view.filtersOpen
            Keys.onUpPressed: {
                const above = view.compact ? filterButton : filters.button(0)
                above.forceActiveFocus(Qt.TabFocusReason)
            }
            onActivated: row => view.open(row)
            onContentChanged: view.measure()

            delegate: GestureRow {
                id: entry
                required property string gestureId
                objectName: entry.sourceRow < 0 ? "" : "gesture-" + entry.gestureId
                mark: view.mark(entry.isDefault, entry.isEdited, entry.isConflicting, entry.defaultTitle)
                onPressed: list.activate(entry.sourceRow)
            }

            EinkText {
                objectName: "nothing"
                anchors.fill: parent
                visible: list.count === 0
                text: qsTr("There is no gesture to show.")
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
        }
    }
}
