import QtQuick 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0
import Vellix.Test 1.0

Item {
    id: container
    width: 600
    height: 800

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays

    Component {
        id: pageComponent
        GestureSettingsPage {
            width: 600
            height: 800
            focus: true
        }
    }

    SignalSpy {
        id: leftSpy
        signalName: "left"
    }

    // A collection at the worst moment: after a change, while old rows are still on the screen.
    Component {
        id: collectorComponent
        Connections {
            property int times: 0
            function onChanged() {
                times += 1
                gc()
            }
        }
    }

    TestCase {
        id: testCase
        name: "Settings"
        when: windowShown

        readonly property string tapRight: "ReadingTapRightNoDirection"
        readonly property string tapLeft: "ReadingTapLeftNoDirection"
        readonly property string tapCenter: "ReadingTapCenterNoDirection"
        readonly property string foreignNews: "Another program has changed the choices."
        readonly property string foreignNewsBelow:
            "Another program has changed the choices. Your unsaved choices are kept."

        function init() {
            TestTree.reset()
            leftSpy.target = null
            leftSpy.clear()
        }

        function show(appId) {
            const page = createTemporaryObject(pageComponent, container,
                                               {appId: appId === undefined ? "reader" : appId})
            verify(page)
            waitForRendering(page)
            page.forceActiveFocus()
            return page
        }

        function part(page, name) {
            const item = findChild(page, name)
            verify(item, name)
            return item
        }

        // Layouts are made with the next frame.
        function click(page, name) {
            tryVerify(() => {
                const item = findChild(page, name)
                return item !== null && item.visible && item.width > 0 && item.height > 0
            }, container.patience, name)
            mouseClick(part(page, name))
        }

        function compareMessage(page, text) {
            const item = part(page, "message")
            compare(item.text, text)
            compare(item.visible, text !== "")
        }

        // Happens by itself, without another event from us.
        function waitForMessage(page, text) {
            tryCompare(part(page, "message"), "text", text, container.patience)
        }

        function waitForProblem(page, isShown) {
            tryCompare(part(page, "problem"), "visible", isShown, container.patience)
        }

        function list(page) {
            return part(page, "gestureList")
        }

        function actionList(page) {
            return part(page, "actionList")
        }

        function rowOf(list, role, value) {
            for (let row = 0; row < list.count; ++row) {
                if (list.value(row, role) === value)
                    return row
            }
            return -1
        }

        function gestureIds(page) {
            const ids = []
            for (let row = 0; row < list(page).count; ++row)
                ids.push(list(page).value(row, "gestureId"))
            return ids
        }

        // The headings and gestures of all pages, top to bottom.
        function listed(page) {
            const rows = []
            let heading = ""
            for (let row = 0; row < list(page).count; ++row) {
                const own = list(page).value(row, "sectionTitle")
                if (own !== heading)
                    rows.push(own)
                heading = own
                rows.push(list(page).value(row, "gestureId"))
            }
            return rows
        }

        // Turns to its page.
        function gestureRow(page, id) {
            const row = rowOf(list(page), "gestureId", id)
            verify(row >= 0, id)
            list(page).currentRow = row
            const item = part(list(page), "gesture-" + id)
            tryVerify(() => item.height > 0, container.patience)
            return item
        }

        function actionTitle(page, id) {
            return part(gestureRow(page, id), "actionTitle").text
        }

        // Empty while the gesture has its default.
        function mark(page, id) {
            const item = part(gestureRow(page, id), "mark")
            return item.visible ? item.text : ""
        }

        function isOpen(page) {
            return part(page, "picker").visible
        }

        // The gesture, and the open menus.
        function heading(page) {
            const trail = part(page, "pickerTrail")
            return [part(page, "pickerHeading").text].concat(trail.visible ? [trail.text] : []).join(" \u203a ")
        }

        function offered(page) {
            const titles = []
            for (let row = 0; row < actionList(page).count; ++row)
                titles.push(actionList(page).value(row, "entryTitle"))
            return titles
        }

        function openMenu(page, id) {
            mouseClick(gestureRow(page, id))
            verify(isOpen(page), id)
        }

        // By the title of an entry.
        function clickAction(page, title) {
            const row = rowOf(actionList(page), "entryTitle", title)
            verify(row >= 0, title + " in " + offered(page).join(", "))
            actionList(page).currentRow = row
            const name = "action-" + (actionList(page).value(row, "entryPath") || title)
            tryVerify(() => part(actionList(page), name).height > 0, container.patience)
            mouseClick(part(actionList(page), name))
        }

        function choose(page, id, titles) {
            openMenu(page, id)
            while (part(page, "pickerTrail").visible)
                click(page, "back")
            titles.forEach(title => clickAction(page, title))
            verify(!isOpen(page))
        }

        function compareEdited(page, edited) {
            compare(page.edited, edited)
            compare(part(page, "save").enabled, edited)
            compare(part(page, "revert").enabled, edited)
        }

        function answer(page, number) {
            verify(part(page, "question").visible)
            waitForRendering(page)
            click(part(page, "question"), "answer" + number)
        }

        function choicesText(actions) {
            return JSON.stringify({version: 1, actions: actions})
        }

        function savedActions(appId) {
            return JSON.parse(TestTree.choices(appId || "reader")).actions
        }

        // An application "menus" of one gesture.
        function showMenus(actions, current) {
            TestTree.setConfiguration("menus", JSON.stringify({
                actions: actions,
                gestures: [{id: "only", kind: "tap", zone: "whole", defaultAction: current,
                            availableActions: actions.map(action => action.path)}]}))
            return show("menus")
        }

        // The language of the machine joins the names of the modes.
        function menuTitle(page) {
            return Gestures.sectionTitle(page.editor.gesture("MenuSelectingSwipeNotSetToBottom"))
        }

        // The rows

        function test_sections() {
            const page = show()
            compare(part(page, "title").text, "Gestures of \u201creader\u201d")
            verify(!part(page, "problem").visible)
            compareMessage(page, "")
            const rows = listed(page).filter(row => row !== "BrighterSwipe" && row !== "DarkerSwipe")
            compare(rows, [
                "Reading: tap", "ReadingTapCornerNoDirection", tapLeft, tapRight, tapCenter,
                "ReadingTapFooterNoDirection",
                "Reading: hold", "ReadingAloud", "ReadingHoldCenterNoDirection",
                "Reading: swipe", "ReadingSwipeNotSetToLeft", "ReadingSwipeNotSetToRight", "ReadingSwipeNotSetToTop",
                "ReadingSwipeNotSetToBottom",
                "Reading: drag", "Scrubbing", "ScrubbingBack",
                "Selecting: tap", "SelectingTapWholeNoDirection",
                "Selecting: hold", "SelectingHoldWholeNoDirection",
                "Selecting: drag", "SelectingDragWholeNoDirection",
                menuTitle(page), "MenuSelectingSwipeNotSetToBottom",
                "Everywhere: hold", "Thumb"])
            compare(part(list(page), "heading").text, "Reading: tap")
            compare(TestTree.userFiles(), [])
        }

        function test_row() {
            const page = show()
            const row = gestureRow(page, tapRight)
            compare(row.Accessible.name, "Tap, on the right: Next page")
            compare(actionTitle(page, tapRight), "Next page")
            compare(mark(page, tapRight), "")
            compare(actionTitle(page, "Thumb"), "Menu")
        }

        function test_rowOfAnActionWithoutATitle() {
            const page = showMenus([{path: "some/where", titles: []}], "some/where")
            compare(actionTitle(page, "only"), "some/where")
            openMenu(page, "only")
            verify(offered(page).length === 1)
        }

        function test_marks() {
            const page = show()
            const sign = id => {
                const item = part(gestureRow(page, id), "sign")
                return [item.visible, item.filled, item.conflicting].join()
            }
            compare(mark(page, tapRight), "")
            choose(page, tapRight, ["Chapter", "List of chapters"])
            compare(actionTitle(page, tapRight), "List of chapters")
            compare(mark(page, tapRight), "Not saved; by default: Next page")
            compare(sign(tapRight), "true,false,false")
            compare(mark(page, tapLeft), "")
            click(page, "save")
            compare(mark(page, tapRight), "Your choice; by default: Next page")
            compare(sign(tapRight), "true,true,false")
            choose(page, tapRight, ["Page", "Previous page"])
            TestTree.setChoices("reader", choicesText({[tapRight]: "view/menu"}))
            waitForMessage(page, foreignNewsBelow)
            compare(mark(page, tapRight), "Not saved; another program has saved another choice.")
            compare(sign(tapRight), "true,true,true")
            page.destroy()
            const again = show()
            compare(actionTitle(again, tapRight), "Menu")
            compare(mark(again, tapRight), "Your choice; by default: Next page")
        }

        function test_resetOfOneGesture() {
            TestTree.setChoices("reader", choicesText({[tapRight]: "view/menu", [tapLeft]: "view/menu"}))
            const page = show()
            openMenu(page, tapCenter)
            verify(!part(page, "useDefault").enabled)
            click(page, "back")
            click(page, "back")
            verify(!isOpen(page))
            openMenu(page, tapRight)
            compare(part(page, "useDefault").text, "Use the default: Next page")
            click(page, "useDefault")
            verify(!isOpen(page))
            compare(actionTitle(page, tapRight), "Next page")
            compare(mark(page, tapRight), "Not saved; the default again.")
            click(page, "save")
            compare(savedActions(), {[tapLeft]: "view/menu"})
        }

        function test_kinds_data() {
            return [
                {tag: "Tap", kind: Gesture.Tap, headings: ["Reading: tap", "Selecting: tap"]},
                {tag: "Hold", kind: Gesture.Hold, headings: ["Reading: hold", "Selecting: hold", "Everywhere: hold"]},
                {tag: "Swipe", kind: Gesture.Swipe, headings: ["Reading: swipe", "menu"]},
                {tag: "Drag", kind: Gesture.Drag, headings: ["Reading: drag", "Selecting: drag"]},
            ]
        }
        function test_kinds(data) {
            const page = show()
            const all = listed(page)
            verify(part(page, "kind-1").checked)
            compare(part(page, "kind" + data.kind).text, data.tag)
            click(page, "kind" + data.kind)
            compare(listed(page).filter(row => row.includes(": ")),
                    data.headings.map(heading => heading === "menu" ? menuTitle(page) : heading))
            verify(part(page, "kind" + data.kind).checked)
            verify(!part(page, "kind-1").checked)
            verify(gestureRow(page, listed(page)[1]).visible)
            click(page, "kind-1")
            compare(listed(page), all)
        }

        function test_kindsThatThereAreNot() {
            const page = show("notes")
            verify(!part(page, "kind" + Gesture.Tap).enabled)
            verify(part(page, "kind" + Gesture.Hold).enabled)
            verify(part(page, "kind" + Gesture.Swipe).enabled)
            verify(!part(page, "kind" + Gesture.Drag).enabled)
        }

        function test_withoutAChoice_data() {
            return [{tag: "mouse"}, {tag: "keyboard"}]
        }
        function test_withoutAChoice(data) {
            const page = show()
            const fixed = ["ReadingHoldLeftBottomNoDirection", "MenuTapWholeNoDirection"]
            const toggle = () => {
                if (data.tag === "mouse") {
                    click(page, "withoutChoice")
                } else {
                    part(page, "withoutChoice").forceActiveFocus()
                    keyClick(Qt.Key_Return)
                }
            }
            fixed.forEach(id => verify(!listed(page).includes(id)))
            toggle()
            fixed.forEach(id => verify(listed(page).includes(id)))
            compare(actionTitle(page, fixed[1]), "Close")
            compare(gestureRow(page, fixed[1]).Accessible.description, "This gesture cannot be changed.")
            mouseClick(gestureRow(page, fixed[1]))
            verify(!isOpen(page))
            keyClick(Qt.Key_Return)
            verify(!isOpen(page))
            toggle()
            fixed.forEach(id => verify(!listed(page).includes(id)))
        }

        function test_changedOnly() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "changedOnly")
            compare(gestureIds(page), [tapRight])
            click(page, "revert")
            compare(gestureIds(page), [])
            verify(part(page, "nothing").visible)
            click(page, "changedOnly")
            verify(gestureIds(page).length > 10)
            verify(!part(page, "nothing").visible)
        }

        // On every machine: a gesture is shown if the device has all its features.
        function test_gesturesThatTheDeviceCannotDo() {
            const features = ["frontlight", "smartlight", "tts"]
            TestTree.setConfiguration("device", JSON.stringify({
                actions: [{path: "a", title: "A"}],
                gestures: [["plain"]].concat(features.map(name => [name, name])).map(
                    entry => ({id: entry[0], kind: "tap", zone: "whole", defaultAction: "a", availableActions: ["a"],
                               features: entry.slice(1)}))}))
            const page = show("device")
            const shown = gestureIds(page)
            compare(page.editor.model.count, 4)
            for (const id of ["plain"].concat(features))
                compare(shown.includes(id), page.editor.gesture(id).supported, id)
            click(page, "withoutChoice")
            compare(gestureIds(page), shown)
        }

        function test_nothingToShow() {
            TestTree.setConfiguration("empty", '{"gestures": []}')
            const page = show("empty")
            verify(!part(page, "problem").visible)
            verify(part(page, "nothing").visible)
            compare(listed(page), [])
            compareEdited(page, false)
        }

        // Every gesture is on one of the pages.
        function test_pages() {
            const page = show()
            const gestures = list(page)
            const up = part(gestures, "pageUp")
            const down = part(gestures, "pageDown")
            verify(!up.enabled)
            const seen = []
            let pages = 0
            for (let more = true; more && pages < 40; ++pages) {
                compare(part(gestures, "pageNumber").text, (pages + 1) + " / " + gestures.pageCount)
                gestureIds(page).filter(id => findChild(gestures, "gesture-" + id)).forEach(id => seen.push(id))
                more = down.enabled
                if (more)
                    mouseClick(down)
            }
            compare(pages, gestures.pageCount)
            verify(pages > 1)
            compare(seen, gestureIds(page))
            for (; up.enabled && pages > 0; --pages)
                mouseClick(up)
            compare(gestures.page, 0)
        }

        // The place in the list survives a choice, a save, an undo and a message.
        function test_place() {
            const page = show()
            gestureRow(page, "ScrubbingBack")
            const place = () => [list(page).page, part(list(page), "gesture-ScrubbingBack").mapToItem(page, 0, 0).y,
                                 list(page).currentRow].join()
            const before = place()
            verify(list(page).page > 0)
            choose(page, "ScrubbingBack", ["Chapter", "Previous chapter"])
            compare(place(), before)
            click(page, "save")
            compareMessage(page, "Saved.")
            compare(place(), before)
            choose(page, "ScrubbingBack", ["Page", "Ten pages back"])
            click(page, "revert")
            compare(place(), before)
            TestTree.setChoices("reader", choicesText({}))
            waitForMessage(page, foreignNews)
            compare(place(), before)
        }

        function test_manyGestures() {
            const gestures = []
            for (let i = 0; i < 318; ++i)
                gestures.push({id: "g" + i, kind: "tap", modes: ["m" + i], zone: "whole", defaultAction: "a",
                               availableActions: ["a", "b"]})
            TestTree.setConfiguration("many", JSON.stringify({
                modes: gestures.map(entry => entry.modes[0]),
                actions: [{path: "a", title: "A"}, {path: "b", title: "B"}], gestures: gestures}))
            const page = show("many")
            compare(page.editor.problem, "")
            compare(list(page).count, 318)
            keyClick(Qt.Key_End)
            compare(list(page).currentRow, 317)
            compare(list(page).page, list(page).pageCount - 1)
            keyClick(Qt.Key_Return)
            clickAction(page, "B")
            compare(actionTitle(page, "g317"), "B")
            click(page, "save")
            compare(savedActions("many"), {g317: "b"})
        }

        // The menu

        function test_menuAtTheBranch() {
            const page = show()
            openMenu(page, tapRight)
            compare(heading(page), "Tap, on the right \u203a Page")
            compare(part(page, "pickerCurrent").text, "Now: Page \u203a Next page")
            compare(offered(page), ["Next page", "Previous page", "Ten pages on", "Ten pages back"])
            click(page, "back")
            compare(heading(page), "Tap, on the right")
            const titles = offered(page).filter(title => title !== "Light" && title !== "Speech")
            compare(titles, ["Page", "Chapter", "Text", "View"])
            clickAction(page, "Chapter")
            compare(heading(page), "Tap, on the right \u203a Chapter")
            compare(offered(page), ["Next chapter", "Previous chapter", "List of chapters"])
            click(page, "back")
            click(page, "back")
            verify(!isOpen(page))
            compareEdited(page, false)
            compare(TestTree.userFiles(), [])
        }

        function test_menuOfManyLevels() {
            const page = showMenus([{path: "a/b/c/d", titles: ["A", "B", "C", "D"]},
                                    {path: "a/b/x", titles: ["A", "B", "X"]},
                                    {path: "z", title: "Z"}], "a/b/x")
            openMenu(page, "only")
            compare(heading(page), "Tap anywhere \u203a A \u203a B")
            compare(offered(page), ["C", "X"])
            clickAction(page, "C")
            compare(heading(page), "Tap anywhere \u203a A \u203a B \u203a C")
            clickAction(page, "D")
            compare(actionTitle(page, "only"), "D")
            openMenu(page, "only")
            compare(heading(page), "Tap anywhere \u203a A \u203a B \u203a C")
            for (let i = 0; i < 3; ++i)
                click(page, "back")
            compare(offered(page), ["A", "Z"])
            clickAction(page, "Z")
            compare(actionTitle(page, "only"), "Z")
        }

        // An action that is also a menu of others, in either order.
        function test_actionAboveOthers_data() {
            const menu = {path: "page", title: "Turn"}
            const inner = {path: "page/next", titles: ["Turn", "Next page"]}
            const other = {path: "close", title: "Close"}
            return [
                {tag: "before them", actions: [menu, inner, other]},
                {tag: "after them", actions: [inner, other, menu]},
            ]
        }
        function test_actionAboveOthers(data) {
            const page = showMenus(data.actions, "close")
            openMenu(page, "only")
            compare(offered(page).sort(), ["Close", "Turn"])
            clickAction(page, "Turn")
            compare(offered(page), ["Turn", "Next page"])
            clickAction(page, "Turn")
            compare(actionTitle(page, "only"), "Turn")
            compareEdited(page, true)
            // It is current again where it was chosen.
            openMenu(page, "only")
            compare(heading(page), "Tap anywhere \u203a Turn")
            clickAction(page, "Next page")
            compare(actionTitle(page, "only"), "Next page")
            choose(page, "only", ["Close"])
            compareEdited(page, false)
            choose(page, "only", ["Turn", "Turn"])
            click(page, "save")
            compareMessage(page, "Saved.")
            compare(savedActions("menus"), {only: "page"})
        }

        function test_fewerTitlesThanSegments() {
            const page = showMenus([{path: "far/away/there", titles: ["Far"]}, {path: "far/near", titles: ["Far"]}],
                                   "far/near")
            openMenu(page, "only")
            compare(heading(page), "Tap anywhere \u203a Far")
            compare(offered(page).length, 2)
            clickAction(page, "away")
            compare(heading(page), "Tap anywhere \u203a Far \u203a away")
            compare(offered(page).length, 1)
        }

        // Save, undo and defaults

        function test_save() {
            const page = show()
            compareEdited(page, false)
            verify(!part(page, "defaults").enabled)
            choose(page, tapRight, ["Page", "Previous page"])
            compareEdited(page, true)
            verify(part(page, "defaults").enabled)
            compareMessage(page, "")
            compare(TestTree.userFiles(), [])
            click(page, "save")
            compareMessage(page, "Saved.")
            compareEdited(page, false)
            compare(TestTree.userFiles(), ["gestures/apps/current/reader/cfg.json"])
            compare(savedActions(), {[tapRight]: "page/previous"})
            // It is not reported as another program's.
            wait(300)
            compareMessage(page, "Saved.")
            compare(actionTitle(page, tapRight), "Previous page")
            verify(part(page, "defaults").enabled)
            choose(page, tapRight, ["Page", "Next page"])
            compareMessage(page, "")
            compareEdited(page, true)
            click(page, "save")
            wait(300)
            compareMessage(page, "Saved.")
            compare(actionTitle(page, tapRight), "Next page")
        }

        function test_twoEditsAndTheOldAction() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            choose(page, tapLeft, ["View", "Menu"])
            choose(page, tapRight, ["Page", "Next page"])
            compareEdited(page, true)
            choose(page, tapLeft, ["Page", "Previous page"])
            compareEdited(page, false)
            verify(!part(page, "defaults").enabled)
            compare(TestTree.userFiles(), [])
        }

        function test_undo() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "save")
            const bytes = TestTree.choices("reader")
            choose(page, tapRight, ["Page", "Ten pages on"])
            choose(page, tapLeft, ["View", "Menu"])
            click(page, "revert")
            compareEdited(page, false)
            compare(actionTitle(page, tapRight), "Previous page")
            compare(actionTitle(page, tapLeft), "Previous page")
            wait(100)
            compare(TestTree.choices("reader"), bytes)
        }

        function test_defaults() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "save")
            choose(page, tapLeft, ["View", "Menu"])
            const bytes = TestTree.choices("reader")
            const question = part(page, "question")
            verify(!question.visible)
            click(page, "defaults")
            verify(question.visible)
            const row = part(list(page), "gesture-" + tapLeft)
            mouseClick(page, row.mapToItem(page, 0, 0).x + 100, row.mapToItem(page, 0, 0).y + 20) // does not react
            verify(!isOpen(page))
            answer(page, 1)
            verify(!question.visible)
            compare(actionTitle(page, tapRight), "Previous page")
            compare(actionTitle(page, tapLeft), "Menu")
            compareEdited(page, true)
            click(page, "defaults")
            answer(page, 0)
            verify(!question.visible)
            compare(actionTitle(page, tapRight), "Next page")
            compare(actionTitle(page, tapLeft), "Previous page")
            compare(TestTree.choices("reader"), bytes)
            compareEdited(page, true)
            verify(!part(page, "defaults").enabled)
            click(page, "save")
            compareMessage(page, "Saved.")
            compareEdited(page, false)
            verify(!part(page, "defaults").enabled)
            page.destroy()
            compare(actionTitle(show(), tapRight), "Next page")
        }

        function test_defaultsWithoutAFile() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "defaults")
            answer(page, 0)
            compare(actionTitle(page, tapRight), "Next page")
            compareEdited(page, false)
            compare(TestTree.userFiles(), [])
        }

        function test_leftInTheMiddle() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "save")
            page.destroy()
            wait(100)
            const other = show()
            choose(other, tapRight, ["Page", "Next page"])
            openMenu(other, tapLeft)
            other.destroy()
            wait(100)
            compare(savedActions()[tapRight], "page/previous")
        }

        function test_leave_data() {
            return [
                {tag: "save", answer: 0, edited: false, left: 1, saved: true},
                {tag: "discard", answer: 1, edited: false, left: 1, saved: false},
                {tag: "stay", answer: 2, edited: true, left: 0, saved: false},
            ]
        }
        function test_leave(data) {
            const page = show()
            leftSpy.target = page
            verify(page.leave())
            choose(page, tapRight, ["Page", "Previous page"])
            verify(!page.leave())
            compare(leftSpy.count, 0)
            answer(page, data.answer)
            compare(leftSpy.count, data.left)
            compareEdited(page, data.edited)
            compare(TestTree.userFiles().length, data.saved ? 1 : 0)
            compare(page.leave(), !data.edited)
        }

        function test_leaveWithoutARoomToSave() {
            TestTree.setChoices("reader/cfg.json", "in the way")
            const page = show()
            leftSpy.target = page
            choose(page, tapRight, ["Page", "Previous page"])
            verify(!page.leave())
            answer(page, 0)
            compare(leftSpy.count, 0)
            compareEdited(page, true)
            verify(/^The choices were not saved/.test(part(page, "message").text))
        }

        // The example program.
        function test_windowAsksBeforeItCloses() {
            const component = Qt.createComponent("../../examples/settings/main.qml")
            compare(component.status, Component.Ready, component.errorString())
            const window = createTemporaryObject(component, null, {appId: "reader"})
            const page = window.contentItem.children[0]
            verify(part(page, "gestureList").count > 0)
            page.editor.choose(tapRight, "page/previous")
            window.close()
            verify(window.visible)
            const question = part(page, "question")
            verify(question.visible)
            question.answer(1)
            tryCompare(window, "visible", false, container.patience)
            compare(TestTree.userFiles(), [])
        }

        // A gesture whose action the configuration fixes.
        function test_choiceThatTheConfigurationOverrules() {
            TestTree.setConfiguration("fixed", JSON.stringify({
                actions: [{path: "a", title: "A"}, {path: "b", title: "B"}],
                gestures: [{id: "one", kind: "tap", zone: "whole", currentAction: "a", availableActions: ["a", "b"]},
                           {id: "two", kind: "hold", zone: "whole", defaultAction: "a", availableActions: ["a", "b"]}]
            }))
            const page = show("fixed")
            openMenu(page, "one")
            clickAction(page, "B")
            verify(isOpen(page)) // for another choice
            verify(part(page, "message").text.includes("The configuration itself decides"))
            click(page, "back")
            compare(actionTitle(page, "one"), "A")
            compareEdited(page, false)
            choose(page, "two", ["B"])
            compareMessage(page, "")
            click(page, "save")
            compare(savedActions("fixed"), {two: "b"})
        }

        // Other programs

        function test_change() {
            const page = show()
            TestTree.setChoices("reader", choicesText({[tapRight]: "chapter/list"}))
            waitForMessage(page, foreignNews)
            compare(actionTitle(page, tapRight), "List of chapters")
            compare(mark(page, tapRight), "Your choice; by default: Next page")
            compareEdited(page, false)
            verify(part(page, "defaults").enabled)
            TestTree.reset()
            tryVerify(() => !page.editor.hasChoices, container.patience)
            compareMessage(page, foreignNews)
            compare(actionTitle(page, tapRight), "Next page")
            verify(!part(page, "defaults").enabled)
        }

        function test_changeBelowEdits() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            choose(page, tapCenter, ["View", "Search"])
            TestTree.setChoices("reader", choicesText({[tapRight]: "chapter/list", [tapLeft]: "view/menu"}))
            waitForMessage(page, foreignNewsBelow)
            compare(actionTitle(page, tapRight), "Previous page")
            compare(actionTitle(page, tapLeft), "Menu")
            compare(actionTitle(page, tapCenter), "Search")
            compareEdited(page, true)
            choose(page, tapRight, ["Page", "Ten pages on"])
            click(page, "save")
            wait(300)
            compareMessage(page, "Saved.")
            compare(savedActions(), {[tapRight]: "page/forward", [tapLeft]: "view/menu", [tapCenter]: "view/search"})
        }

        // The user stays where they are, also in a menu that is not the one of the action.
        function test_changeInTheMenu() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            openMenu(page, tapLeft)
            click(page, "back")
            clickAction(page, "Chapter")
            keyClick(Qt.Key_Down)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForMessage(page, foreignNewsBelow)
            gc()
            wait(50)
            verify(isOpen(page))
            compare(heading(page), "Tap, on the left \u203a Chapter")
            compare(actionList(page).currentRow, 1)
            compare(part(page, "pickerCurrent").text, "Now: View \u203a Menu")
            clickAction(page, "List of chapters")
            compare(actionTitle(page, tapLeft), "List of chapters")
        }

        function test_changeThatRemovesTheOpenGesture() {
            const page = show()
            openMenu(page, tapLeft)
            changedConfiguration(document => {
                document.gestures = document.gestures.filter(entry => entry.zone !== "left")
            })
            waitForMessage(page, "The gestures of the application have changed.")
            verify(!isOpen(page))
            verify(!gestureIds(page).includes(tapLeft))
            verify(list(page).activeFocus)
        }

        // The change is made, its event has not arrived.
        function test_changeThatASaveMeets() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            click(page, "save")
            compare(savedActions(), {[tapLeft]: "view/menu", [tapRight]: "page/previous"})
            verify(part(page, "message").text.startsWith("Saved."))
            compareEdited(page, false)
            compare(actionTitle(page, tapLeft), "Menu")
        }

        function test_changeThatASaveDoesNotUnderstand() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            const theirs = choicesText({[tapLeft]: "no/such"})
            TestTree.setChoices("reader", theirs)
            click(page, "save")
            waitForProblem(page, true)
            compare(TestTree.choices("reader"), theirs)
            // No gestures to save, and nothing lost: the edit returns once the file is valid again.
            verify(!part(page, "save").enabled)
            verify(!part(page, "revert").enabled)
            gc()
            wait(0)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForProblem(page, false)
            compare(actionTitle(page, tapRight), "Previous page")
            compare(actionTitle(page, tapLeft), "Menu")
            compareEdited(page, true)
        }

        function test_changeWhileTheQuestionIsAsked() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "defaults")
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForMessage(page, foreignNewsBelow)
            verify(part(page, "answer1").activeFocus)
            keyClick(Qt.Key_Return)
            verify(!part(page, "question").visible)
            compareEdited(page, true)
        }

        // The keyboard

        function test_keyboard() {
            const page = show()
            verify(list(page).activeFocus)
            const current = () => list(page).value(list(page).currentRow, "gestureId")
            compare(current(), "ReadingTapCornerNoDirection")
            keyClick(Qt.Key_Down)
            compare(current(), tapLeft)
            for (let i = 0; i < 4; ++i)
                keyClick(Qt.Key_Down)
            compare(current(), "ReadingAloud")
            for (let i = 0; i < 4; ++i)
                keyClick(Qt.Key_Up)
            compare(current(), tapLeft)
            keyClick(Qt.Key_Return)
            compare(heading(page), "Tap, on the left \u203a Page")
            verify(actionList(page).activeFocus)
            compare(actionList(page).currentRow, 1) // the action that it has
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Left)
            compare(heading(page), "Tap, on the left")
            verify(actionList(page).activeFocus)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Right)
            compare(heading(page), "Tap, on the left \u203a Chapter")
            keyClick(Qt.Key_Back)
            keyClick(Qt.Key_Escape)
            verify(!isOpen(page))
            verify(list(page).activeFocus)
            compare(current(), tapLeft)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Enter)
            verify(!isOpen(page))
            compare(actionTitle(page, tapLeft), "Next page")
            verify(list(page).activeFocus)
            compare(current(), tapLeft)
        }

        function focused(page) {
            return ["save", "revert", "defaults", "pageUp", "pageDown", "back", "useDefault"].find(name => {
                const item = findChild(part(page, isOpen(page) ? "picker" : "gestureListView"), name)
                             || findChild(page, name)
                return item && item.activeFocus
            }) || (list(page).activeFocus || actionList(page).activeFocus ? "list" : "")
        }

        function tabTo(page, name, key) {
            for (let i = 0; i < 12 && focused(page) !== name; ++i)
                keyClick(key || Qt.Key_Tab)
            compare(focused(page), name)
        }

        function test_tab() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            verify(list(page).activeFocus) // the keys go on from the mouse's place
            compare(list(page).value(list(page).currentRow, "gestureId"), tapRight)
            for (const name of ["pageDown", "save", "revert", "defaults"])
                tabTo(page, name)
            keyClick(Qt.Key_Return)
            verify(part(page, "question").visible)
            // Only the question is active.
            for (let i = 0; i < 4; ++i) {
                verify(part(page, "answer0").activeFocus || part(page, "answer1").activeFocus)
                keyClick(Qt.Key_Tab)
            }
            keyClick(Qt.Key_Up)
            verify(part(page, "answer0").activeFocus)
            keyClick(Qt.Key_Escape)
            verify(!part(page, "question").visible)
            compareEdited(page, true)
            compare(focused(page), "list")
            tabTo(page, "save")
            keyClick(Qt.Key_Space)
            compareMessage(page, "Saved.")
            // The button is disabled now; the keys go on in the list.
            compare(focused(page), "list")
            keyClick(Qt.Key_Backtab)
            verify(focused(page) !== "list")
            tabTo(page, "list")
        }

        // With the arrows alone.
        function test_arrows() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_Down)
            compare(focused(page), "pageUp")
            keyClick(Qt.Key_Down)
            compare(focused(page), "save")
            keyClick(Qt.Key_Right)
            compare(focused(page), "revert")
            keyClick(Qt.Key_Right)
            compare(focused(page), "defaults")
            keyClick(Qt.Key_Left)
            compare(focused(page), "revert")
            keyClick(Qt.Key_Up)
            compare(focused(page), "list")
            keyClick(Qt.Key_Home)
            keyClick(Qt.Key_Up)
            verify(part(page, "kind-1").activeFocus)
            for (const name of ["kind0", "kind1", "kind2", "kind3", "changedOnly", "withoutChoice"]) {
                keyClick(Qt.Key_Right)
                verify(part(page, name).activeFocus, name)
            }
            keyClick(Qt.Key_Return)
            verify(part(page, "withoutChoice").checked)
            keyClick(Qt.Key_Down)
            compare(focused(page), "list")
        }

        function test_tabInTheMenu() {
            const page = show()
            choose(page, tapLeft, ["View", "Menu"])
            openMenu(page, tapRight)
            compare(focused(page), "list")
            tabTo(page, "save")
            tabTo(page, "list", Qt.Key_Backtab)
            keyClick(Qt.Key_Backtab)
            compare(focused(page), "back")
            keyClick(Qt.Key_Return)
            compare(heading(page), "Tap, on the right")
            compare(focused(page), "list")
        }

        // Bad input

        function test_noGestures_data() {
            const broken = '{\n"gestures": [}'
            const entry = JSON.stringify({gestures: [{kind: "tap", zone: "nowhere", defaultAction: "a"}]})
            return [
                {tag: "prohibited", app: "launcher",
                 problem: /^\u201clauncher\u201d may not have gestures of its own\.$/},
                {tag: "unknown", app: "nobody",
                 problem: /^There is no application \u201cnobody\u201d: no gestures were found in .*y\/cfg\.json\.$/},
                {tag: "no name", app: "", problem: /^No application was named\.$/},
                {tag: "no JSON", app: "bad", text: broken,
                 problem: /^The gestures of \u201cbad\u201d cannot be read: .*cfg\.json:2:\d+: .+\.$/},
                {tag: "bad entry", app: "bad", text: entry,
                 problem: /^The gestures of \u201cbad\u201d cannot be read: .*zone.*nowhere.*\.$/},
                {tag: "no gestures", app: "bad", text: "{}",
                 problem: /^The gestures of \u201cbad\u201d cannot be read: 'gestures' is obligatory field\.$/},
            ]
        }
        function test_noGestures(data) {
            if (data.text)
                TestTree.setConfiguration(data.app, data.text)
            const page = show(data.app)
            const problem = part(page, "problem")
            verify(data.problem.test(problem.text), problem.text)
            verify(problem.visible)
            verify(!part(page, "gestureListView").visible)
            compareMessage(page, "")
            compareEdited(page, false)
            verify(!part(page, "defaults").enabled)
            keyClick(Qt.Key_Return)
            gc()
            wait(50)
            verify(page.leave())
            compare(TestTree.userFiles(), [])
        }

        function test_badChoices_data() {
            const defaults = " \u201cDefaults\u201d in the settings forgets them.$"
            const kept = "The file is kept as \u201ccfg\\.json\\.rejected\u201d when the settings save\\.$"
            return [
                {tag: "another version", text: '{"version": 2, "actions": {}}',
                 notice: "^Your choices were saved by another version of this device, so the defaults are shown\\. "
                         + kept},
                {tag: "no JSON", text: "{{{",
                 notice: "^Your choices cannot be read \\(.*cfg\\.json:1:\\d+: .+\\), so the defaults are shown\\. "
                         + kept},
                {tag: "no version", text: '{"actions": {}}',
                 notice: "^Your choices cannot be read \\(`version` is obligatory field\\), so .* " + kept},
                {tag: "empty", text: "", notice: "^Your choices cannot be read \\(.*\\), so .* " + kept},
                {tag: "no such action", text: '{"version": 1, "actions": {"Thumb": "no/such"}}',
                 problem: "^Your choices do not fit the gestures of \u201creader\u201d: action 'no/such' not defined\\."
                          + defaults},
            ]
        }
        function test_badChoices(data) {
            TestTree.setChoices("reader", data.text)
            const page = show()
            const sentence = part(page, data.problem ? "problem" : "message")
            verify(new RegExp(data.problem || data.notice).test(sentence.text), sentence.text)
            verify(sentence.visible)
            compare(part(page, "gestureListView").visible, !data.problem)
            compare(TestTree.choices("reader"), data.text)
            compare(TestTree.userFiles().length, 1)
            compareEdited(page, false)
            verify(part(page, "defaults").enabled)
            if (data.notice) {
                choose(page, tapRight, ["Page", "Previous page"])
                compare(TestTree.choices("reader"), data.text)
                click(page, "save")
                compareMessage(page, "Saved.")
                compare(TestTree.userFiles(), ["gestures/apps/current/reader/cfg.json",
                                               "gestures/apps/current/reader/cfg.json.rejected"])
                compare(savedActions(), {[tapRight]: "page/previous"})
            }
        }

        function test_longMessage() {
            TestTree.setChoices("reader", "{{{")
            const page = show()
            const message = part(page, "message")
            verify(message.truncated)
            mouseClick(message)
            verify(part(page, "question").visible)
            const all = part(page, "questionText")
            compare(all.text, message.text)
            verify(!all.truncated)
            answer(page, 0)
            verify(!part(page, "question").visible)
        }

        function test_defaultsHealBadChoices_data() {
            return test_badChoices_data()
        }
        function test_defaultsHealBadChoices(data) {
            TestTree.setChoices("reader", data.text)
            const page = show()
            click(page, "defaults")
            answer(page, 0)
            compare(TestTree.choices("reader"), data.text)
            verify(!part(page, "problem").visible)
            compareEdited(page, true)
            click(page, "save")
            compareMessage(page, "Saved.")
            compareEdited(page, false)
            verify(!part(page, "defaults").enabled)
            compare(actionTitle(page, tapRight), "Next page")
            wait(300)
            compareMessage(page, "Saved.")
            verify(list(page).activeFocus)
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "save")
            compare(savedActions(), {[tapRight]: "page/previous"})
        }

        function test_unknownGestureInTheChoices() {
            TestTree.setChoices("reader", choicesText({Nobody: "page/next", [tapRight]: "page/previous"}))
            const page = show()
            verify(!part(page, "problem").visible)
            compareMessage(page, "")
            compare(actionTitle(page, tapRight), "Previous page")
        }

        function test_badChoicesWhileEditing_data() {
            return test_badChoices_data()
        }
        function test_badChoicesWhileEditing(data) {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            openMenu(page, tapLeft)
            TestTree.setChoices("reader", data.text)
            const sentence = part(page, data.problem ? "problem" : "message")
            tryVerify(() => sentence.text !== "", container.patience)
            gc()
            wait(50)
            compare(TestTree.choices("reader"), data.text)
            verify(page.edited)
            compare(part(page, "save").enabled, !data.problem)
            compare(isOpen(page), !data.problem) // a valid menu stays open
            if (data.problem) {
                click(page, "defaults")
                answer(page, 0)
                waitForProblem(page, false)
            } else {
                click(page, "back")
                click(page, "back")
            }
            wait(50)
            compare(actionTitle(page, tapRight), data.problem ? "Next page" : "Previous page")
        }

        // Also for root: a file where a directory is needed, and a directory where the file is.
        function test_unwritable_data() {
            return [{tag: "no directory", app: "odd/cfg.json", inTheWay: "odd"},
                    {tag: "no file", app: "odd", inTheWay: "odd/cfg.json"}]
        }
        function test_unwritable(data) {
            TestTree.setConfiguration(data.app, TestTree.configuration("notes"))
            TestTree.setChoices(data.inTheWay, "in the way")
            const files = TestTree.userFiles()
            const page = show(data.app)
            const notice = part(page, "message").text
            verify(/Choices cannot be saved: .*\/odd\/cfg\.json may not be written\.$/.test(notice), notice)
            const id = "ViewingSwipeNotSetToLeft"
            openMenu(page, id)
            clickAction(page, part(page, "pickerTrail").visible ? offered(page)[0] : "Undo")
            page.editor.choose(id, "pen/undo")
            for (let i = 0; i < 2; ++i) {
                click(page, "save")
                const told = part(page, "message")
                verify(/^The choices were not saved/.test(told.text), told.text)
                wait(300)
                verify(/^The choices were not saved/.test(told.text), told.text)
                compareEdited(page, true)
                compare(actionTitle(page, id), "Undo")
                compare(TestTree.userFiles(), files)
                compare(TestTree.choices(data.inTheWay), "in the way")
            }
        }

        // The configuration changes on disk.

        function changedConfiguration(change) {
            const document = JSON.parse(TestTree.configuration("reader"))
            change(document)
            TestTree.setConfiguration("reader", JSON.stringify(document))
        }

        function test_configurationChanges_data() {
            const remove = (document, zone) => {
                document.gestures = document.gestures.filter(entry => entry.zone !== zone)
            }
            return [
                {tag: "another place", change: document => { document.zones.footer.y = 0.9 }},
                {tag: "another order", change: document => { document.gestures.reverse() }},
                {tag: "a gesture less", change: document => remove(document, "corner")},
                {tag: "an action less", change: document => {
                    const groups = document.actionGroups
                    groups.reading = groups.reading.filter(path => path !== "text/larger")
                }},
                {tag: "other modes", change: document => { document.gestures[20].modes = ["writing"] }},
            ]
        }
        function test_configurationChanges(data) {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            changedConfiguration(data.change)
            waitForMessage(page, "The gestures of the application have changed.")
            compare(TestTree.userFiles(), [])
            compareEdited(page, true)
            compare(actionTitle(page, tapRight), "Previous page")
            click(page, "save")
            compareMessage(page, "Saved.")
            wait(300)
            compareMessage(page, "Saved.")
            compare(savedActions(), {[tapRight]: "page/previous"})
        }

        // The file would name a removed action, and no program could use it.
        function test_configurationLosesTheChosenAction() {
            const page = show()
            choose(page, tapRight, ["Text", "Larger"])
            choose(page, tapLeft, ["View", "Menu"])
            changedConfiguration(document => {
                const groups = document.actionGroups
                groups.reading = groups.reading.filter(path => path !== "text/larger")
                document.actions = document.actions.filter(action => action.path !== "text/larger")
                document.gestures.forEach(entry => {
                    if (entry.defaultAction === "text/larger")
                        entry.defaultAction = "view/menu"
                })
            })
            tryVerify(() => page.editor.news !== "", container.patience)
            compare(TestTree.userFiles(), [])
            compare(actionTitle(page, tapRight), "Next page")
            click(page, "save")
            compareMessage(page, "Saved.")
            compare(savedActions(), {[tapLeft]: "view/menu"})
        }

        function test_configurationBreaks() {
            const page = show()
            choose(page, tapRight, ["Page", "Previous page"])
            click(page, "save")
            wait(100)
            const bytes = TestTree.choices("reader")
            choose(page, tapLeft, ["View", "Menu"])
            const good = TestTree.configuration("reader")
            TestTree.setConfiguration("reader", "{")
            waitForProblem(page, true)
            gc()
            wait(50)
            compare(TestTree.choices("reader"), bytes)
            verify(!part(page, "save").enabled)
            TestTree.setConfiguration("reader", good)
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/forward"}))
            waitForProblem(page, false)
            tryVerify(() => actionTitle(page, tapRight) === "Ten pages on", container.patience)
            compare(actionTitle(page, tapLeft), "Menu")
        }

        // Memory

        function test_collection() {
            const page = show()
            const collector = createTemporaryObject(collectorComponent, container, {target: page.editor})
            const collect = () => {
                gc()
                gc()
                wait(0)
            }
            collect()
            openMenu(page, tapRight)
            collect()
            clickAction(page, "Previous page")
            collect()
            compare(actionTitle(page, tapRight), "Previous page")
            openMenu(page, tapRight)
            click(page, "back")
            collect()
            clickAction(page, "Chapter")
            collect()
            clickAction(page, "List of chapters")
            collect()
            click(page, "kind" + Gesture.Hold)
            collect()
            click(page, "kind-1")
            collect()
            click(page, "save")
            collect()
            compareMessage(page, "Saved.")
            choose(page, tapLeft, ["View", "Menu"])
            openMenu(page, tapLeft)
            collect()
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/forward"}))
            waitForMessage(page, foreignNewsBelow)
            collect()
            TestTree.setChoices("reader", choicesText({[tapRight]: "no/such"}))
            waitForProblem(page, true)
            collect()
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/forward"}))
            waitForProblem(page, false)
            compare(actionTitle(page, tapLeft), "Menu")
            compare(actionTitle(page, tapRight), "Ten pages on")
            click(page, "defaults")
            collect()
            answer(page, 0)
            collect()
            compare(actionTitle(page, tapLeft), "Previous page")
            compare(actionTitle(page, tapRight), "Next page")
            verify(collector.times >= 7)
        }
    }
}
