import QtQml 2.15
import QtQuick 2.15
import Vellix.Gesture 1.0

// Turns the touches of one finger, pen or mouse into taps, holds, swipes and drags, and draws nothing. A second finger
// cancels the touch.
Item {
    id: area

    // The shortest movement, in millimetres. A touch that stays within it is a tap or a hold. A finger that moves
    // farther, and comes back before it is lifted, makes no gesture.
    property real leastMovement: 4
    // Milliseconds of rest at the start of a touch, after which a movement is a drag. Pauses later in a movement do not
    // matter.
    property int dragTime: 400
    // Milliseconds of rest at the start of a touch, after which it is a hold. A hold is reported while the finger is
    // down.
    property int holdTime: 800
    // The pixels of a millimetre of the screen.
    property real pixelsPerMillimeter: Theme.pixelsPerMillimeter
    // Whether a movement of the present touch will be a drag.
    readonly property alias rested: touch.rested

    // `kind` is a Gesture.Kind, and `direction` a Gesture.Direction: NoDirection for a tap, a hold and a diagonal
    // movement. `position` is the start of the touch, relative to this area, 0 to 1. A movement may end outside.
    signal gestureMade(int kind, int direction, point position)

    onVisibleChanged: touch.cancel()
    onEnabledChanged: touch.cancel()

    QtObject {
        id: touch

        property PointHandler finger: null
        property real startX: 0
        property real startY: 0
        property point relativeStart
        property real dx: 0
        property real dy: 0
        property bool moved: false
        property bool rested: false
        property bool lifted: false
        // Reported or cancelled: the rest of the touch is ignored.
        property bool over: true

        function isMovement() {
            return Math.sqrt(touch.dx * touch.dx + touch.dy * touch.dy)
                    >= area.leastMovement * area.pixelsPerMillimeter
        }

        function press(position) {
            touch.lift() // that of the touch before may still wait
            touch.stopRests()
            touch.startX = position.x
            touch.startY = position.y
            touch.relativeStart = Qt.point(position.x / area.width, position.y / area.height)
            touch.dx = 0
            touch.dy = 0
            touch.moved = false
            touch.rested = false
            touch.over = false
            touch.startRests()
        }

        function follow(position) {
            touch.dx = position.x - touch.startX
            touch.dy = position.y - touch.startY
            if (touch.over || touch.moved || !touch.isMovement())
                return
            touch.moved = true
            touch.stopRests()
        }

        function cancel() {
            touch.over = true
            touch.lifted = false
            touch.rested = false
            touch.stopRests()
        }

        function lift() {
            if (!touch.lifted || touch.over)
                return
            const drags = touch.rested
            touch.cancel()
            if (!touch.moved)
                area.gestureMade(Gesture.Tap, Gesture.NoDirection, touch.relativeStart)
            else if (touch.isMovement())
                area.gestureMade(drags ? Gesture.Drag : Gesture.Swipe,
                                 Gestures.directionFromVec(touch.dx, touch.dy), touch.relativeStart)
        }

        function hold() {
            touch.cancel()
            area.gestureMade(Gesture.Hold, Gesture.NoDirection, touch.relativeStart)
        }

        function startRests() {
            dragRest.restart()
            holdRest.restart()
        }

        function stopRests() {
            for (const timer of [dragRest, lateDragRest, holdRest, lateHoldRest])
                timer.stop()
        }

        function change(handler) {
            if (one.active && other.active) {
                touch.cancel()
            } else if (handler.active) {
                touch.finger = handler
                touch.press(handler.point.position)
            } else if (handler === touch.finger && !touch.over) {
                touch.follow(handler.point.position)
                touch.stopRests()
                touch.lifted = true
                Qt.callLater(touch.lift) // a handler tells of a cancelled touch only after the end of the touch
            }
        }

        function move(handler) {
            if (handler.active && handler === touch.finger)
                touch.follow(handler.point.position)
        }
    }

    // Each follows a finger that the other does not, or the mouse.
    PointHandler {
        id: one
        onActiveChanged: touch.change(one)
        onPointChanged: touch.move(one)
        onCanceled: touch.cancel()
    }
    PointHandler {
        id: other
        onActiveChanged: touch.change(other)
        onPointChanged: touch.move(other)
        onCanceled: touch.cancel()
    }

    // A program that was busy sees the end of a rest before movements that came earlier. So the end of each rest has a
    // timer of its own, during which it sees those.
    Timer {
        id: dragRest
        interval: Math.max(0, area.dragTime - lateDragRest.interval)
        onTriggered: lateDragRest.restart()
    }
    Timer {
        id: lateDragRest
        interval: 20
        onTriggered: touch.rested = true
    }
    Timer {
        id: holdRest
        interval: Math.max(0, area.holdTime - lateHoldRest.interval)
        onTriggered: lateHoldRest.restart()
    }
    Timer {
        id: lateHoldRest
        interval: 20
        onTriggered: touch.hold()
    }
}
