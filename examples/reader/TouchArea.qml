import QtQuick 2.15
import Vellix.Examples 1.0
import Vellix.Gesture 1.0

// Classifies the touches of one finger or the mouse as taps, holds, swipes and drags.
Item {
    id: area

    // A movement below this part of the width counts as none.
    readonly property real leastMovement: 0.03
    // Milliseconds. A drag moves after one of these without movement; a hold has two without movement.
    readonly property int stillTime: 250

    property int fingers: 0
    property PointHandler finger: null // whose movement counts
    property real startX: 0
    property real startY: 0
    property real dx: 0
    property real dy: 0
    property bool moved: false
    property bool waited: false
    // A hold was reported, or there was a second finger: ignore the rest until all fingers are up.
    property bool over: true

    // The position is the start of the touch, relative to this area, 0 to 1.
    signal gestureMade(int kind, int direction, point position)

    function report(kind, direction) {
        area.gestureMade(kind, direction, Qt.point(area.startX / area.width, area.startY / area.height))
    }

    function isMovement() {
        return Math.sqrt(area.dx * area.dx + area.dy * area.dy) >= area.leastMovement * area.width
    }

    function press(position) {
        area.startX = position.x
        area.startY = position.y
        area.dx = 0
        area.dy = 0
        area.moved = false
        area.waited = false
        area.over = false
        stillness.restart()
    }

    function follow(position) {
        area.dx = position.x - area.startX
        area.dy = position.y - area.startY
        if (area.moved || !area.isMovement())
            return
        area.moved = true
        stillness.stop()
    }

    function end() {
        area.over = true
        stillness.stop()
    }

    function lift() {
        stillness.stop()
        if (area.over)
            return
        area.over = true
        if (!area.moved)
            area.report(Gesture.Tap, Gesture.NoDirection)
        else if (area.isMovement()) // a finger that moves back cancels the movement
            area.report(area.waited ? Gesture.Drag : Gesture.Swipe, touches.directionOf(area.dx, area.dy))
    }

    function change(handler) {
        area.fingers += handler.active ? 1 : -1
        if (area.fingers > 1) {
            area.end()
        } else if (handler.active) {
            area.finger = handler
            area.press(handler.point.position)
        } else if (handler === area.finger) {
            area.follow(handler.point.position)
            Qt.callLater(area.lift) // onCanceled comes after the end of the touch
        }
    }

    function move(handler) {
        if (handler.active && handler === area.finger)
            area.follow(handler.point.position)
    }

    onVisibleChanged: area.end()

    // Each handles a finger that the other does not, or the mouse.
    PointHandler {
        id: one
        onActiveChanged: area.change(one)
        onPointChanged: area.move(one)
        onCanceled: area.end()
    }
    PointHandler {
        id: other
        onActiveChanged: area.change(other)
        onPointChanged: area.move(other)
        onCanceled: area.end()
    }

    Touches {
        id: touches
    }

    Timer {
        id: stillness
        interval: area.stillTime
        repeat: true
        onTriggered: {
            if (area.waited) {
                area.end()
                area.report(Gesture.Hold, Gesture.NoDirection)
            }
            area.waited = true
        }
    }
}
