import QtQml.Models 2.15
import QtQuick 2.15

// The actions, for users who know no gesture. The mode switch stays above it.
Rectangle {
    id: menu

    signal chosen(string path)
    signal zonesWanted()

    height: grid.height + 2 * grid.spacing
    color: "white"
    border.color: "black"
    border.width: 2

    ListModel {
        id: entries
        ListElement { label: "Chapters"; path: "chapter/list" }
        ListElement { label: "Bookmark"; path: "view/bookmark" }
        ListElement { label: "Smaller text"; path: "text/smaller" }
        ListElement { label: "Larger text"; path: "text/larger" }
        ListElement { label: "Light darker"; path: "light/darker" }
        ListElement { label: "Light brighter"; path: "light/brighter" }
        ListElement { label: "Light colder"; path: "light/colder" }
        ListElement { label: "Light warmer"; path: "light/warmer" }
        ListElement { label: "Light on or off"; path: "light/toggle" }
        ListElement { label: "Search"; path: "view/search" }
    }

    Grid {
        id: grid
        readonly property real cellWidth: (menu.width - 3 * grid.spacing) / 2
        x: grid.spacing
        y: grid.spacing
        columns: 2
        spacing: 10

        Repeater {
            model: entries
            delegate: LargeButton {
                id: entry
                required property string label
                required property string path
                objectName: "menuButton-" + entry.path
                width: grid.cellWidth
                height: 64
                text: entry.label
                onClicked: menu.chosen(entry.path)
            }
        }

        LargeButton {
            objectName: "menuButton-zones"
            width: grid.cellWidth
            height: 64
            text: "Zones of gestures"
            onClicked: menu.zonesWanted()
        }

        LargeButton {
            objectName: "menuButton-view/close"
            width: grid.cellWidth
            height: 64
            text: "Close"
            onClicked: menu.chosen("view/close")
        }
    }
}
