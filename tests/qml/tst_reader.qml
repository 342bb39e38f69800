import QtQuick 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import Vellix.Gesture.Controls 1.0
import Vellix.Test 1.0
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
            focus: true
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

    TestCase {
        id: readerCase
        name: "Reader"
        when: windowShown

        property ReaderScreen screen: null

        function init() {
            TestTree.reset()
            Theme.pixelsPerMillimeter = 4
            readerCase.screen = null
        }

        function open(appId, width, height) {
            readerCase.screen = createTemporaryObject(screens, root, {appId: appId || "reader", width: width || 600,
                                                                      height: height || 800})
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
            compare(readerCase.part("notice").visible, false)
            verify(readerCase.part("pageText").text.length > 100)
            verify(/^Page 1 of \d+, chapter 1 of 5$/.test(readerCase.part("pageNumber").text))
            compare(readerCase.part("modeButton-reading").checked, true)
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
            const area = readerCase.part("touchArea")
            area.dragTime = row.rests ? 20 : 3600000
            area.holdTime = row.hold ? 20 : 3600000
            mousePress(readerCase.screen, row.x, row.y)
            if (row.hold)
                tryVerify(() => readerCase.status() !== untouched, root.patience)
            if (row.rests)
                tryCompare(area, "rested", true, root.patience)
            if (row.dx !== undefined)
                mouseMove(readerCase.screen, row.x + row.dx, row.y + row.dy)
            mouseRelease(readerCase.screen, row.x + (row.dx || 0), row.y + (row.dy || 0))
            compare(readerCase.status(), row.tag)
        }

        function test_action_data() {
            const page = n => s => verify(new RegExp("^Page " + n + " of ").test(readerCase.part("pageNumber").text),
                                          readerCase.part("pageNumber").text)
            const chapter = n => s => verify(readerCase.part("pageNumber").text.indexOf("chapter " + n + " of") > 0)
            const says = sentence => s => compare(readerCase.status().split("\n")[1], sentence)
            const mode = m => s => verify(readerCase.part("modeButton-" + m).checked)
            const shows = (name, value) => s => compare(readerCase.part(name).visible, value)
            const light = (level, warmth) => s => compare(readerCase.part("lightText").text,
                                                          "Light " + level + " of 10, warmth " + warmth + " of 10")
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
                {tag: "text/larger", first: s => { s.textSize = 12 },
                 check: says("This is the largest text.")},
                {tag: "text/smaller", first: s => { s.textSize = 4 },
                 check: says("This is the smallest text.")},
                {tag: "light/brighter", check: light(7, 3)},
                {tag: "light/darker", check: light(5, 3)},
                {tag: "light/brighter", first: s => { s.lightOn = false }, check: light(7, 3)},
                {tag: "light/brighter", first: s => { s.light = 10 }, check: light(10, 3)},
                {tag: "light/darker", first: s => { s.light = 1 }, check: light(1, 3)},
                {tag: "light/warmer", check: light(6, 4)},
                {tag: "light/colder", check: light(6, 2)},
                {tag: "light/warmer", first: s => { s.warmth = 10 }, check: light(6, 10)},
                {tag: "light/colder", first: s => { s.warmth = 0 }, check: light(6, 0)},
                {tag: "light/toggle", check: s => compare(readerCase.part("lightText").text, "The light is off.")},
                {tag: "light/toggle", first: s => { s.lightOn = false }, check: light(6, 3)},
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
            compare(readerCase.status().split("\n")[0], "Tap at 0.50, 0.93: " + title + " (" + row.tag + ")")
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
            compare(readerCase.status(), "Tap at 0.50, 0.93: next title (page/next), this device cannot do it")
            verify(readerCase.part("pageNumber").text.indexOf("Page 1 of") === 0)
            compare(gestures.zones.length, 0)
        }

        // Texts of the configuration are shown as they are.
        function test_titlesAreNoPatterns() {
            TestTree.setConfiguration("reader", JSON.stringify({
                actions: [{path: "page/next", titles: ["Page", "<b>100 %3</b>"]}],
                gestures: [{kind: "tap", zone: "whole", currentAction: "page/next"}]}))
            readerCase.open()
            readerCase.tap()
            compare(readerCase.status(), "Tap at 0.50, 0.93: <b>100 %3</b> (page/next)")
            keyClick(Qt.Key_Z)
            compare(readerCase.part("zoneText-0").text, "Tap: <b>100 %3</b>")
            for (const name of ["statusLine", "zoneText-0"])
                compare(readerCase.part(name).textFormat, Text.PlainText)
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
            compare(readerCase.status(), "Tap at 0.10, 0.50: Cancel (select/cancel)")
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
            readerCase.press("menuPanel-view/close")
            compare(readerCase.screen.mode, "selecting")
            readerCase.press("modeButton-menu")
            readerCase.press("menuPanel-chapter/list")
            readerCase.press("chapterList-close")
            compare(readerCase.screen.mode, "selecting")
            readerCase.press("modeButton-menu")
            mouseClick(readerCase.screen, 300, 740)
            compare(readerCase.status(), "Tap at 0.50, 0.93: Close (view/close)")
            compare(readerCase.screen.mode, "selecting")
        }

        function test_menuEntries() {
            readerCase.open()
            readerCase.press("modeButton-menu")
            readerCase.press("menuPanel-text/larger")
            compare(readerCase.part("pageText").font.pixelSize, 28)
            compare(readerCase.part("menuPanel").visible, true)
            readerCase.press("menuPanel-view/search")
            compare(readerCase.status(), "Here the device would search.")
            readerCase.press("menuPanel-zones")
            compare(readerCase.part("zoneOverlay").visible, true)
        }

        function test_chapterIsPicked() {
            readerCase.open()
            mouseClick(readerCase.screen, 300, 760)
            compare(readerCase.part("chapterList-0").checked, true)
            readerCase.press("chapterList-3")
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
            compare(readerCase.status().split("\n")[0], row.tag)
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

        // The gestures of each zone.
        function zoneTexts() {
            return readerCase.part("zoneOverlay").zones.map(zone => zone.gestures.join("\n"))
        }

        function test_zonesOfTheMode() {
            readerCase.open()
            keyClick(Qt.Key_Z)
            const reading = readerCase.zoneTexts()
            verify(reading.indexOf("Tap: Bookmark") >= 0, reading)
            verify(reading.indexOf("Tap: Next page") >= 0, reading)
            verify(reading.indexOf("Tap: Menu\nHold: Start") >= 0, reading)
            verify(reading.indexOf("Swipe to the left: Next page\nSwipe to the right: Previous page\n"
                                   + "Swipe upwards: Larger\nSwipe downwards: Smaller") >= 0, reading)
            verify(reading.indexOf("Hold: Menu") >= 0, reading) // of all modes

            const overlay = readerCase.part("zoneOverlay")
            const right = overlay.zones.findIndex(each => each.gestures[0] === "Tap: Next page")
            const outline = readerCase.part("zone-" + right)
            fuzzyCompare(outline.x, 450, 4)
            fuzzyCompare(outline.y, 160, 4)
            fuzzyCompare(outline.width, 150, 4)
            fuzzyCompare(outline.height, 480, 4)

            mouseClick(readerCase.screen, 540, 400) // the overlay ignores touches
            compare(readerCase.status(), "Tap at 0.90, 0.50: Next page (page/next)")

            keyClick(Qt.Key_M)
            compare(readerCase.zoneTexts(),
                    ["Hold: Menu", "Tap: Cancel\nHold: Look up\nDrag: Highlight\nSwipe downwards: Close"])
        }

        function insideOf(item, outer, tolerance) {
            return item.x >= outer.x - tolerance && item.x + item.width <= outer.x + outer.width + tolerance
                    && item.y >= outer.y - tolerance && item.y + item.height <= outer.y + outer.height + tolerance
        }

        // Every label stands in its zone and apart from the others, and its text fits. A number has its legend.
        function test_labelsOfZones_data() {
            const rows = []
            for (const screen of [{width: 600, height: 800, density: 4}, {width: 600, height: 800, density: 6.6},
                                  {width: 320, height: 480, density: 3.8}, {width: 480, height: 320, density: 3.8},
                                  {width: 1072, height: 1448, density: 11.8}]) {
                for (const mode of ["reading", "selecting", "menu"])
                    rows.push(Object.assign({tag: [mode, screen.width, screen.density].join(" "), mode: mode}, screen))
            }
            return rows
        }
        function test_labelsOfZones(row) {
            Theme.pixelsPerMillimeter = row.density
            readerCase.open("reader", row.width, row.height)
            readerCase.screen.setMode(row.mode)
            keyClick(Qt.Key_Z)
            const zones = readerCase.part("zoneOverlay").zones
            verify(zones.length > 1)
            const legend = readerCase.part("zoneLegend")
            const legendText = readerCase.part("zoneLegendText")
            const others = legend.visible ? [legend] : []
            const numbers = []
            zones.forEach((zone, n) => {
                const label = readerCase.part("zoneLabel-" + n)
                const text = readerCase.part("zoneText-" + n)
                verify(readerCase.insideOf(label, zone.area, 1), text.text)
                const upright = text.rotation !== 0
                verify((upright ? text.height : text.width) <= label.width, text.text)
                verify((upright ? text.width : text.height) <= label.height, text.text)
                for (const other of others)
                    verify(!Zones.overlap(label, other), text.text)
                others.push(label)
                if (text.text.replace(/\n/g, " ") !== zone.gestures.join(" ")) {
                    numbers.push(text.text)
                    const line = text.text + ". " + zone.gestures.join("; ")
                    verify(legendText.text.replace(/\n/g, " ").indexOf(line) >= 0, line)
                }
            })
            compare(numbers, numbers.map((each, n) => String(n + 1)))
            compare(legend.visible, numbers.length > 0)
            verify(!legend.visible || legendText.contentWidth <= legendText.width)
            verify(!legend.visible || legendText.contentHeight <= legendText.height)
            verify(readerCase.insideOf(legend, readerCase.part("zoneOverlay"), 0))
        }

        // Two gestures in a zone that is too small for words, and one in the same place.
        function test_numbersOfZones() {
            const zones = {little: {x: 0.4, y: 0.4, w: 0.05, h: 0.04}, same: {x: 0.4, y: 0.4, w: 0.05, h: 0.041}}
            const gestures = [{kind: "tap", zone: "little", currentAction: "view/search"},
                              {kind: "hold", zone: "same", currentAction: "view/search"},
                              {kind: "swipe", direction: "toLeft", currentAction: "view/search"}]
            TestTree.setConfiguration("reader", JSON.stringify({
                zones: zones, actions: [{path: "view/search", title: "Search"}], gestures: gestures}))
            readerCase.open()
            keyClick(Qt.Key_Z)
            compare(readerCase.part("zoneText-0").text, "1")
            compare(readerCase.part("zoneText-1").text, "2")
            compare(readerCase.part("zoneText-2").text, "Swipe to the left: Search")
            compare(readerCase.part("zoneLegendText").text, "1. Tap: Search\n2. Hold: Search")
            for (const n of [0, 1])
                verify(readerCase.insideOf(readerCase.part("zoneLabel-" + n), readerCase.part("zone-" + n), 4))
        }

        function test_followsAChange() {
            readerCase.open()
            keyClick(Qt.Key_Z)
            mouseClick(readerCase.screen, 540, 400)
            compare(readerCase.status(), "Tap at 0.90, 0.50: Next page (page/next)")
            TestTree.setChoices("reader", '{"actions": {"ReadingTapRightNoDirection": "view/search"}, "version": 1}')
            tryVerify(() => readerCase.zoneTexts().indexOf("Tap: Search") >= 0, root.patience)
            mouseClick(readerCase.screen, 540, 400)
            compare(readerCase.status(),
                    "Tap at 0.90, 0.50: Search (view/search)\nHere the device would search.")
            verify(readerCase.part("pageNumber").text.indexOf("Page 2 of") === 0)
        }

        function test_changeForTheWorseAndBack() {
            const good = '{"actions": {"Thumb": "view/refresh"}, "version": 1}'
            readerCase.open()
            const notice = readerCase.part("notice")
            keyClick(Qt.Key_6)
            TestTree.setChoices("reader", '{"actions": {"Thumb": "no/such"}, "version": 1}')
            tryCompare(notice, "visible", true, root.patience)
            verify(notice.text.indexOf("“reader”") > 0)
            verify(notice.text.indexOf("no/such") > 0)
            compare(readerCase.part("pageText").visible, true)
            verify(readerCase.part("page").word > 0) // the notice takes room, but not the place
            TestTree.setChoices("reader", good)
            tryCompare(notice, "visible", false, root.patience)
            TestTree.setChoices("reader", "{")
            tryVerify(() => notice.text.indexOf("Your choices cannot be read") === 0, root.patience)
            TestTree.setChoices("reader", good)
            tryCompare(notice, "visible", false, root.patience)
            keyClick(Qt.Key_6)
            compare(readerCase.status(), "Tap at 0.83, 0.50: Next page (page/next)")
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
            readerCase.open(row.appId, 320, 480)
            const text = readerCase.part("noticeText")
            compare(text.visible, true)
            compare(text.text.slice(0, row.says.length), row.says)
            verify(text.contentHeight <= text.height)
            verify(text.contentWidth <= text.width)
            for (const shown of ["pageText", "pageNumber"])
                compare(readerCase.part(shown).visible, true, shown)
            compare(readerCase.pageNow(), 1)
            keyClick(Qt.Key_Z)
            compare(readerCase.part("zoneOverlay").zones.length, 0)
        }

        function pageNow() {
            return Number(/^Page (\d+) of/.exec(readerCase.part("pageNumber").text)[1])
        }

        function test_noGestures_data() {
            return [
                {tag: "a problem", appId: "launcher"},
                {tag: "none configured", configuration: '{"gestures": []}'},
            ]
        }
        function test_noGestures(row) {
            if (row.configuration)
                TestTree.setConfiguration("reader", row.configuration)
            readerCase.open(row.appId)
            const steps = [
                [() => mouseClick(readerCase.screen, 410, 700), 2, "Tap at 0.68, 0.88: turns the page, as there are"],
                [() => mouseClick(readerCase.screen, 590, 400), 3, "Tap at 0.98, 0.50: turns the page, as there are"],
                [() => mouseClick(readerCase.screen, 300, 400), 3, "Tap at 0.50, 0.50: nothing, as there are no"],
                [() => mouseClick(readerCase.screen, 190, 400), 2, "Tap at 0.32, 0.50: turns the page, as there are"],
                [() => keyClick(Qt.Key_Right), 3, ""],
                [() => keyClick(Qt.Key_PageDown), 4, ""],
                [() => keyClick(Qt.Key_Left), 3, ""],
                [() => keyClick(Qt.Key_PageUp), 2, ""],
                [() => keyClick(Qt.Key_4), 1, "Tap at 0.17, 0.50: turns the page, as there are"],
                [() => keyClick(Qt.Key_4), 1, "Tap at 0.17, 0.50: turns the page, as there are no gestures\n"
                 + "This is the first page."],
                [() => keyClick(Qt.Key_6, Qt.AltModifier), 1, "Hold at 0.83, 0.50: nothing, as there are no"],
            ]
            for (const [act, page, says] of steps) {
                act()
                compare(readerCase.status().slice(0, says.length), says)
                compare(readerCase.pageNow(), page, says)
            }
        }

        // With gestures the arrows are swipes, and these keys still turn pages.
        function test_pageKeys() {
            readerCase.open()
            keyClick(Qt.Key_PageDown)
            compare(readerCase.pageNow(), 2)
            keyClick(Qt.Key_PageUp)
            compare(readerCase.pageNow(), 1)
            keyClick(Qt.Key_PageUp)
            compare(readerCase.status(), "This is the first page.")
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
            compare(readerCase.part("pageText").visible, true)
            keyClick(Qt.Key_6)
            compare(readerCase.status(), "Tap at 0.83, 0.50: Next page (page/next)")
            keyClick(Qt.Key_6, Qt.AltModifier)
            compare(readerCase.status(), "Hold at 0.83, 0.50: nothing")
        }

        function test_noticeIsDismissed_data() {
            return [{tag: "button"}, {tag: "key"}]
        }
        function test_noticeIsDismissed(row) {
            TestTree.setChoices("reader", "{")
            readerCase.open()
            const notice = readerCase.part("notice")
            compare(notice.visible, true)
            const top = readerCase.part("page").y
            if (row.tag === "key")
                keyClick(Qt.Key_Escape)
            else
                readerCase.press("noticeButton")
            compare(notice.visible, false)
            verify(readerCase.part("page").y < top)
            TestTree.setChoices("reader", '{"actions": {"Thumb": "no/such"}, "version": 1}') // another message
            tryCompare(notice, "visible", true, root.patience)
        }

        function test_program() {
            const component = Qt.createComponent("../../examples/reader/main.qml")
            const program = createTemporaryObject(component, root, {appId: "launcher", visible: false})
            verify(program, component.errorString())
            compare(findChild(program, "noticeText").text, "“launcher” may not have gestures of its own.")
            verify(/^The Narrow Water, page 1 of \d+$/.test(program.title), program.title)
        }

        function focused() {
            const screen = readerCase.screen
            return screen.Window.activeFocusItem
        }

        // [key, the button that has the keyboard then]
        function test_keysOfPanels_data() {
            return [
                {tag: "menu", panel: "menuPanel", path: "view/menu", steps: [
                    [Qt.Key_Left, "chapter/list"], [Qt.Key_Up, "chapter/list"], [Qt.Key_Right, "view/bookmark"],
                    [Qt.Key_Right, "view/bookmark"], [Qt.Key_Down, "text/larger"], [Qt.Key_Left, "text/smaller"],
                    [Qt.Key_Up, "chapter/list"], [Qt.Key_End, "view/close"], [Qt.Key_Down, "view/close"],
                    [Qt.Key_Home, "chapter/list"],
                ]},
                {tag: "menu of a wide screen", width: 800, height: 400, panel: "menuPanel", path: "view/menu", steps: [
                    [Qt.Key_Right, "view/bookmark"], [Qt.Key_Right, "text/smaller"], [Qt.Key_Right, "text/smaller"],
                    [Qt.Key_Down, "light/brighter"],
                ]},
                {tag: "mirrored menu", mirrored: true, panel: "menuPanel", path: "view/menu", steps: [
                    [Qt.Key_Right, "chapter/list"], [Qt.Key_Left, "view/bookmark"], [Qt.Key_Down, "text/larger"],
                ]},
                {tag: "chapters", panel: "chapterList", path: "chapter/list", steps: [
                    [Qt.Key_Up, "0"], [Qt.Key_Down, "1"], [Qt.Key_Right, "1"], [Qt.Key_End, "close"],
                    [Qt.Key_Down, "close"], [Qt.Key_Up, "4"],
                ]},
            ]
        }
        function test_keysOfPanels(row) {
            readerCase.open("reader", row.width, row.height)
            if (row.mirrored) {
                readerCase.part(row.panel).LayoutMirroring.childrenInherit = true
                readerCase.part(row.panel).LayoutMirroring.enabled = true
            }
            readerCase.screen.perform(row.path)
            for (const [key, name] of row.steps) {
                keyClick(key)
                compare(readerCase.focused(), readerCase.part(row.panel + "-" + name))
                compare(findChild(readerCase.focused(), "focusFrame").visible, true)
            }
            keyClick(Qt.Key_Escape)
            compare(readerCase.part(row.panel).visible, false)
            keyClick(Qt.Key_Left) // a swipe again
            compare(readerCase.status(), "Swipe to the left at 0.50, 0.50: Next page (page/next)")
        }

        function test_keysPressButtons_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter},
                    {tag: "Space", key: Qt.Key_Space}]
        }
        function test_keysPressButtons(row) {
            readerCase.open()
            keyClick(Qt.Key_5)
            keyClick(Qt.Key_Right)
            keyClick(row.key)
            compare(readerCase.part("bookmarkMarker").visible, true)
            keyClick(Qt.Key_Home)
            keyClick(row.key)
            compare(readerCase.part("chapterList").visible, true)
            compare(readerCase.focused(), readerCase.part("chapterList-0"))
            keyClick(Qt.Key_Down)
            keyClick(row.key)
            compare(readerCase.part("chapterList").visible, false)
            verify(readerCase.part("pageNumber").text.indexOf("chapter 2 of") > 0)
        }

        // Fingers: 9 mm; and nothing is cut.
        function test_buttonsAreLarge_data() {
            return [{tag: "320 x 480", width: 320, height: 480, density: 3.8},
                    {tag: "480 x 320", width: 480, height: 320, density: 3.8},
                    {tag: "600 x 800", width: 600, height: 800, density: 6.6},
                    {tag: "1072 x 1448", width: 1072, height: 1448, density: 11.8}]
        }
        function test_buttonsAreLarge(row) {
            Theme.pixelsPerMillimeter = row.density
            TestTree.setChoices("reader", "{")
            readerCase.open("reader", row.width, row.height)
            const least = 9 * row.density
            const names = ["modeButton-reading", "modeButton-selecting", "modeButton-menu", "noticeButton"]
            for (const panel of ["menuPanel", "chapterList"])
                readerCase.part(panel).keys.forEach(key => names.push(panel + "-" + key))
            readerCase.screen.perform("view/menu")
            for (const name of names) {
                const button = readerCase.part(name)
                verify(button.width >= least && button.height >= least, name)
                tryVerify(() => !isPolishScheduled(button.parent), root.patience) // its place may not be final yet
                const caption = findChild(button, "caption")
                compare(caption.truncated, false, name)
                verify(name.indexOf("mode") < 0 || caption.lineCount === 1, name)
                const place = button.mapToItem(readerCase.screen, 0, 0)
                verify(place.x >= 0 && place.x + button.width <= row.width, name)
                verify(place.y >= 0 && place.y + button.height <= row.height, name)
            }
        }

        // What a screen reader says.
        function test_accessible() {
            readerCase.open()
            const page = readerCase.part("pageText")
            compare(page.Accessible.name, page.text)
            compare(page.Accessible.role, Accessible.StaticText)
            compare(readerCase.part("statusLine").Accessible.name, readerCase.status())
            compare(readerCase.part("modeButton-menu").Accessible.role, Accessible.Button)
            compare(readerCase.part("modeButton-menu").Accessible.name, "Menu")
            compare(readerCase.part("notice").Accessible.role, Accessible.AlertMessage)
            compare(readerCase.part("menuPanel").Accessible.name, "Menu")
            keyClick(Qt.Key_Z)
            const overlay = readerCase.part("zoneOverlay")
            const right = overlay.zones.findIndex(each => each.gestures[0] === "Tap: Next page")
            compare(readerCase.part("zone-" + right).Accessible.name, "Tap: Next page")
            compare(readerCase.part("zone-" + right).Accessible.description, "on the right")
        }

        function test_overlayWithoutAService() {
            const overlay = createTemporaryObject(zoneOverlays, root, {mode: "reading"})
            compare(overlay.zones.length, 0)
        }
    }
}
