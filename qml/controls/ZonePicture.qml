import QtQuick 2.15

// A small picture of the screen: the zone where a gesture starts, and its direction. It is never mirrored.
Rectangle {
    id: picture

    // Relative to the screen, 0 to 1.
    property rect zone: Qt.rect(0, 0, 1, 1)
    // A Gesture.Direction.
    property int direction: 4

    implicitWidth: Math.round(Theme.millimeters(7.5))
    implicitHeight: Math.round(Theme.millimeters(10))
    color: Theme.paper
    border { color: Theme.ink; width: Theme.line }
    Accessible.ignored: true

    Item {
        id: inside
        anchors { fill: parent; margins: picture.border.width }

        // The zone in pixels, wide enough to be visible.
        function pixels(zone) {
            const least = 2 * picture.border.width
            const width = Math.max(least, Math.round(zone.width * inside.width))
            const height = Math.max(least, Math.round(zone.height * inside.height))
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
        text: ["\u2190", "\u2192", "\u2191", "\u2193"][picture.direction] || ""
        textFormat: Text.PlainText
        color: Theme.ink
        font { family: Theme.fontFamily; pixelSize: Math.round(picture.height * 0.5); bold: true }
        Accessible.ignored: true
    }
}
