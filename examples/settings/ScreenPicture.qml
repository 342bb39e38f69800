import QtQuick 2.15
import "../common/words.js" as Words

// A small picture of the screen: the zone where a gesture starts, and its direction.
Rectangle {
    id: picture

    property rect zone: Qt.rect(0, 0, 1, 1)
    property int direction: 4

    implicitWidth: 42
    implicitHeight: 56
    color: "white"
    border { color: "black"; width: 2 }

    Item {
        id: inside
        anchors { fill: parent; margins: 2 }

        // The zone in pixels, wide enough to be visible.
        function pixels(zone) {
            const width = Math.max(4, Math.round(zone.width * inside.width))
            const height = Math.max(4, Math.round(zone.height * inside.height))
            const x = Math.min(Math.round(zone.x * inside.width), inside.width - width)
            const y = Math.min(Math.round(zone.y * inside.height), inside.height - height)
            return Qt.rect(x, y, width, height)
        }

        Rectangle {
            objectName: "zone"
            x: inside.pixels(picture.zone).x
            y: inside.pixels(picture.zone).y
            width: inside.pixels(picture.zone).width
            height: inside.pixels(picture.zone).height
            color: "#a0a0a0"
        }
    }
    Text {
        objectName: "arrow"
        anchors.centerIn: parent
        text: Words.arrow(picture.direction)
        font { pixelSize: 28; bold: true }
    }
}
