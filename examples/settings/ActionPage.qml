import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// One level of the menu of a gesture's actions. A node without children is an action to choose; one with children
// opens the next page.
FocusScope {
    id: page

    property Gesture gesture
    property GestureActionNode node
    property string path // of the node, ending with "/" unless it is the root
    property string heading
    readonly property var rows: page.entries()
    readonly property int count: {
        const rows = page.rows
        return rows.length
    }

    signal chosen(var action)
    signal entered(var node, string path, string heading)
    signal left

    function entries() {
        const rows = []
        // An action whose path is the beginning of others is chosen on its own page. Another may have created the node.
        const path = page.path
        const own = path.slice(0, -1)
        const actions = page.gesture.availableActions
        for (let i = 0; path !== "" && i < actions.length; ++i) {
            if (actions[i].path === own) {
                rows.push({action: actions[i], title: page.titleOf(page.node), path: own, inner: false})
                break
            }
        }
        const children = page.node.childNodes
        for (let i = 0; i < children.length; ++i) {
            const child = children[i]
            rows.push({node: child, action: child.action, title: page.titleOf(child), path: path + child.pathSegment,
                       inner: child.childNodes.length > 0})
        }
        return rows
    }

    function titleOf(node) {
        return node.title || node.pathSegment
    }

    function isCurrent(row) {
        const action = page.gesture.currentAction
        return action !== null && (action.path === row.path || (row.inner && row.node.isAnsestorOf(action)))
    }

    function choose(row) {
        if (row.inner)
            page.entered(row.node, row.path + "/", page.heading + " \u203a " + row.title)
        else
            page.chosen(row.action)
    }

    Keys.onLeftPressed: page.left()
    Keys.onBackPressed: page.left()
    Component.onCompleted: {
        const rows = page.rows
        list.currentIndex = Math.max(0, rows.findIndex(page.isCurrent))
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 6

        RowLayout {
            Layout.fillWidth: true
            spacing: 10
            EinkButton {
                objectName: "back"
                text: "\u2039 Back"
                onClicked: page.left()
            }
            Text {
                objectName: "actionPageHeading"
                Layout.fillWidth: true
                text: page.heading
                font { pixelSize: 22; bold: true }
                elide: Text.ElideRight
            }
        }

        ListView {
            id: list
            objectName: "actionList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            focus: true
            activeFocusOnTab: true
            // A number, not the rows: a view keeps raw pointers to its model's entries, and creates delegates later.
            model: page.count
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            flickDeceleration: 100000
            Keys.onReturnPressed: page.choose(page.rows[list.currentIndex])
            Keys.onEnterPressed: page.choose(page.rows[list.currentIndex])
            Keys.onSpacePressed: page.choose(page.rows[list.currentIndex])

            delegate: AbstractButton {
                id: entry
                required property int index
                readonly property var row: page.rows[entry.index]

                function part(name) {
                    return entry.row[name]
                }

                objectName: "action-" + entry.part("path")
                width: list.width
                implicitHeight: 68
                focusPolicy: Qt.NoFocus // the list has it
                onClicked: page.choose(entry.row)
                background: Rectangle {
                    color: entry.down ? "#d0d0d0" : "white"
                    border.color: "black"
                    border.width: list.activeFocus && list.currentIndex === entry.index ? 4 : 0
                }
                contentItem: Item {
                    Text {
                        id: mark
                        x: 14
                        width: 30
                        anchors.verticalCenter: parent.verticalCenter
                        text: page.isCurrent(entry.row) ? "\u25cf" : ""
                        font.pixelSize: 22
                    }
                    Text {
                        anchors { left: mark.right; right: arrow.left; verticalCenter: parent.verticalCenter }
                        text: entry.part("title")
                        font.pixelSize: 22
                        elide: Text.ElideRight
                    }
                    Text {
                        id: arrow
                        anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
                        text: entry.part("inner") ? "\u203a" : ""
                        font.pixelSize: 34
                    }
                }
            }
        }
    }
}
