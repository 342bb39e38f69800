import QtQuick 2.15
import QtTest 1.15
import Vellix.Test 1.0
import "../../examples/common/words.js" as Words
import "../../examples/reader"
import "../../examples/reader/zones.js" as Zones

Item {
    id: root
    width: 600
    height: 800

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays

    Component {
        id: screens
        ReaderScreen {
            anchors.fill: parent
            focus: true
        }
    }

    Component {
        id: touchAreas
        TouchArea {
            anchors.fill: parent
            onGestureMade: (kind, direction, position) => {
                const words = [Words.kindWord(kind), Words.directionWord(direction), position.x.toFixed(2),
                               position.y.toFixed(2)]
                testCase.made += words.filter(word => word !== "").join(" ") + ";"
            }
        }
    }

    Component {
        id: zoneOverlays
        ZoneOverlay {
            anchors.fill: parent
        }
    }

    Component {
        id: pages
        BookPage {}
    }

    // The timer of a touch area.
    function stillnessOf(area) {
        return Array.from(area.resources).find(each => "triggered" in each)
    }

    // The first of the two times of a hold passes, the second never does: also a busy machine can move the finger in
    // time.
    function expectRest(area) {
        const stillness = root.stillnessOf(area)
        stillness.triggered.connect(() => { stillness.interval = 3600000 })
    }

    TestCase {
        id: testCase
        name: "ReaderTouches"
        when: windowShown

        property TouchArea area: null
        property string made: "" // the last report of the area

        function init() {
            testCase.made = ""
            testCase.area = createTemporaryObject(touchAreas, root)
        }

        function movements() {
            return [
                {tag: "to the left", dx: -200, dy: 60},
                {tag: "to the right", dx: 200, dy: -60},
                {tag: "upwards", dx: 60, dy: -200},
                {tag: "downwards", dx: -60, dy: 200},
                {tag: "down and to the right", diagonal: true, dx: 150, dy: 150},
                {tag: "down and to the left", diagonal: true, dx: -150, dy: 150},
            ]
        }

        function expected(kind, row) {
            return kind + (row.diagonal ? "" : " " + row.tag) + " 0.50 0.25;"
        }

        function test_tap() {
            mouseClick(testCase.area, 60, 600)
            tryCompare(testCase, "made", "Tap 0.10 0.75;", root.patience)
        }

        function test_slowTapIsATap() {
            root.expectRest(testCase.area)
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "waited", true, root.patience)
            mouseRelease(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }

        function test_holdIsReportedWhileTheFingerIsDown() {
            const madeBefore = []
            root.stillnessOf(testCase.area).triggered.connect(() => madeBefore.push(testCase.made))
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            compare(madeBefore[0], "")
            mouseMove(testCase.area, 500, 200)
            mouseRelease(testCase.area, 500, 200)
            wait(600)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            mouseClick(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;Tap 0.50 0.25;", root.patience)
        }

        function test_tremblingHoldIsAHold() {
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 310, 205)
            wait(100)
            mouseMove(testCase.area, 295, 210)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
            mouseRelease(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Hold 0.50 0.25;", root.patience)
        }

        function test_swipe_data() {
            return testCase.movements()
        }
        function test_swipe(row) {
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
            root.expectRest(testCase.area)
            mousePress(testCase.area, 300, 200)
            tryCompare(testCase.area, "waited", true, root.patience)
            mouseMove(testCase.area, 300 + row.dx, 200 + row.dy)
            root.stillnessOf(testCase.area).interval = testCase.area.stillTime
            wait(600)
            compare(testCase.made, "")
            mouseRelease(testCase.area, 300 + row.dx, 200 + row.dy)
            tryCompare(testCase, "made", testCase.expected("Drag", row), root.patience)
        }

        function test_slowSwipeIsASwipe() {
            const stillness = root.stillnessOf(testCase.area)
            mousePress(testCase.area, 300, 200)
            stillness.interval = 3600000 // never still for this long
            wait(120)
            mouseMove(testCase.area, 330, 200)
            stillness.interval = testCase.area.stillTime
            wait(600)
            mouseRelease(testCase.area, 400, 200)
            tryCompare(testCase, "made", "Swipe to the right 0.50 0.25;", root.patience)
        }

        // Three parts in a hundred of 600 are 18.
        function test_leastMovement_data() {
            return [
                {tag: "17 across", dx: 17, dy: 0, made: "Tap 0.50 0.25;"},
                {tag: "18 across", dx: 18, dy: 0, made: "Swipe to the right 0.50 0.25;"},
                {tag: "17 up", dx: 0, dy: -17, made: "Tap 0.50 0.25;"},
                {tag: "18 up", dx: 0, dy: -18, made: "Swipe upwards 0.50 0.25;"},
                {tag: "12 and 12", dx: 12, dy: 12, made: "Tap 0.50 0.25;"},
                {tag: "13 and 13", dx: 13, dy: 13, made: "Swipe 0.50 0.25;"},
                {tag: "13 and 14", dx: 13, dy: 14, made: "Swipe downwards 0.50 0.25;"},
            ]
        }
        function test_leastMovement(row) {
            mousePress(testCase.area, 300, 200)
            mouseRelease(testCase.area, 300 + row.dx, 200 + row.dy)
            tryCompare(testCase, "made", row.made, root.patience)
        }

        function test_thereAndBackIsNothing() {
            mousePress(testCase.area, 300, 200)
            mouseMove(testCase.area, 400, 200)
            mouseMove(testCase.area, 305, 200)
            mouseRelease(testCase.area, 305, 200)
            compare(testCase.made, "")
        }

        function test_otherMouseButtonsAreNothing() {
            mouseClick(testCase.area, 300, 200, Qt.RightButton)
            compare(testCase.made, "")
        }

        function test_finger_data() {
            return testCase.movements()
        }
        function test_finger(row) {
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            touch.move(1, testCase.area, 300 + row.dx, 200 + row.dy).commit()
            touch.release(1, testCase.area, 300 + row.dx, 200 + row.dy).commit()
            tryCompare(testCase, "made", testCase.expected("Swipe", row), root.patience)
        }

        function test_fingerTapsAndHolds() {
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 300, 200).commit()
            touch.release(1, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
            touch.press(2, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;Hold 0.50 0.25;", root.patience)
            touch.release(2, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;Hold 0.50 0.25;", root.patience)
        }

        function test_twoFingersAtOnceAreNothing() {
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 200, 200).press(2, testCase.area, 400, 200).commit()
            touch.move(1, testCase.area, 100, 200).move(2, testCase.area, 500, 200).commit()
            touch.release(1, testCase.area, 100, 200).release(2, testCase.area, 500, 200).commit()
            wait(600)
            compare(testCase.made, "")
            mouseClick(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }

        function test_secondFingerEndsIt_data() {
            return [{tag: "first finger leaves first", first: 1, last: 2}, {tag: "second first", first: 2, last: 1}]
        }
        function test_secondFingerEndsIt(row) {
            const touch = touchEvent(testCase.area)
            touch.press(1, testCase.area, 200, 200).commit()
            touch.stationary(1).press(2, testCase.area, 400, 200).commit()
            wait(600)
            touch.stationary(row.last).release(row.first, testCase.area, 300, 200).commit()
            touch.move(row.last, testCase.area, 300, 700).commit()
            touch.release(row.last, testCase.area, 300, 700).commit()
            compare(testCase.made, "")
            touch.press(3, testCase.area, 300, 200).commit()
            touch.release(3, testCase.area, 300, 200).commit()
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }

        function test_cancelledTouchIsNothing() {
            mousePress(testCase.area, 300, 200)
            testCase.area.visible = false // ends the grab
            testCase.area.visible = true
            mouseRelease(testCase.area, 300, 200)
            wait(600)
            compare(testCase.made, "")
            mouseClick(testCase.area, 300, 200)
            tryCompare(testCase, "made", "Tap 0.50 0.25;", root.patience)
        }
    }

    TestCase {
        id: readerCase
        name: "Reader"
        when: windowShown

        property ReaderScreen screen: null

        function init() {
            TestTree.reset()
            readerCase.screen = null
        }

        function open(appId) {
            readerCase.screen = createTemporaryObject(screens, root, {appId: appId || "reader"})
            verify(readerCase.screen)
            readerCase.screen.forceActiveFocus()
        }

        function part(name) {
            wait(0) // the event loop answers a touch
            const item = findChild(readerCase.screen, name)
            verify(item, name)
            return item
        }

        function status() {
            return readerCase.part("statusLine").text
        }

        // The status line without the time, which must be there.
        function answer() {
            const text = readerCase.status()
            verify(/, \d+ µs($|\n)/.test(text), text)
            return text.replace(/, \d+ µs/, "")
        }

        function press(name) {
            const button = readerCase.part(name)
            verify(button.visible, name)
            tryVerify(() => !isPolishScheduled(button.parent), root.patience) // its place may not be final yet
            mouseClick(button)
        }

        // Every tap, in every mode, runs this action.
        function openWithTapFor(path, features) {
            const titles = path.split("/").map(segment => segment + " title")
            const action = titles.length > 1 ? {path: path, titles: titles} : {path: path, title: titles[0]}
            const gesture = {kind: "tap", zone: "whole", currentAction: path}
            if (features)
                gesture.features = features
            TestTree.setConfiguration("reader", JSON.stringify({actions: [action], gestures: [gesture]}))
            readerCase.open()
        }

        function tap() {
            mouseClick(readerCase.screen, 300, 740)
        }

        function test_start() {
            readerCase.open()
            compare(readerCase.part("problemText").visible, false)
            compare(readerCase.part("noticeText").text, "")
            verify(readerCase.part("pageText").text.length > 100)
            verify(/^Page 1 of \d+, chapter 1 of 5$/.test(readerCase.part("pageNumber").text))
            compare(readerCase.part("modeButton-reading").chosen, true)
            for (const hidden of ["zoneOverlay", "chapterList", "menuPanel", "bookmarkMarker"])
                compare(readerCase.part(hidden).visible, false, hidden)
        }

        // The effect of each touch of the sample.
        function test_sample_data() {
            return [
                {tag: "Tap at 0.90, 0.50: Next page (page/next)", x: 540, y: 400},
                {tag: "Tap at 0.90, 0.95: List of chapters (chapter/list)", x: 540, y: 760},
                {tag: "Tap at 0.90, 0.85: nothing", x: 540, y: 680},
                {tag: "Tap at 0.90, 0.05: Bookmark (view/bookmark)", x: 540, y: 40},
                {tag: "Swipe to the left at 0.50, 0.50: Next page (page/next)", x: 300, y: 400, dx: -100, dy: 0},
                {tag: "Swipe upwards at 0.50, 0.50: Larger (text/larger)", x: 300, y: 400, dx: 0, dy: -100},
                {tag: "Swipe at 0.50, 0.50: nothing", x: 300, y: 400, dx: 100, dy: 100},
                {tag: "Hold at 0.50, 0.50: Start (select/start)", x: 300, y: 400, hold: true},
                {tag: "Hold at 0.90, 0.50: Menu (view/menu)", x: 540, y: 400, hold: true},
                {tag: "Hold at 0.10, 0.50: nothing", x: 60, y: 400, hold: true},
                {tag: "Drag to the right at 0.50, 0.95: Ten pages on (page/forward)", x: 300, y: 760, dx: 200, dy: 0,
                 rests: true},
            ]
        }
        function test_sample(row) {
            readerCase.open()
            const untouched = readerCase.status()
            const area = Array.from(readerCase.screen.children).find(each => "stillTime" in each)
            if (row.rests)
                root.expectRest(area)
            mousePress(readerCase.screen, row.x, row.y)
            if (row.hold)
                tryVerify(() => readerCase.status() !== untouched, root.patience)
            if (row.rests)
                tryCompare(area, "waited", true, root.patience)
            if (row.dx !== undefined)
                mouseMove(readerCase.screen, row.x + row.dx, row.y + row.dy)
            mouseRelease(readerCase.screen, row.x + (row.dx || 0), row.y + (row.dy || 0))
            compare(readerCase.answer(), row.tag)
        }

        function test_action_data() {
            const page = n => s => verify(new RegExp("^Page " + n + " of ").test(readerCase.part("pageNumber").text),
                                          readerCase.part("pageNumber").text)
            const chapter = n => s => verify(readerCase.part("pageNumber").text.indexOf("chapter " + n + " of") > 0)
            const says = sentence => s => compare(readerCase.status().split("\n")[1], sentence)
            const mode = m => s => verify(readerCase.part("modeButton-" + m).chosen)
            const shows = (name, value) => s => compare(readerCase.part(name).visible, value)
            const turned = n => s => readerCase.part("page").turn(n)
            return [
                {tag: "page/next", check: page(2)},
                {tag: "page/next", first: turned(1000), check: says("This is the last page.")},
                {tag: "page/previous", first: turned(2), check: page(2)},
                {tag: "page/previous", check: says("This is the first page.")},
                {tag: "page/forward", first: turned(1), check: page(12)},
                {tag: "page/back", first: turned(12), check: page(3)},
                {tag: "page/back", first: turned(3), check: page(1)},
                {tag: "chapter/next", check: chapter(2)},
                {tag: "chapter/next", first: turned(1000), check: says("This is the last chapter.")},
                {tag: "chapter/previous", first: turned(1000), check: chapter(4)},
                {tag: "chapter/previous", check: says("This is the first chapter.")},
                {tag: "chapter/list", check: shows("chapterList", true)},
                {tag: "text/larger", check: s => compare(readerCase.part("pageText").font.pixelSize, 28)},
                {tag: "text/smaller", check: s => compare(readerCase.part("pageText").font.pixelSize, 20)},
                {tag: "text/larger", first: s => { readerCase.part("page").textSize = 48 },
                 check: says("This is the largest text.")},
                {tag: "text/smaller", first: s => { readerCase.part("page").textSize = 16 },
                 check: says("This is the smallest text.")},
                {tag: "light/brighter", check: s => compare(readerCase.part("lightLevel").width, 56)},
                {tag: "light/darker", check: s => compare(readerCase.part("lightLevel").width, 40)},
                {tag: "light/brighter", first: s => { s.lightOn = false },
                 check: s => compare(readerCase.part("lightLevel").width, 56)},
                {tag: "light/brighter", first: s => { s.light = 10 },
                 check: s => compare(readerCase.part("lightLevel").width, 80)},
                {tag: "light/darker", first: s => { s.light = 1 },
                 check: s => compare(readerCase.part("lightLevel").width, 8)},
                {tag: "light/warmer", check: s => compare(readerCase.part("lightText").text, "warmth 4")},
                {tag: "light/colder", check: s => compare(readerCase.part("lightText").text, "warmth 2")},
                {tag: "light/warmer", first: s => { s.warmth = 10 },
                 check: s => compare(readerCase.part("lightText").text, "warmth 10")},
                {tag: "light/colder", first: s => { s.warmth = 0 },
                 check: s => compare(readerCase.part("lightText").text, "warmth 0")},
                {tag: "light/toggle", check: s => {
                    compare(readerCase.part("lightText").text, "off")
                    compare(readerCase.part("lightLevel").width, 0)
                }},
                {tag: "light/toggle", first: s => { s.lightOn = false },
                 check: s => compare(readerCase.part("lightText").text, "warmth 3")},
                {tag: "speech/toggle", check: says("Here the device would read aloud.")},
                {tag: "speech/toggle", first: s => s.perform("speech/toggle"),
                 check: says("Here the device would stop reading aloud.")},
                {tag: "view/menu", check: shows("menuPanel", true)},
                {tag: "view/menu", check: mode("menu")},
                {tag: "view/bookmark", check: shows("bookmarkMarker", true)},
                {tag: "view/bookmark", first: s => s.perform("view/bookmark"), check: shows("bookmarkMarker", false)},
                {tag: "view/search", check: says("Here the device would search.")},
                {tag: "view/refresh", check: says("Here the device would refresh the screen.")},
                {tag: "view/close", check: says("Here the device would close the book.")},
                {tag: "view/close", first: s => s.setMode("selecting"), check: mode("reading")},
                {tag: "view/close", first: s => s.perform("view/menu"), check: shows("menuPanel", false)},
                {tag: "view/close", first: s => s.perform("chapter/list"), check: shows("chapterList", false)},
                {tag: "select/start", check: mode("selecting")},
                {tag: "select/highlight", check: says("Here the device would highlight the selection.")},
                {tag: "select/note", check: says("Here the device would write a note.")},
                {tag: "select/lookup", check: says("Here the device would look up the selection.")},
                {tag: "select/cancel", first: s => s.setMode("selecting"), check: mode("reading")},
                {tag: "page/fold", check: says("This program has no action “page/fold”.")},
                {tag: "constructor", check: says("This program has no action “constructor”.")},
            ]
        }
        function test_action(row) {
            readerCase.openWithTapFor(row.tag)
            if (row.first)
                row.first(readerCase.screen)
            readerCase.tap()
            const title = row.tag.split("/").pop() + " title"
            compare(readerCase.answer().split("\n")[0], "Tap at 0.50, 0.93: " + title + " (" + row.tag + ")")
            row.check(readerCase.screen)
        }

        // The program has a function for every action of the sample.
        function test_everyActionOfTheSampleIsKnown() {
            readerCase.open()
            const paths = JSON.parse(TestTree.configuration("reader")).actions.map(action => action.path)
            verify(paths.length > 20)
            for (const path of paths)
                verify(readerCase.screen.perform(path).indexOf("no action") < 0, path)
        }

        function test_whatTheDeviceCannotDo() {
            readerCase.openWithTapFor("page/next", ["frontlight", "smartlight", "tts"])
            const gestures = readerCase.part("zoneOverlay")
            keyClick(Qt.Key_Z)
            const model = gestures.service.gestures
            if (model.data(model.index(0, 0), Qt.DisplayRole).supported)
                skip("this device has everything")
            readerCase.tap()
            compare(readerCase.answer(), "Tap at 0.50, 0.93: next title (page/next), this device cannot do it")
            verify(readerCase.part("pageNumber").text.indexOf("Page 1 of") === 0)
            compare(gestures.zones.length, 0)
        }

        function test_textSizeKeepsThePlace() {
            readerCase.open()
            const page = readerCase.part("page")
            page.turn(5)
            const start = page.pages[page.pageIndex].start
            readerCase.screen.perform("text/larger")
            const larger = page.pages
            verify(larger[page.pageIndex].start <= start)
            verify(larger[page.pageIndex + 1].start > start)
            readerCase.screen.perform("text/smaller")
            compare(page.pages[page.pageIndex].start, start)
        }

        function test_lastPageStaysTheLast() {
            readerCase.open()
            const page = readerCase.part("page")
            for (const path of ["text/larger", "text/larger", "page/forward", "page/forward", "page/forward"])
                readerCase.screen.perform(path)
            page.turn(1000)
            for (let n = 0; n < 4; ++n) {
                readerCase.screen.perform("text/smaller")
                compare(page.pageIndex, page.pageCount - 1)
                compare(readerCase.part("chapterTitle").text, "A Clear Evening")
                verify(readerCase.part("pageText").text.endsWith("boat."))
            }
        }

        function test_bookmarkBelongsToItsPage() {
            readerCase.open()
            const marker = readerCase.part("bookmarkMarker")
            readerCase.screen.perform("page/next")
            readerCase.screen.perform("view/bookmark")
            compare(marker.visible, true)
            readerCase.screen.perform("page/next")
            compare(marker.visible, false)
            readerCase.screen.perform("page/previous")
            compare(marker.visible, true)
        }

        // Every word of the book is on one page, in order, and no line is wider than the page or below it.
        function test_pages_data() {
            return [{tag: "16"}, {tag: "24"}, {tag: "48"}, {tag: "small window", width: 200, height: 120}]
        }
        function test_pages(row) {
            const page = createTemporaryObject(pages, root, {width: row.width || 528, height: row.height || 600,
                                                             textSize: Number(row.tag) || 24})
            const text = findChild(page, "pageText")
            let word = 0
            for (let n = 0; n < page.pageCount; ++n) {
                compare(page.pageIndex, n)
                compare(page.pages[n].start, word)
                word += text.text.split(/[\s]+/).filter(part => part !== "").length
                verify(row.width || text.contentWidth <= page.width, n + ": " + text.contentWidth)
                verify(row.height || text.y + text.contentHeight <= page.height, n)
                compare(page.turn(1), n + 1 < page.pageCount)
            }
            verify(word > 1500)
        }

        function test_modeButtons() {
            readerCase.open()
            readerCase.press("modeButton-selecting")
            compare(readerCase.screen.mode, "selecting")
            mouseClick(readerCase.screen, 60, 400)
            compare(readerCase.answer(), "Tap at 0.10, 0.50: Cancel (select/cancel)")
            compare(readerCase.screen.mode, "reading")
            readerCase.press("modeButton-menu")
            compare(readerCase.part("menuPanel").visible, true)
            readerCase.press("modeButton-reading")
            compare(readerCase.part("menuPanel").visible, false)
        }

        function test_menuReturnsToTheModeBefore() {
            readerCase.open()
            readerCase.press("modeButton-selecting")
            readerCase.press("modeButton-menu")
            readerCase.press("menuButton-view/close")
            compare(readerCase.screen.mode, "selecting")
            readerCase.press("modeButton-menu")
            readerCase.press("menuButton-chapter/list")
            readerCase.press("chapterListClose")
            compare(readerCase.screen.mode, "selecting")
            readerCase.press("modeButton-menu")
            mouseClick(readerCase.screen, 300, 740)
            compare(readerCase.answer(), "Tap at 0.50, 0.93: Close (view/close)")
            compare(readerCase.screen.mode, "selecting")
        }

        function test_menuEntries() {
            readerCase.open()
            readerCase.press("modeButton-menu")
            readerCase.press("menuButton-text/larger")
            compare(readerCase.part("pageText").font.pixelSize, 28)
            compare(readerCase.part("menuPanel").visible, true)
            readerCase.press("menuButton-view/search")
            compare(readerCase.status(), "Here the device would search.")
            readerCase.press("menuButton-zones")
            compare(readerCase.part("zoneOverlay").visible, true)
        }

        function test_chapterIsPicked() {
            readerCase.open()
            mouseClick(readerCase.screen, 300, 760)
            compare(readerCase.part("chapterButton-0").chosen, true)
            readerCase.press("chapterButton-3")
            compare(readerCase.part("chapterList").visible, false)
            compare(readerCase.screen.mode, "reading")
            verify(readerCase.part("pageNumber").text.indexOf("chapter 4 of") > 0)
            compare(readerCase.part("chapterTitle").text, "What the Post Held")
            verify(/^What the Post Held, page \d+ of \d+$/.test(readerCase.screen.title), readerCase.screen.title)
        }

        function test_keys_data() {
            const tap = "Tap at ", hold = "Hold at "
            return [
                {key: Qt.Key_Left, tag: "Swipe to the left at 0.50, 0.50: Next page (page/next)"},
                {key: Qt.Key_Right, tag: "Swipe to the right at 0.50, 0.50: Previous page (page/previous)"},
                {key: Qt.Key_Up, tag: "Swipe upwards at 0.50, 0.50: Larger (text/larger)"},
                {key: Qt.Key_Down, tag: "Swipe downwards at 0.50, 0.50: Smaller (text/smaller)"},
                {key: Qt.Key_1, tag: tap + "0.17, 0.83: nothing"},
                {key: Qt.Key_2, tag: tap + "0.50, 0.83: nothing"},
                {key: Qt.Key_3, tag: tap + "0.83, 0.83: nothing"},
                {key: Qt.Key_4, tag: tap + "0.17, 0.50: Previous page (page/previous)"},
                {key: Qt.Key_5, tag: tap + "0.50, 0.50: Menu (view/menu)"},
                {key: Qt.Key_6, tag: tap + "0.83, 0.50: Next page (page/next)"},
                {key: Qt.Key_6, modifiers: Qt.KeypadModifier, tag: tap + "0.83, 0.50: Next page (page/next)"},
                {key: Qt.Key_7, tag: tap + "0.17, 0.17: nothing"},
                {key: Qt.Key_8, tag: tap + "0.50, 0.17: nothing"},
                {key: Qt.Key_9, tag: tap + "0.83, 0.17: nothing"},
                {key: Qt.Key_5, modifiers: Qt.AltModifier, tag: hold + "0.50, 0.50: Start (select/start)"},
                {key: Qt.Key_5, modifiers: Qt.ShiftModifier, tag: hold + "0.50, 0.50: Start (select/start)"},
                {key: Qt.Key_1, modifiers: Qt.AltModifier, tag: hold + "0.17, 0.83: Refresh the screen (view/refresh)"},
            ]
        }
        function test_keys(row) {
            readerCase.open()
            keyClick(row.key, row.modifiers || Qt.NoModifier)
            compare(readerCase.answer().split("\n")[0], row.tag)
        }

        function test_otherKeysAreNothing() {
            readerCase.open()
            const before = readerCase.status()
            for (const key of [Qt.Key_0, Qt.Key_A, Qt.Key_Space, Qt.Key_F1])
                keyClick(key)
            keyClick(Qt.Key_6, Qt.ControlModifier)
            compare(readerCase.status(), before)
            compare(readerCase.screen.mode, "reading")
        }

        function test_modeKeys_data() {
            return [{tag: "Tab", key: Qt.Key_Tab}, {tag: "M", key: Qt.Key_M}]
        }
        function test_modeKeys(row) {
            readerCase.open()
            for (const mode of ["selecting", "menu", "reading"]) {
                keyClick(row.key)
                compare(readerCase.screen.mode, mode)
                compare(readerCase.part("menuPanel").visible, mode === "menu")
            }
        }

        function test_escape() {
            readerCase.open()
            keyClick(Qt.Key_5)
            keyClick(Qt.Key_Z)
            compare(readerCase.part("zoneOverlay").visible, true)
            keyClick(Qt.Key_Escape)
            compare(readerCase.part("zoneOverlay").visible, false)
            compare(readerCase.part("menuPanel").visible, true)
            keyClick(Qt.Key_Escape)
            compare(readerCase.part("menuPanel").visible, false)
            readerCase.screen.perform("chapter/list")
            keyClick(Qt.Key_Escape)
            compare(readerCase.part("chapterList").visible, false)
            compare(readerCase.screen.mode, "reading")
        }

        function zoneTexts() {
            const overlay = readerCase.part("zoneOverlay")
            const texts = []
            for (let n = 0; n < overlay.zones.length; ++n)
                texts.push(readerCase.part("zoneText-" + n).text)
            return texts
        }

        function test_zonesOfTheMode() {
            readerCase.open()
            keyClick(Qt.Key_Z)
            const reading = readerCase.zoneTexts()
            verify(reading.indexOf("Tap: Bookmark") >= 0, reading)
            verify(reading.indexOf("Tap: Next page") >= 0, reading)
            verify(reading.indexOf("Tap: Menu\nHold: Start") >= 0, reading)
            verify(reading.indexOf("← Swipe: Next page\n→ Swipe: Previous page\n↑ Swipe: Larger\n↓ Swipe: Smaller") >= 0,
                   reading)
            compare(reading.indexOf("Hold: Menu") >= 0, true) // of all modes

            const overlay = readerCase.part("zoneOverlay")
            const right = overlay.zones.findIndex(each => each.gestures[0] === "Tap: Next page")
            const outline = readerCase.part("zone-" + right)
            fuzzyCompare(outline.x, 450, 4)
            fuzzyCompare(outline.y, 160, 4)
            fuzzyCompare(outline.width, 150, 4)
            fuzzyCompare(outline.height, 480, 4)

            mouseClick(readerCase.screen, 540, 400) // the overlay ignores touches
            compare(readerCase.answer(), "Tap at 0.90, 0.50: Next page (page/next)")

            keyClick(Qt.Key_M)
            compare(readerCase.zoneTexts(), ["Hold: Menu", "Tap: Cancel\nHold: Look up\nDrag: Highlight\n↓ Swipe: Close"])
        }

        function test_labelsOfZonesDoNotOverlap_data() {
            return [{tag: "reading"}, {tag: "selecting"}, {tag: "menu"}]
        }
        function test_labelsOfZonesDoNotOverlap(row) {
            readerCase.open()
            readerCase.screen.setMode(row.tag)
            keyClick(Qt.Key_Z)
            const count = readerCase.part("zoneOverlay").zones.length
            verify(count > 1)
            tryVerify(() => readerCase.part("zoneLabel-0").x > 0, root.patience)
            const labels = []
            for (let n = 0; n < count; ++n)
                labels.push(readerCase.part("zoneLabel-" + n))
            for (const label of labels) {
                verify(label.x >= 0 && label.x + label.width <= 600, label)
                verify(label.y >= 0 && label.y + label.height <= 800, label)
                for (const other of labels)
                    verify(label === other || !Zones.overlap(label, other), label + " " + other)
            }
        }

        function test_followsAChange() {
            readerCase.open()
            keyClick(Qt.Key_Z)
            mouseClick(readerCase.screen, 540, 400)
            compare(readerCase.answer(), "Tap at 0.90, 0.50: Next page (page/next)")
            TestTree.setChoices("reader", '{"actions": {"ReadingTapRightNoDirection": "view/search"}, "version": 1}')
            tryVerify(() => readerCase.zoneTexts().indexOf("Tap: Search") >= 0, root.patience)
            mouseClick(readerCase.screen, 540, 400)
            compare(readerCase.answer(),
                    "Tap at 0.90, 0.50: Search (view/search)\nHere the device would search.")
            verify(readerCase.part("pageNumber").text.indexOf("Page 2 of") === 0)
        }

        function test_changeForTheWorseAndBack() {
            const good = '{"actions": {"Thumb": "view/refresh"}, "version": 1}'
            readerCase.open()
            TestTree.setChoices("reader", '{"actions": {"Thumb": "no/such"}, "version": 1}')
            tryCompare(readerCase.part("problemText"), "visible", true, root.patience)
            verify(readerCase.part("problemText").text.indexOf("“reader”") > 0)
            verify(readerCase.part("problemText").text.indexOf("no/such") > 0)
            compare(readerCase.part("pageText").visible, false)
            TestTree.setChoices("reader", good)
            tryCompare(readerCase.part("problemText"), "visible", false, root.patience)
            compare(readerCase.part("pageText").visible, true)
            TestTree.setChoices("reader", "{")
            tryVerify(() => readerCase.part("noticeText").text.indexOf("Your choices cannot be read") === 0, root.patience)
            compare(readerCase.part("problemText").visible, false)
            TestTree.setChoices("reader", good)
            tryCompare(readerCase.part("noticeText"), "text", "", root.patience)
            keyClick(Qt.Key_6)
            compare(readerCase.answer(), "Tap at 0.83, 0.50: Next page (page/next)")
        }

        function test_problem_data() {
            return [
                {tag: "prohibited", appId: "launcher", says: "“launcher” may not have gestures of its own."},
                {tag: "unknown", appId: "nobody", says: "There is no application “nobody”: no gestures were found in "},
                {tag: "empty file", configuration: "", says: "The gestures of “reader” cannot be read: "},
                {tag: "broken", configuration: '{"gestures": [', says: "The gestures of “reader” cannot be read: "},
                {tag: "undefined zone", configuration: '{"actions": [{"path": "a", "title": "A"}],' +
                 '"gestures": [{"kind": "tap", "zone": "attic", "currentAction": "a"}]}',
                 says: "The gestures of “reader” cannot be read: zone 'attic' not defined."},
                {tag: "choice that does not fit", choices: '{"actions": {"Thumb": "no/such"}, "version": 1}',
                 says: "Your choices do not fit the gestures of “reader”: "},
            ]
        }
        function test_problem(row) {
            if (row.configuration !== undefined)
                TestTree.setConfiguration("reader", row.configuration)
            if (row.choices)
                TestTree.setChoices("reader", row.choices)
            readerCase.open(row.appId)
            const text = readerCase.part("problemText")
            compare(text.visible, true)
            compare(text.text.slice(0, row.says.length), row.says)
            verify(text.contentHeight <= text.height)
            for (const hidden of ["pageText", "pageNumber"])
                compare(readerCase.part(hidden).visible, false, hidden)
            keyClick(Qt.Key_Z)
            mouseClick(readerCase.screen, 540, 400)
            compare(readerCase.answer(), "Tap at 0.90, 0.50: nothing")
            keyClick(Qt.Key_Left)
            compare(readerCase.answer(), "Swipe to the left at 0.50, 0.50: nothing")
            compare(readerCase.part("zoneOverlay").zones.length, 0)
        }

        function test_notice_data() {
            return [
                {tag: "another version", choices: '{"actions": {"Thumb": "view/refresh"}, "version": 7}',
                 says: "Your choices were saved by another version of this device, so the defaults are shown."},
                {tag: "broken", choices: '{"actions"', says: "Your choices cannot be read ("},
                {tag: "wrong types", choices: '{"actions": 3, "version": 1}', says: "Your choices cannot be read ("},
            ]
        }
        function test_notice(row) {
            TestTree.setChoices("reader", row.choices)
            readerCase.open()
            const notice = readerCase.part("noticeText")
            compare(notice.text.slice(0, row.says.length), row.says)
            verify(notice.visible && notice.height >= notice.contentHeight)
            compare(readerCase.part("problemText").visible, false)
            compare(readerCase.part("pageText").visible, true)
            keyClick(Qt.Key_6)
            compare(readerCase.answer(), "Tap at 0.83, 0.50: Next page (page/next)")
            keyClick(Qt.Key_6, Qt.AltModifier)
            compare(readerCase.answer(), "Hold at 0.83, 0.50: nothing")
        }

        function test_program() {
            const component = Qt.createComponent("../../examples/reader/main.qml")
            const program = createTemporaryObject(component, root, {appId: "launcher", visible: false})
            verify(program, component.errorString())
            compare(findChild(program, "problemText").text, "“launcher” may not have gestures of its own.")
            compare(program.title, "Reader")
        }

        function test_overlayWithoutAService() {
            const overlay = createTemporaryObject(zoneOverlays, root, {mode: "reading"})
            compare(overlay.zones.length, 0)
        }
    }
}
