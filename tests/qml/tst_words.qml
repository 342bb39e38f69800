import QtQuick 2.15
import QtTest 1.15
import "../../examples/common/words.js" as Words

TestCase {
    name: "Words"

    function test_gesture_data() {
        const rect = Qt.rect
        return [
            {tag: "Tap on the right", kind: 0, direction: 4, zone: rect(0.75, 0.2, 0.25, 0.6)},
            {tag: "Tap anywhere", kind: 0, direction: 4, zone: rect(0, 0, 1, 1)},
            {tag: "Hold in the bottom left corner", kind: 1, direction: 4, zone: rect(0, 0.8, 0.25, 0.2)},
            {tag: "Hold at the top", kind: 1, direction: 0, zone: rect(0.25, 0, 0.5, 0.2)},
            {tag: "Swipe to the left", kind: 2, direction: 0, zone: rect(0, 0, 1, 1)},
            {tag: "Swipe upwards on the left", kind: 2, direction: 2, zone: rect(0, 0.1, 0.08, 0.8)},
            {tag: "Drag to the right at the bottom", kind: 3, direction: 1, zone: rect(0, 0.92, 1, 0.08)},
            {tag: "Drag downwards across the middle", kind: 3, direction: 3, zone: rect(0, 0.4, 1, 0.2)},
            {tag: "Gesture in the middle", kind: 4, direction: 4, zone: rect(0.25, 0.2, 0.5, 0.6)},
        ]
    }
    function test_gesture(row) {
        compare(Words.gestureWords(row), row.tag)
    }

    function test_section_data() {
        return [
            {tag: "Everywhere: tap", modes: [], kind: 0},
            {tag: "Reading: hold", modes: ["reading"], kind: 1},
            {tag: "Menu and selecting: swipe", modes: ["menu", "selecting"], kind: 2},
            {tag: "A, b and c: drag", modes: ["a", "b", "c"], kind: 3},
        ]
    }
    function test_section(row) {
        compare(Words.sectionWords(row), row.tag)
    }
}
