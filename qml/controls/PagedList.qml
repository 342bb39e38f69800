import QtQml 2.15
import QtQml.Models 2.15
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// A list that turns whole pages: nothing moves by the pixel. Its delegates are as wide as the list and as high as a
// row, and get the roles of the model as required properties, with `sourceRow`: the row in the model, or -1 for one that
// is not shown. The list draws the frame of the current row, and reacts to touches itself.
FocusScope {
    id: list

    // Any QAbstractItemModel.
    property alias model: pages.source
    property Component delegate
    // The role with the words above each section; empty for none.
    property alias headingRole: pages.headingRole
    // The role that identifies a row, so that the current one stays when the model is replaced.
    property alias keyRole: pages.keyRole
    // The role whose first letter a key finds; empty for none.
    property string searchRole
    property alias rowHeight: pages.rowHeight
    // The row of the model that has the keyboard, or -1.
    property alias currentRow: pages.currentRow
    property alias page: pages.page
    readonly property alias pageCount: pages.pageCount
    // The number of rows of the model.
    readonly property alias count: pages.rows
    // For screen readers.
    property string title: qsTr("List")
    // The width of a delegate.
    readonly property alias rowWidth: rows.width

    // The user has chosen a row of the model.
    signal activated(int row)
    // The model, its data or the width of rows has changed, so that rows may need another height.
    signal contentChanged

    // Low lists have the page buttons beside them.
    readonly property bool pagerBeside: list.height < 6 * Theme.target && list.width > list.height
                                        && list.width >= 8 * Theme.target

    Accessible.role: Accessible.List
    Accessible.name: list.title

    function value(row, role) {
        return pages.value(row, role)
    }

    function turn(by) {
        const to = Math.max(0, Math.min(pages.page + by, pages.pageCount - 1))
        if (to === pages.page)
            return false
        pages.page = to
        return true
    }

    function activate(row) {
        if (row < 0)
            return
        pages.currentRow = row
        rows.forceActiveFocus()
        list.activated(row)
    }

    function goTo(row) {
        if (row < 0 || row >= pages.rows)
            return false
        pages.currentRow = row
        return true
    }

    // Returns whether the key was meant for the list. At its ends, the arrows are not.
    function handleKey(event) {
        if (event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier))
            return false
        switch (event.key) {
        case Qt.Key_Up:
            return pages.step(-1)
        case Qt.Key_Down:
            return pages.step(1) || list.focusPager()
        case Qt.Key_PageUp:
            return list.turn(-1)
        case Qt.Key_PageDown:
            return list.turn(1)
        case Qt.Key_Home:
            return list.goTo(0)
        case Qt.Key_End:
            return list.goTo(pages.rows - 1)
        case Qt.Key_Return:
        case Qt.Key_Enter:
        case Qt.Key_Space:
            if (!event.isAutoRepeat)
                list.activate(pages.currentRow)
            return true
        }
        return list.search(event.text)
    }

    function search(text) {
        if (list.searchRole === "" || text.trim() === "" || text < " ")
            return false
        return list.goTo(pages.find(text, list.searchRole))
    }

    // Not left to a positioner, which would need another frame.
    function placeAt(item, index, headings, isHeading) {
        item.y = Qt.binding(() => headings * pages.headingHeight + (index - headings) * pages.rowHeight)
        item.width = Qt.binding(() => rows.width)
        item.height = Qt.binding(() => isHeading ? pages.headingHeight : pages.rowHeight)
    }

    // A delegate also exists for each heading, as the pages' model has one row for it.
    function place(index, item) {
        const row = entries.items.get(index).model.sourceRow
        const isHeading = row < 0
        let headings = 0
        for (let i = 0; i < index; ++i)
            headings += entries.items.get(i).model.isHeading ? 1 : 0
        list.placeAt(item, index, headings, isHeading)
        item.opacity = isHeading ? 0 : 1
        // While the list is destroyed, its model is gone before its rows.
        const isCurrent = () => !isHeading && pages !== null && row === pages.currentRow
        // The row itself has the keyboard, so that screen readers follow.
        item.focus = Qt.binding(isCurrent)
        item.activeFocusOnTab = Qt.binding(isCurrent)
    }

    // -1 for a heading, or below the last row.
    function rowAt(y) {
        let bottom = 0
        for (let i = 0; i < entries.items.count; ++i) {
            const row = entries.items.get(i).model.sourceRow
            bottom += row < 0 ? pages.headingHeight : pages.rowHeight
            if (y < bottom)
                return row
        }
        return -1
    }

    // Below the last row are the page buttons, if there are other pages.
    function focusPager() {
        const button = down.enabled ? down : up
        if (button.enabled)
            button.forceActiveFocus(Qt.TabFocusReason)
        return button.enabled
    }

    PageModel {
        id: pages
        height: rows.height
        rowHeight: Theme.target
        headingHeight: Math.ceil(headingMetrics.height) * list.headingLines + Theme.spacing
    }

    // A heading has two lines if the longest needs them, and if there is room for a row below.
    property int headingLines: 1

    // Not a binding: the pages change again with the heights.
    function measure() {
        if (!rows)
            return // while it is created
        list.contentChanged()
        const line = Math.ceil(headingMetrics.height)
        const isCut = list.widestHeading() + 1 > rows.width - 2 * Theme.margin
        list.headingLines = isCut && 2 * line + Theme.spacing + pages.rowHeight <= rows.height ? 2 : 1
    }

    function widestHeading() {
        let widest = 0
        let last = ""
        for (let row = 0; list.headingRole !== "" && row < pages.rows; ++row) {
            const heading = String(pages.value(row, list.headingRole))
            if (heading !== last)
                widest = Math.max(widest, headingMetrics.advanceWidth(heading))
            last = heading
        }
        return widest
    }

    // The next time, the keyboard begins in the rows.
    onActiveFocusChanged: {
        if (!list.activeFocus)
            rows.focus = true
    }
    onModelChanged: list.measure()
    onRowWidthChanged: list.measure()
    onHeadingRoleChanged: list.measure()
    Component.onCompleted: list.measure()

    Connections {
        target: list.model
        function onModelReset() { list.measure() }
        function onLayoutChanged() { list.measure() }
        function onRowsInserted() { list.measure() }
        function onRowsRemoved() { list.measure() }
        function onDataChanged() { list.measure() }
    }

    FontMetrics {
        id: headingMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize; bold: true }
        onFontChanged: list.measure()
    }

    DelegateModel {
        id: entries
        model: pages
        delegate: list.delegate
    }

    GridLayout {
        anchors.fill: parent
        columns: list.pagerBeside ? 2 : 1
        columnSpacing: Theme.spacing
        rowSpacing: Theme.spacing

        FocusScope {
            id: rows
            objectName: "rows"
            Layout.fillWidth: true
            Layout.fillHeight: true
            focus: true
            clip: true
            onHeightChanged: list.measure()
            Keys.onPressed: event => { event.accepted = list.handleKey(event) }

            Repeater {
                id: slots
                model: pages
                onItemAdded: (index, item) => {
                    let headings = 0
                    for (let i = 0; i < index; ++i)
                        headings += slots.itemAt(i).isHeading ? 1 : 0
                    list.placeAt(item, index, headings, item.isHeading)
                }
                delegate: Item {
                    id: slot
                    required property bool isHeading
                    required property string heading
                    required property int sourceRow

                    EinkText {
                        objectName: "heading"
                        anchors { fill: parent; leftMargin: Theme.margin; rightMargin: Theme.margin }
                        visible: slot.isHeading
                        text: slot.heading
                        font { pixelSize: Theme.noteSize; bold: true }
                        verticalAlignment: Text.AlignBottom
                        bottomPadding: Theme.line
    
                    }
                    Rectangle {
                        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                        height: slot.isHeading ? Theme.line : Theme.hairline
                        color: Theme.ink
                    }
                    Rectangle {
                        anchors.fill: parent
                        visible: rows.activeFocus && !slot.isHeading && slot.sourceRow === pages.currentRow
                        color: "transparent"
                        border { color: Theme.ink; width: Theme.focusLine }
                    }
                }
            }
            Repeater {
                model: entries
                onItemAdded: (index, item) => list.place(index, item)
            }
            MouseArea {
                id: touch
                anchors.fill: parent
                preventStealing: true
                Accessible.ignored: true
                Accessible.name: list.title

                property int row: -1
                property real startY: 0
                property bool turned: false
                property real turnedBy: 0

                onPressed: mouse => {
                    touch.startY = mouse.y
                    touch.turned = false
                    touch.row = list.rowAt(mouse.y)
                }
                onPositionChanged: mouse => {
                    const dy = mouse.y - touch.startY
                    if (touch.turned || Math.abs(dy) < Theme.millimeters(5))
                        return
                    touch.turned = true
                    list.turn(dy < 0 ? 1 : -1)
                }
                onClicked: mouse => {
                    if (!touch.turned && list.rowAt(mouse.y) === touch.row)
                        list.activate(touch.row)
                }
                onWheel: wheel => {
                    touch.turnedBy += wheel.angleDelta.y
                    if (Math.abs(touch.turnedBy) < 120)
                        return
                    list.turn(touch.turnedBy < 0 ? 1 : -1)
                    touch.turnedBy = 0
                }
            }
        }

        // It keeps its room, so that a list of another length does not move.
        GridLayout {
            id: pager
            readonly property bool upright: list.pagerBeside && list.height >= 3 * Theme.target + 2 * Theme.spacing

            Layout.fillWidth: !list.pagerBeside
            Layout.fillHeight: pager.upright
            columns: pager.upright ? 1 : 3
            columnSpacing: Theme.spacing
            rowSpacing: Theme.spacing
            enabled: pages.pageCount > 1
            opacity: pages.pageCount > 1 ? 1 : 0

            EinkButton {
                id: up
                objectName: "pageUp"
                Layout.fillWidth: true
                text: "\u25b2"
                enabled: pages.page > 0
                Accessible.name: qsTr("Page up")
                Keys.onUpPressed: rows.forceActiveFocus()
                Keys.onRightPressed: event => list.focusBeside(event, down, !Theme.mirrored)
                Keys.onLeftPressed: event => list.focusBeside(event, down, Theme.mirrored)
                onClicked: list.turnFrom(up, -1)
            }
            // Of one width, so that a turn does not lay out anything again.
            Item {
                implicitWidth: Math.ceil(numberMetrics.advanceWidth("888 / 888"))
                Layout.fillHeight: pager.upright

                EinkText {
                    objectName: "pageNumber"
                    anchors.fill: parent
                    text: qsTr("%1 / %2", "the page, the number of pages").arg(pages.page + 1).arg(pages.pageCount)
                    font.pixelSize: Theme.noteSize
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    wrapMode: Text.NoWrap
                    elide: Text.ElideNone
                    Accessible.name: qsTr("Page %1 of %2").arg(pages.page + 1).arg(pages.pageCount)
                }
            }
            EinkButton {
                id: down
                objectName: "pageDown"
                Layout.fillWidth: true
                text: "\u25bc"
                enabled: pages.page < pages.pageCount - 1
                Accessible.name: qsTr("Page down")
                Keys.onUpPressed: rows.forceActiveFocus()
                Keys.onRightPressed: event => list.focusBeside(event, up, Theme.mirrored)
                Keys.onLeftPressed: event => list.focusBeside(event, up, !Theme.mirrored)
                onClicked: list.turnFrom(down, 1)
            }
        }
    }

    FontMetrics {
        id: numberMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
    }

    function focusBeside(event, button, isBeside) {
        event.accepted = isBeside && button.enabled
        if (event.accepted)
            button.forceActiveFocus(Qt.TabFocusReason)
    }

    // The keyboard must not stay on a button that has become useless.
    function turnFrom(button, by) {
        const focused = button.activeFocus
        list.turn(by)
        if (focused && !button.enabled)
            rows.forceActiveFocus()
    }
}
