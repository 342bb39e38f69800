import QtQuick 2.15
import QtTest 1.15
import Vellix.Gesture.Controls 1.0

Item {
    id: root
    width: 100
    height: 100

    Component {
        id: pictures
        ZonePicture {
            width: 44
            height: 54
            border.width: 2
        }
    }

    TestCase {
        name: "ZonePicture"
        when: windowShown

        // Pixels of a screen of 40 x 50 within its frame.
        function test_zone_data() {
            const rect = Qt.rect
            return [
                {tag: "right", zone: rect(0.75, 0.2, 0.25, 0.6), drawn: rect(32, 12, 10, 30)},
                {tag: "left", zone: rect(0, 0.2, 0.25, 0.6), drawn: rect(2, 12, 10, 30)},
                {tag: "whole", zone: rect(0, 0, 1, 1), drawn: rect(2, 2, 40, 50)},
                {tag: "thin, at the bottom", zone: rect(0, 0.99, 1, 0.01), drawn: rect(2, 48, 40, 4)},
                {tag: "thin, on the right", zone: rect(0.99, 0, 0.01, 1), drawn: rect(38, 2, 4, 50)},
                {tag: "beyond the screen", zone: rect(0.9, 0.9, 0.5, 0.5), drawn: rect(22, 27, 20, 25)},
            ]
        }
        function test_zone(row) {
            const picture = createTemporaryObject(pictures, root, {zone: row.zone})
            const zone = findChild(picture, "zone")
            compare(zone.mapToItem(picture, 0, 0, zone.width, zone.height), row.drawn)
        }

        function test_arrow() {
            const arrows = [0, 1, 2, 3, 4].map(direction => findChild(
                    createTemporaryObject(pictures, root, {direction: direction}), "arrow").text)
            compare(arrows, ["\u2190", "\u2192", "\u2191", "\u2193", ""])
        }
    }
}
