import QtQuick 2.15
import "../common/words.js" as Words

// A small picture of the screen: where a gesture starts, and which way it goes.
Rectangle {
    id: picture

    property rect zone: Qt.rect(0, 0, 1, 1)
    property int direction: 4

    // A part of the zone in pixels.
    function pixels(rect, part, length) {
        return rect[part] * length
    }

    implicitWidth: 42
    implicitHeight: 56
    color: "white"

    Rectangle {
        x: picture.pixels(picture.zone, "x", picture.width)
        y: picture.pixels(picture.zone, "y", picture.height)
        width: Math.max(3, picture.pixels(picture.zone, "width", picture.width))
        height: Math.max(3, picture.pixels(picture.zone, "height", picture.height))
        color: "#909090"
        border.color: "black"
        border.width: 1
    }
    Text {
        anchors.centerIn: parent
        text: Words.arrow(picture.direction)
        font.pixelSize: 28
        font.bold: true
    }
    Rectangle { // the screen's edge, over the zone's
        anchors.fill: parent
        color: "transparent"
        border { color: "black"; width: 2 }
    }
}
