import QtQuick 2.15

// The actions, for users who know no gesture. The mode switch stays above it. Picks the path of an action, or "zones".
ButtonPanel {
    id: menu

    title: qsTr("Menu")
    columns: menu.width > menu.room * 1.2 ? 3 : 2
    keys: ["chapter/list", "view/bookmark", "text/smaller", "text/larger", "light/darker", "light/brighter",
           "light/colder", "light/warmer", "light/toggle", "view/search", "zones", "view/close"]
    texts: [
        qsTr("Chapters"), qsTr("Bookmark"), qsTr("Smaller text"), qsTr("Larger text"), qsTr("Light darker"),
        qsTr("Light brighter"), qsTr("Light colder"), qsTr("Light warmer"), qsTr("Light on or off"), qsTr("Search"),
        qsTr("Zones"), qsTr("Close"),
    ]
}
