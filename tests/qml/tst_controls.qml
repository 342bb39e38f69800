import QtQml 2.15
import QtQuick 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0
import Vellix.Test 1.0

Item {
    id: container
    width: 700
    height: 700

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays

    Component {
        id: pageComponent
        GestureSettingsPage {
            appId: "reader"
            focus: true
        }
    }

    ListModel {
        id: animals
    }

    Component {
        id: listComponent
        PagedList {
            id: paged
            readonly property var chosen: []
            width: 300
            height: 400
            focus: true
            model: animals
            headingRole: "group"
            keyRole: "animal"
            searchRole: "animal"
            rowHeight: 50

            function note(row) {
                const chosen = paged.chosen
                chosen.push(row)
            }
            onActivated: row => paged.note(row)
            delegate: Text {
                id: label
                required property string animal
                required property int sourceRow
                objectName: label.sourceRow < 0 ? "" : "row-" + label.animal
                text: label.animal
                textFormat: Text.PlainText
                Accessible.role: Accessible.ListItem
                Accessible.name: label.animal
            }
        }
    }

    Component {
        id: buttonComponent
        EinkButton {}
    }

    SignalSpy {
        id: frames
        signalName: "frameSwapped"
    }
    SignalSpy {
        id: clicks
        signalName: "clicked"
    }

    TestCase {
        id: testCase
        name: "Controls"
        when: windowShown

        property real density: 0

        function initTestCase() {
            testCase.density = Theme.pixelsPerMillimeter
        }

        function init() {
            TestTree.reset()
            animals.clear()
            for (const name of ["Ant", "Bear", "Cat", "Dog", "Elk", "Fox",
                                "Goat", "Hare", "Ibis", "Jay", "Kite", "Lynx"])
                animals.append({animal: name, group: name < "G" ? "First" : "Second"})
        }

        function cleanup() {
            Theme.pixelsPerMillimeter = testCase.density
            Theme.mirrored = false
            frames.target = null
            clicks.target = null
        }

        function show(component, properties) {
            const item = createTemporaryObject(component, container, properties || {})
            verify(item)
            waitForRendering(item)
            item.forceActiveFocus()
            return item
        }

        function part(root, name) {
            const item = findChild(root, name)
            verify(item, name)
            return item
        }

        // All items below this one that can be seen.
        function seen(item) {
            if (!item.visible || item.opacity === 0)
                return []
            let all = [item]
            for (let i = 0; i < item.children.length; ++i)
                all = all.concat(testCase.seen(item.children[i]))
            return all
        }

        function isText(item) {
            return "textFormat" in item && "truncated" in item
        }

        function isTouched(item) {
            return "containsMouse" in item && "pressedButtons" in item
        }

        function texts(root) {
            return testCase.seen(root).filter(item => testCase.isText(item) && item.text !== "")
        }

        // Sizes

        function test_sizes_data() {
            return [
                {tag: "600 x 800, 167 ppi", width: 600, height: 800, ppi: 167},
                {tag: "800 x 600, 167 ppi", width: 800, height: 600, ppi: 167},
                {tag: "758 x 1024, 212 ppi", width: 758, height: 1024, ppi: 212},
                {tag: "1072 x 1448, 300 ppi", width: 1072, height: 1448, ppi: 300},
                {tag: "1404 x 1872, 227 ppi", width: 1404, height: 1872, ppi: 227},
                {tag: "320 x 480", width: 320, height: 480, ppi: 96},
                {tag: "480 x 320", width: 480, height: 320, ppi: 96},
            ]
        }
        function test_sizes(row) {
            Theme.pixelsPerMillimeter = row.ppi / 25.4
            const page = show(pageComponent, {width: row.width, height: row.height})
            checkSizes(page, row)
            const list = part(page, "gestureList")
            compare(list.rowHeight > 0 && list.page, 0)
            list.activate(1)
            verify(part(page, "picker").visible)
            waitForRendering(page)
            checkSizes(page, row)
        }
        // As on a phone: the filters wait behind a button.
        function test_smallScreen() {
            Theme.pixelsPerMillimeter = 167 / 25.4
            const page = show(pageComponent, {width: 320, height: 480})
            const list = part(page, "gestureList")
            checkSizes(page, {ppi: 167, isTiny: true})
            verify(list.visible)
            list.activate(0)
            waitForRendering(page)
            checkSizes(page, {ppi: 167, isTiny: true})
            keyClick(Qt.Key_Escape)
            keyClick(Qt.Key_Escape)
            waitForRendering(page)
            mouseClick(part(page, "filters"))
            waitForRendering(page)
            verify(!list.visible)
            checkSizes(page, {ppi: 167, isTiny: true})
            mouseClick(part(page, "kind1"))
            mouseClick(part(page, "filters"))
            compare(part(page, "filters").text, "Filter: Hold")
            waitForRendering(page)
            verify(list.visible)
            for (let i = 0; i < list.count; ++i)
                verify(list.value(i, "sectionTitle").endsWith(": hold"))
            page.forceActiveFocus()
            keyClick(Qt.Key_Home)
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Down)
            verify(part(page, "kind-1").activeFocus)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Down)
            verify(list.activeFocus)
        }

        function checkSizes(page, row) {
            const least = 9 * row.ppi / 25.4
            let touched = 0
            for (const item of seen(page)) {
                if (isTouched(item) && item.width > 0) {
                    touched += 1
                    verify(item.width >= least && item.height >= least,
                           [item.Accessible.name, item.width, item.height, least].join(" "))
                }
                const place = item.mapToItem(page, 0, 0, item.width, item.height)
                verify(place.x >= -0.5 && place.x + place.width <= page.width + 0.5, item + " " + place)
                verify(place.y >= -0.5 && place.y + place.height <= page.height + 0.5, item + " " + place)
            }
            verify(touched >= 5)
            verify(part(page, "gestureList").rowHeight >= least)
            for (const text of texts(page)) {
                verify(text.font.pixelSize >= Theme.noteSize || text.Accessible.ignored, text.text)
                verify(!text.truncated || row.isTiny, text.text)
            }
        }

        function test_letters_data() {
            return [{tag: "96", ppi: 96}, {tag: "167", ppi: 167}, {tag: "212", ppi: 212}, {tag: "300", ppi: 300}]
        }
        function test_letters(row) {
            Theme.pixelsPerMillimeter = row.ppi / 25.4
            verify(Theme.target >= 9 * row.ppi / 25.4)
            const metrics = Qt.createQmlObject("import QtQuick 2.15; FontMetrics {}", testCase)
            metrics.font.family = Theme.fontFamily
            metrics.font.pixelSize = Theme.labelSize
            verify(metrics.xHeight >= 2.5 * row.ppi / 25.4 - 0.5) // Qt rounds it
            verify(Theme.noteSize < Theme.labelSize)
            metrics.destroy()
        }

        // No page of the list cuts a text.
        function test_noTextIsCut() {
            const page = show(pageComponent, {width: 320, height: 480})
            const list = part(page, "gestureList")
            part(page, "withoutChoice").activate()
            for (let i = 0; i < list.pageCount; ++i) {
                list.page = i
                for (const text of texts(page))
                    verify(!text.truncated, text.text)
            }
        }

        function test_longTitleIsWholeInThePicker() {
            const title = "An action with a title that is as long as nobody would ever write it on purpose, "
                          + "and longer still, so that not even three small lines can hold it on a small screen"
            TestTree.setConfiguration("long", JSON.stringify({
                actions: [{path: "a", title: title}, {path: "b", title: "B"}],
                gestures: [{id: "one", kind: "tap", zone: "whole", defaultAction: "a", availableActions: ["a", "b"]}]}))
            const page = show(pageComponent, {width: 320, height: 480, appId: "long"})
            verify(part(page, "actionTitle").truncated)
            part(page, "gestureList").activate(0)
            const now = part(page, "pickerCurrent")
            verify(now.text.includes(title))
            verify(!now.truncated)
        }

        // Markup of a configuration is shown as it is.
        function test_plainText() {
            const title = "<img src='http://localhost/x.png'><b>bold</b>"
            TestTree.setConfiguration("plain", JSON.stringify({
                actions: [{path: "a", titles: [title, title]}, {path: "b", title: "B"}],
                gestures: [{id: "one", kind: "tap", zone: "whole", defaultAction: "a", availableActions: ["a", "b"]}]}))
            const page = show(pageComponent, {width: 600, height: 700, appId: "plain"})
            compare(part(page, "actionTitle").text, title)
            part(page, "gestureList").activate(0)
            for (const text of texts(page))
                compare(text.textFormat, Text.PlainText, text.text)
            verify(texts(page).filter(text => text.text.includes("<img")).length >= 3)
        }

        // Pages

        function rowsShown(list) {
            const names = []
            for (let i = 0; i < animals.count; ++i) {
                const item = findChild(list, "row-" + animals.get(i).animal)
                if (item) {
                    const place = item.mapToItem(list, 0, 0, item.width, item.height)
                    verify(place.y >= 0 && place.y + place.height <= part(list, "rows").height, item.text)
                    names.push(item.text)
                }
            }
            return names
        }

        function test_wholeRows() {
            const list = show(listComponent)
            const all = []
            for (let i = 0; i < list.pageCount; ++i) {
                list.page = i
                compare(part(list, "pageNumber").text, (i + 1) + " / " + list.pageCount)
                all.push(...rowsShown(list))
            }
            verify(list.pageCount > 1)
            compare(all.length, 12)
        }

        function test_heights_data() {
            return [40, 60, 80, 90, 120, 200, 400, 900].map(height => ({tag: String(height), height: height}))
        }
        function test_heights(row) {
            const list = show(listComponent, {height: row.height})
            let pages = 1
            for (const down = part(list, "pageDown"); down.enabled && pages < 20; ++pages) {
                verify(down.visible && down.opacity === 1)
                mouseClick(down)
                waitForRendering(list)
            }
            compare(pages, list.pageCount)
            compare(list.page, list.pageCount - 1)
            for (const up = part(list, "pageUp"); up.enabled && pages > 0; --pages) {
                mouseClick(up)
                waitForRendering(list)
            }
            compare(list.page, 0)
        }

        function test_onePage() {
            const list = show(listComponent, {height: 900})
            const height = part(list, "rows").height
            compare(list.pageCount, 1)
            verify(!part(list, "pageDown").enabled)
            for (let i = 0; i < 12; ++i)
                animals.append({animal: "X" + i, group: "Third"})
            verify(list.pageCount > 1)
            waitForRendering(list)
            compare(part(list, "rows").height, height)
            verify(part(list, "pageDown").enabled)
        }

        function test_turnIsOneFrame() {
            const list = show(listComponent, {height: 250})
            waitForRendering(list)
            wait(100)
            countFrames(list)
            const page = show(pageComponent, {width: 600, height: 700})
            countFrames(part(page, "gestureList"))
        }
        function countFrames(list) {
            frames.target = list.Window.window
            for (let before = -1; before !== frames.count;) { // until it rests
                before = frames.count
                wait(100)
            }
            for (let i = 0; i < 2; ++i) {
                frames.clear()
                verify(list.turn(1))
                wait(300)
                compare(frames.count, 1)
            }
        }

        function test_drag_data() {
            return [
                {tag: "up", from: 250, by: -1, turned: 1, activated: 0},
                {tag: "far up", from: 300, by: -5, turned: 1, activated: 0},
                {tag: "down on the first page", from: 50, by: 1, turned: 0, activated: 0},
                {tag: "hardly", from: 100, by: -0.1, turned: 0, activated: 1},
            ]
        }
        function test_drag(row) {
            const list = show(listComponent)
            const length = Theme.millimeters(6)
            mousePress(list, 100, row.from)
            for (let i = 1; i <= 6; ++i)
                mouseMove(list, 100, row.from + row.by * length * i / 6)
            mouseRelease(list, 100, row.from + row.by * length)
            compare(list.page, row.turned)
            compare(list.chosen.length, row.activated)
            if (row.turned === 0)
                return
            mousePress(list, 100, 50)
            mouseMove(list, 100, 50 + length / 2)
            mouseMove(list, 100, 50 + length)
            mouseRelease(list, 100, 50 + length)
            compare(list.page, 0)
            compare(list.chosen, [])
        }

        function test_wheel() {
            const list = show(listComponent)
            mouseWheel(list, 100, 100, 0, -120)
            compare(list.page, 1)
            mouseWheel(list, 100, 100, 0, 40)
            compare(list.page, 1)
            mouseWheel(list, 100, 100, 0, 80)
            compare(list.page, 0)
        }

        function test_touch() {
            const list = show(listComponent)
            mouseClick(part(list, "row-Cat"))
            compare(list.chosen, [2])
            compare(list.currentRow, 2)
            mouseClick(part(list, "heading"))
            compare(list.chosen, [2])
        }

        function test_keys() {
            const list = show(listComponent)
            compare(list.currentRow, 0)
            keyClick(Qt.Key_Down)
            compare(list.currentRow, 1)
            verify(part(list, "row-Bear").activeFocus)
            keyClick(Qt.Key_PageDown)
            compare(list.page, 1)
            verify(list.currentRow > 1)
            verify(part(list, "row-" + list.value(list.currentRow, "animal")).activeFocus)
            keyClick(Qt.Key_Up)
            compare(list.page, 0)
            keyClick(Qt.Key_End)
            compare(list.currentRow, 11)
            keyClick(Qt.Key_Home)
            compare(list.currentRow, 0)
            keyClick("k")
            compare(list.currentRow, 10)
            keyClick("k")
            compare(list.currentRow, 10)
            keyClick("x")
            compare(list.currentRow, 10)
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Enter)
            keyClick(Qt.Key_Space)
            compare(list.chosen, [10, 10, 10])
        }

        // The arrows go on to what is beside the list.
        function test_keysAtTheEnds() {
            const list = show(listComponent, {height: 900})
            const above = show(buttonComponent)
            const below = show(buttonComponent)
            list.KeyNavigation.up = above
            list.KeyNavigation.down = below
            list.forceActiveFocus()
            keyClick(Qt.Key_Up)
            verify(above.activeFocus)
            list.forceActiveFocus()
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_Down)
            verify(below.activeFocus)
            list.forceActiveFocus()
            list.height = 400
            waitForRendering(list)
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_Down)
            verify(part(list, "pageUp").activeFocus)
            keyClick(Qt.Key_Down)
            verify(below.activeFocus)
        }

        // Not even on a button that its own work has disabled.
        function test_focusStays() {
            const list = show(listComponent)
            const down = part(list, "pageDown")
            down.forceActiveFocus()
            for (let i = 1; i < list.pageCount; ++i) {
                verify(down.activeFocus)
                keyClick(Qt.Key_Return)
            }
            verify(!down.enabled)
            verify(part(list, "rows").activeFocus)
        }

        function test_replacedModel() {
            const list = show(listComponent)
            keyClick("j")
            animals.insert(0, {animal: "Aardvark", group: "First"})
            compare(list.value(list.currentRow, "animal"), "Jay")
            verify(part(list, "row-Jay").activeFocus)
            animals.setProperty(list.currentRow, "animal", "Jackdaw")
            compare(part(list, "row-Jackdaw").text, "Jackdaw")
            animals.clear()
            compare(list.currentRow, -1)
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Down)
            compare(list.chosen, [])
        }

        // Messages

        function test_messageMovesNothing() {
            const page = show(pageComponent, {width: 600, height: 700})
            const places = () => seen(part(page, "gestureListView")).concat([part(page, "save")]).map(item => {
                const place = item.mapToItem(page, 0, 0, item.width, item.height)
                return [place.x, place.y, place.width, place.height].join()
            }).join(" ")
            const before = places()
            const line = part(page, "messageLine")
            for (const text of ["Short.", "Very long. ".repeat(60), ""]) {
                line.text = text
                waitForRendering(page, 200)
                compare(places(), before)
                compare(part(page, "message").visible, text !== "")
            }
        }

        // Buttons

        function test_button() {
            const button = show(buttonComponent, {text: "Go", checkable: true})
            clicks.target = button
            verify(button.width >= Theme.target && button.height >= Theme.target)
            mouseClick(button)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Return)
            compare(clicks.count, 3)
            verify(button.checked)
            compare(button.Accessible.name, "Go")
            verify(button.Accessible.checkable && button.Accessible.checked)
        }

        function test_focusOfAnInvertedButton() {
            const button = show(buttonComponent, {text: "Go", checked: true})
            const frame = part(button, "focusFrame")
            verify(frame.visible)
            verify(button.inverted)
            verify(Qt.colorEqual(frame.border.color, Theme.paper))
            button.checked = false
            verify(Qt.colorEqual(frame.border.color, Theme.ink))
            verify(frame.border.width > Theme.line)
        }

        // Screen readers

        function test_everythingHasAName_data() {
            return [{tag: "list"}, {tag: "picker"}, {tag: "question"}, {tag: "problem"}]
        }
        function test_everythingHasAName(row) {
            const page = show(pageComponent, {width: 600, height: 700,
                                              appId: row.tag === "problem" ? "nobody" : "reader"})
            if (row.tag !== "problem")
                part(page, "gestureList").activate(1)
            if (row.tag === "list")
                page.closeGesture()
            page.editor.choose("ReadingTapRightNoDirection", "page/previous")
            if (row.tag === "question")
                verify(!page.leave())
            let named = 0
            for (const item of seen(page)) {
                if (item.activeFocusOnTab || isTouched(item) || (isText(item) && item.text !== "" && !isInside(item))) {
                    verify(item.Accessible.name !== "", item + " " + item.objectName)
                    named += 1
                }
            }
            verify(named >= 3)
        }

        // What the item around it says in one sentence.
        function isInside(item) {
            return item.Accessible.ignored
        }

        function test_rowsSayEverything() {
            const page = show(pageComponent, {width: 600, height: 700})
            page.editor.choose("ReadingTapLeftNoDirection", "view/menu")
            const row = part(page, "gesture-ReadingTapLeftNoDirection")
            compare(row.Accessible.role, Accessible.ListItem)
            compare(row.Accessible.name, "Tap, on the left: Menu")
            compare(row.Accessible.description, "Not saved; by default: Previous page")
        }

        // From right to left

        function test_mirrored() {
            const page = show(pageComponent, {width: 600, height: 700})
            const centre = name => {
                const item = part(page, name)
                return Math.round(item.mapToItem(page, item.width / 2, 0).x)
            }
            const names = ["save", "revert", "defaults", "kind-1", "kind0", "pageUp", "pageDown"]
            const before = names.map(centre)
            Theme.mirrored = true
            waitForRendering(page)
            const after = names.map(centre)
            for (let i = 0; i < names.length; ++i)
                fuzzyCompare(after[i], 600 - before[i], 2, names[i])
            compare(part(page, "title").effectiveHorizontalAlignment, Text.AlignRight)
            const row = part(page, "gesture-ReadingTapLeftNoDirection")
            const zone = part(row, "zone")
            verify(zone.mapToItem(row, 0, 0).x > 300) // the picture is on the right
            verify(zone.x < zone.parent.width / 2) // and shows the left of the screen
            page.forceActiveFocus()
            part(page, "gestureList").activate(1)
            keyClick(Qt.Key_Right)
            compare(part(page, "pickerTrail").visible, false)
            keyClick(Qt.Key_Right)
            verify(!part(page, "picker").visible)
        }
    }
}
