import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Vellix.Gesture 1.0

// One level of the menu of a gesture's actions. A node without children is an action to choose; one with children
// opens the next page.
Item {
    id: page

    property Gesture gesture
    property GestureActionNode node
    property string path // of the node, ending with "/" unless it is the root
    property string heading
    readonly property var rows: page.entries()

    signal chosen(var action)
    signal entered(var node, string path, string heading)
    signal left

    function entries() {
        const rows = []
        // An action whose path others continue is chosen on its own page.
        const path = page.path
        const own = path.slice(0, -1)
        const action = page.node.action
        if (path !== "" && action && action.path === own)
            rows.push({node: page.node, title: page.titleOf(page.node), path: own, inner: false})
        const children = page.node.childNodes
        for (let i = 0; i < children.length; ++i) {
            const child = children[i]
            rows.push({node: child, title: page.titleOf(child), path: path + child.pathSegment,
                       inner: child.childNodes.length > 0})
        }
        return rows
    }

    function titleOf(node) {
        return node.title || node.pathSegment
    }

    function isCurrent(row) {
        const action = page.gesture.currentAction
        return action !== null && (row.inner ? row.node.isAnsestorOf(action) : action.path === row.path)
    }

    function choose(row) {
        if (row.inner)
            page.entered(row.node, row.path + "/", page.heading + " \u203a " + row.title)
        else
            page.chosen(row.node.action)
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
            model: page.rows
            boundsBehavior: Flickable.StopAtBounds
            highlightMoveDuration: 0
            flickDeceleration: 100000
            Keys.onReturnPressed: page.choose(page.rows[list.currentIndex])
            Keys.onEnterPressed: page.choose(page.rows[list.currentIndex])
            Keys.onSpacePressed: page.choose(page.rows[list.currentIndex])
            Keys.onLeftPressed: page.left()

            delegate: AbstractButton {
                id: entry
                required property var modelData
                required property int index

                function part(name) {
                    return entry.modelData[name]
                }

                objectName: "action-" + entry.part("path")
                width: list.width
                implicitHeight: 68
                onClicked: page.choose(entry.modelData)
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
                        text: page.isCurrent(entry.modelData) ? "\u25cf" : ""
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
