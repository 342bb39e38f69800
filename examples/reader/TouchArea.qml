import QtQuick 2.15
import Vellix.Examples 1.0
import Vellix.Gesture 1.0

// Makes taps, holds, swipes and drags of what one finger or the mouse does.
Item {
    id: area

    // Below this part of the width a finger counts as still.
    readonly property real leastMovement: 0.03
    // Still for one of these and then moved is a drag; still for two is a hold.
    readonly property int stillTime: 250

    property int fingers: 0
    property PointHandler finger: null // whose movement counts
    property real startX: 0
    property real startY: 0
    property real dx: 0
    property real dy: 0
    property bool moved: false
    property bool waited: false
    // The hold was reported, or there was a second finger: nothing more until all fingers are gone.
    property bool over: true

    // The position is where the touch started, relative to this area, 0 to 1.
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
        else if (area.isMovement()) // who brings the finger back has changed his mind
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
            Qt.callLater(area.lift) // a cancelled touch says so only after it has ended
        }
    }

    function move(handler) {
        if (handler.active && handler === area.finger)
            area.follow(handler.point.position)
    }

    onVisibleChanged: area.end()

    // Each takes a finger that the other has not, or the mouse.
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
