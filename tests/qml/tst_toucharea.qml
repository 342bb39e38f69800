import QtQuick 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0

Item {
    id: root
    width: 600
    height: 800

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays
    readonly property int never: 3600000

    Component {
        id: touchAreas
        GestureTouchArea {
            anchors.fill: parent
            pixelsPerMillimeter: 4
            onGestureMade: (kind, direction, position) => {
                testCase.made += Gestures.touchTitle(kind, direction) + " " + position.x.toFixed(2) + " "
                        + position.y.toFixed(2) + ";"
            }
        }
    }

    // Soon after the rests begin to end.
    Timer {
        id: movement
        interval: 45
        onTriggered: {
            testCase.mouseMove(testCase.area, 400, 200)
            testCase.mouseRelease(testCase.area, 400, 200)
        }
    }

    TestCase {
        id: testCase
        name: "TouchArea"
        when: windowShown

        property GestureTouchArea area: null
        property string made: "" // all reports of the area

        function init() {
            testCase.made = ""
            testCase.area = createTemporaryObject(touchAreas, root)
        }

        // A part of the window.
        function shrink() {
            testCase.area.anchors.fill = undefined
            testCase.area.x = 100
            testCase.area.y = 200
            testCase.area.width = 200
            testCase.area.height = 400
        }

        // What a cancelled touch would report, it reports by then.
        function expectNothing() {
            wait(100)
            compare(testCase.made, "")
        }

        // A cancelled touch leaves nothing behind.
        function expectTap() {
            mouseClick(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }

        // The rest before a drag passes, that of a hold never does: also a busy machine moves the finger in time.
        function expectDrags() {
            testCase.area.dragTime = 20
            testCase.area.holdTime = root.never
        }

        function expectSwipes() {
            testCase.area.dragTime = root.never
            testCase.area.holdTime = root.never
        }

        function movements() {
            return [
                {tag: " to the left", dx: -200, dy: 60},
                {tag: " to the right", dx: 200, dy: -60},
                {tag: " upwards", dx: 60, dy: -200},
                {tag: " downwards", dx: -60, dy: 200},
                {tag: " down and to the right", diagonal: true, dx: 150, dy: 150},
                {tag: " down and to the left", diagonal: true, dx: -150, dy: 150},
            ]
        }

        function expected(kind, row) {
            return kind + (row.diagonal ? "" : row.tag) + " 0.50 0.25;"
        }

        function test_defaults() {
            const area = createTemporaryQmlObject("import Vellix.Gesture.Controls 1.0; GestureTouchArea {}", root)
            compare(area.leastMovement, 4)
            compare(area.dragTime, 400)
            compare(area.holdTime, 800)
            verify(area.pixelsPerMillimeter > 0)
            compare(area.rested, false)
        }

        function test_tap() {
            mouseClick(testCase.area, 60, 600)
            tryCompare(testCase, "made", "Tap 0.10 0.75;", root.patience)
        }

        function test_slowTapIsATap() {
            testCase.expectDrags()
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "rested", true, root.patience)
            mouseRelease(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
            compare(testCase.area.rested, false)
        }

        function test_twoTapsAtOnce() {
            const touch = touchEvent(testCase.area)
            for (const x of [60, 300]) {
                touch.press(1, testCase.area, x, 200).commit()
                touch.release(1, testCase.area, x, 200).commit()
            }
            tryCompare(testCase, "made", "Tap 0.10 0.25;Tap 0.50 0.25;", root.patience)
        }

        function test_holdIsReportedWhileTheFingerIsDown() {
            const start = Date.now()
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            verify(Date.now() - start >= 0.9 * testCase.area.holdTime) // a coarse timer may be a little early
            mouseMove(testCase.area, 500, 200)
            mouseRelease(testCase.area, 500, 200)
            wait(100)
            compare(testCase.made, "Hold 0.50 0.25;")
            mouseClick(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;Tap 0.50 0.25;", root.patience)
        }

        function test_holdTime() {
            testCase.area.holdTime = 50
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            mouseRelease(testCase.area, 300, 200)
        }

        // 15 pixels are less than 4 mm.
        function test_tremblingHoldIsAHold() {
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 310, 205)
            wait(100)
            mouseMove(testCase.area, 295, 210)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            mouseRelease(testCase.area, 300, 200)
            wait(100)
            compare(testCase.made, "Hold 0.50 0.25;")
        }

        function test_swipe_data() {
            return testCase.movements()
        }
        function test_swipe(row) {
            testCase.expectSwipes()
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 300 + row.dx / 2, 200 + row.dy / 2)
            mouseMove(testCase.area, 300 + row.dx, 200 + row.dy)
            compare(testCase.made, "")
            mouseRelease(testCase.area, 300 + row.dx, 200 + row.dy)
            tryCompare(testCase, "made", testCase.expected("Swipe", row), root.patience)
        }

        function test_drag_data() {
            return testCase.movements()
        }
        function test_drag(row) {
            testCase.expectDrags()
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "rested", true, root.patience)
            mouseMove(testCase.area, 300 + row.dx, 200 + row.dy)
            testCase.area.holdTime = 20
            wait(100)
            compare(testCase.made, "")
            mouseRelease(testCase.area, 300 + row.dx, 200 + row.dy)
            tryCompare(testCase, "made", testCase.expected("Drag", row), root.patience)
        }

        function test_pauseInASwipe() {
            testCase.expectSwipes()
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 340, 200)
            testCase.area.dragTime = 20
            testCase.area.holdTime = 20
            wait(200)
            compare(testCase.area.rested, false)
            mouseMove(testCase.area, 400, 200)
            wait(200)
            mouseRelease(testCase.area, 400, 200)
            tryCompare(testCase, "made", "Swipe to the right 0.50 0.25;", root.patience)
        }

        // With the times that an area has by default. A busy machine may move the finger too late; then the rest was
        // longer.
        function test_restBeforeASwipe() {
            let late = true
            for (let tries = 0; late && tries < 100; ++tries) {
                testCase.made = ""
                mousePress(testCase.area, 300, 200)
                wait(300)
                late = testCase.area.rested
                mouseMove(testCase.area, 400, 200)
                mouseRelease(testCase.area, 400, 200)
                tryVerify(() => testCase.made !== "", root.patience)
            }
            compare(testCase.made, "Swipe to the right 0.50 0.25;")
        }

        function test_restBeforeADrag() {
            testCase.area.holdTime = root.never
            const start = Date.now()
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "rested", true, root.patience)
            verify(Date.now() - start >= 0.9 * testCase.area.dragTime)
            mouseMove(testCase.area, 400, 200)
            mouseRelease(testCase.area, 400, 200)
            tryCompare(testCase, "made", "Drag to the right 0.50 0.25;", root.patience)
        }

        function test_restOfOneTouchIsNotThatOfTheNext() {
            testCase.expectDrags()
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "rested", true, root.patience)
            mouseRelease(testCase.area, 300, 200)
            testCase.area.dragTime = root.never
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 400, 200)
            mouseRelease(testCase.area, 400, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;Swipe to the right 0.50 0.25;", root.patience)
        }

        // The program was busy: it sees the end of the rest before a movement that came earlier.
        function test_lateEndOfARest_data() {
            return [{tag: "no drag", hold: root.never}, {tag: "no hold", hold: 60}]
        }
        function test_lateEndOfARest(row) {
            testCase.area.dragTime = 60
            testCase.area.holdTime = row.hold
            mousePress(testCase.area, 300, 200)
            movement.start()
            wait(5) // all timers run
            const start = Date.now()
            while (Date.now() - start < 100) {}
            tryCompare(testCase, "made", "Swipe to the right 0.50 0.25;", root.patience)
        }

        function test_leastMovement_data() {
            const four = 4, twelve = 11.8
            return [
                {tag: "less than 4 mm across", density: four, dx: 15, dy: 0, made: "Tap 0.50 0.25;"},
                {tag: "4 mm across", density: four, dx: 16, dy: 0, made: "Swipe to the right 0.50 0.25;"},
                {tag: "less than 4 mm up", density: four, dx: 0, dy: -15, made: "Tap 0.50 0.25;"},
                {tag: "4 mm up", density: four, dx: 0, dy: -16, made: "Swipe upwards 0.50 0.25;"},
                {tag: "less than 4 mm aslant", density: four, dx: 11, dy: 11, made: "Tap 0.50 0.25;"},
                {tag: "4 mm aslant", density: four, dx: 11, dy: 12, made: "Swipe downwards 0.50 0.25;"},
                {tag: "dense, less than 4 mm", density: twelve, dx: 47, dy: 0, made: "Tap 0.50 0.25;"},
                {tag: "dense, 4 mm", density: twelve, dx: 48, dy: 0, made: "Swipe to the right 0.50 0.25;"},
                {tag: "dense, less than 4 mm up", density: twelve, dx: 0, dy: -47, made: "Tap 0.50 0.25;"},
                {tag: "dense, 4 mm up", density: twelve, dx: 0, dy: -48, made: "Swipe upwards 0.50 0.25;"},
                {tag: "less than 10 mm", density: four, least: 10, dx: 39, dy: 0, made: "Tap 0.50 0.25;"},
                {tag: "10 mm", density: four, least: 10, dx: 40, dy: 0, made: "Swipe to the right 0.50 0.25;"},
            ]
        }
        function test_leastMovement(row) {
            testCase.expectSwipes()
            testCase.area.pixelsPerMillimeter = row.density
            if (row.least)
                testCase.area.leastMovement = row.least
            mousePress(testCase.area, 300, 200)
            mouseRelease(testCase.area, 300 + row.dx, 200 + row.dy)
            tryCompare(testCase, "made", row.made, root.patience)
        }

        function test_leastMovementOfAFinger_data() {
            return [
                {tag: "less than 4 mm", dx: 15, made: "Tap 0.50 0.25;"},
                {tag: "4 mm", dx: 16, made: "Swipe to the right 0.50 0.25;"},
            ]
        }
        function test_leastMovementOfAFinger(row) {
            testCase.expectSwipes()
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            touch.move(1, testCase.area, 300 + row.dx, 200).commit()
            touch.release(1, testCase.area, 300 + row.dx, 200).commit()
            tryCompare(testCase, "made", row.made, root.patience)
        }

        function test_thereAndBackIsNothing() {
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 400, 200)
            mouseMove(testCase.area, 305, 200)
            mouseRelease(testCase.area, 305, 200)
            testCase.expectNothing()
            testCase.expectTap()
        }

        function test_otherMouseButtonsAreNothing() {
            mouseClick(testCase.area, 300, 200, Qt.RightButton)
            testCase.expectNothing()
        }

        function test_finger_data() {
            return testCase.movements()
        }
        function test_finger(row) {
            testCase.expectSwipes()
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            touch.move(1, testCase.area, 300 + row.dx, 200 + row.dy).commit()
            touch.release(1, testCase.area, 300 + row.dx, 200 + row.dy).commit()
            tryCompare(testCase, "made", testCase.expected("Swipe", row), root.patience)
        }

        function test_fingerDrags() {
            testCase.expectDrags()
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            tryCompare(testCase.area, "rested", true, root.patience)
            touch.move(1, testCase.area, 300, 400).commit()
            touch.release(1, testCase.area, 300, 400).commit()
            tryCompare(testCase, "made", "Drag downwards 0.50 0.25;", root.patience)
        }

        function test_fingerTapsAndHolds() {
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            touch.release(1, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
            touch.press(2, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;Hold 0.50 0.25;", root.patience)
            touch.release(2, testCase.area, 300, 200).commit()
            wait(100)
            compare(testCase.made, "Tap 0.50 0.25;Hold 0.50 0.25;")
        }

        function test_twoFingersAtOnceAreNothing() {
            testCase.area.holdTime = 20
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 200, 200).press(2, testCase.area, 400, 200).commit()
            touch.move(1, testCase.area, 100, 200).move(2, testCase.area, 500, 200).commit()
            touch.release(1, testCase.area, 100, 200).release(2, testCase.area, 500, 200).commit()
            testCase.expectNothing()
            testCase.area.holdTime = root.never
            testCase.expectTap()
        }

        function test_secondFingerCancels_data() {
            return [
                {tag: "of a tap, the first leaves first", first: 1, last: 2},
                {tag: "of a tap, the second leaves first", first: 2, last: 1},
                {tag: "of a swipe, the first leaves first", first: 1, last: 2, dx: 100},
                {tag: "of a swipe, the second leaves first", first: 2, last: 1, dx: 100},
                {tag: "of a drag, the second leaves first", first: 2, last: 1, dx: 100, rests: true},
            ]
        }
        function test_secondFingerCancels(row) {
            testCase.expectDrags()
            if (!row.rests)
                testCase.area.dragTime = root.never
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 200, 200).commit()
            if (row.rests)
                tryCompare(testCase.area, "rested", true, root.patience)
            if (row.dx)
                touch.move(1, testCase.area, 200 + row.dx, 200).commit()
            touch.stationary(1).press(2, testCase.area, 400, 200).commit()
            touch.stationary(row.last).release(row.first, testCase.area, 300, 200).commit()
            touch.move(row.last, testCase.area, 300, 700).commit()
            touch.release(row.last, testCase.area, 300, 700).commit()
            testCase.expectNothing()
            touch.press(3, testCase.area, 300, 200).commit()
            touch.release(3, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }

        function test_secondFingerCancelsAHold() {
            testCase.area.holdTime = 200
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 200, 200).commit()
            touch.stationary(1).press(2, testCase.area, 400, 200).commit()
            wait(400)
            touch.release(1, testCase.area, 200, 200).release(2, testCase.area, 400, 200).commit()
            testCase.expectNothing()
        }

        function test_leavingTheArea_data() {
            return [
                {tag: "mouse", finger: false},
                {tag: "finger", finger: true},
            ]
        }
        function test_leavingTheArea(row) {
            testCase.shrink()
            testCase.expectSwipes()
            if (row.finger) {
                const touch = touchEvent(root)
                touch.press(1, root, 150, 400).commit()
                touch.move(1, root, 50, 400).commit()
                touch.release(1, root, 20, 400).commit()
            } else {
                mousePress(root, 150, 400)
                mouseMove(root, 50, 400)
                mouseRelease(root, 20, 400)
            }
            tryCompare(testCase, "made", "Swipe to the left 0.25 0.50;", root.patience)
        }

        function test_enteringTheAreaIsNothing_data() {
            return testCase.test_leavingTheArea_data()
        }
        function test_enteringTheAreaIsNothing(row) {
            testCase.shrink()
            if (row.finger) {
                const touch = touchEvent(root)
                touch.press(1, root, 50, 400).commit()
                touch.move(1, root, 200, 400).commit()
                touch.release(1, root, 200, 400).commit()
            } else {
                mousePress(root, 50, 400)
                mouseMove(root, 200, 400)
                mouseRelease(root, 200, 400)
            }
            testCase.expectNothing()
        }

        function test_disabled_data() {
            return [
                {tag: "mouse", finger: false},
                {tag: "finger", finger: true},
            ]
        }
        function test_disabled(row) {
            testCase.area.enabled = false
            if (row.finger) {
                const touch = touchEvent(testCase.area)
                touch.press(1, testCase.area, 300, 200).commit()
                touch.release(1, testCase.area, 300, 200).commit()
            } else {
                mouseClick(testCase.area, 300, 200)
            }
            testCase.expectNothing()
            testCase.area.enabled = true
            testCase.expectTap()
        }

        // The touch ends while the area is back, or does so before.
        function test_cancelledWhilePressed_data() {
            const rows = []
            for (const property of ["visible", "enabled"]) {
                for (const finger of [false, true]) {
                    for (const back of [false, true]) {
                        rows.push({tag: property + (finger ? " finger" : " mouse") + (back ? " back" : ""),
                                   property: property, finger: finger, back: back})
                    }
                }
            }
            return rows
        }
        function test_cancelledWhilePressed(row) {
            testCase.area.holdTime = 100
            const touch = touchEvent(testCase.area)
            if (row.finger)
                touch.press(1, testCase.area, 300, 200).commit()
            else
                mousePress(testCase.area, 300, 200)
            testCase.area[row.property] = false
            testCase.area[row.property] = row.back
            wait(200)
            if (row.finger)
                touch.release(1, testCase.area, 300, 200).commit()
            else
                mouseRelease(testCase.area, 300, 200)
            testCase.expectNothing()
            testCase.area[row.property] = true
            testCase.area.holdTime = root.never
            testCase.expectTap()
            touch.press(2, testCase.area, 300, 200).commit()
            touch.release(2, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;Tap 0.50 0.25;", root.patience)
        }

        // The area has another size when the touch ends.
        function test_resizedWhilePressed() {
            testCase.shrink()
            mousePress(root, 150, 400)
            testCase.area.width = 400
            mouseRelease(root, 150, 400)
            tryCompare(testCase, "made", "Tap 0.25 0.50;", root.patience)
        }
    }
}
