import QtQml 2.15
import QtQuick 2.15
import QtTest 1.15
import Vellix.Test 1.0
import "../../examples/settings"

Item {
    id: container
    width: 600
    height: 800

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays

    Component {
        id: screenComponent
        SettingsScreen {
            width: 600
            height: 800
            focus: true
        }
    }

    // A collection at the worst moment: the old copy is released while its rows are still on the screen.
    Component {
        id: collectorComponent
        Connections {
            property int times: 0
            function onCopyChanged() {
                times += 1
                gc()
            }
        }
    }

    TestCase {
        id: testCase
        name: "Settings"
        when: windowShown

        readonly property int centre: 1 // ListView's position modes
        readonly property int contain: 4
        readonly property string tapRight: "ReadingTapRightNoDirection"
        readonly property string tapLeft: "ReadingTapLeftNoDirection"
        readonly property string tapCenter: "ReadingTapCenterNoDirection"
        readonly property string foreignNews: "Another program has changed the choices. This is how they are now."
        readonly property string foreignNewsBelow:
            "Another program has changed the choices. They are shown here with your unsaved choices on top."

        function init() {
            TestTree.reset()
        }

        function show(appId) {
            const screen = createTemporaryObject(screenComponent, container,
                                                 {appId: appId === undefined ? "reader" : appId})
            verify(screen)
            waitForRendering(screen)
            return screen
        }

        function part(screen, name) {
            const item = findChild(screen, name)
            verify(item, name)
            return item
        }

        // Rows and layouts are made with the next frame.
        function click(screen, name) {
            tryVerify(() => {
                const item = findChild(screen, name)
                return item !== null && item.width > 0 && item.height > 0
            }, container.patience, name)
            mouseClick(part(screen, name))
        }

        function compareText(screen, name, text) {
            const item = part(screen, name)
            compare(item.text, text)
            compare(item.visible, text !== "")
        }

        // Happens by itself, without another event from us.
        function waitForText(screen, name, text) {
            tryCompare(part(screen, name), "text", text, container.patience)
        }

        // The content of the list, top to bottom, at any scroll position.
        function listed(screen) {
            return part(screen, "gestureListPage").rows.map(row => row.gesture ? row.gesture.id : row.heading)
        }

        function gestureRow(screen, id) {
            const list = part(screen, "gestureList")
            const index = listed(screen).indexOf(id)
            verify(index >= 0, id)
            list.positionViewAtIndex(index, testCase.contain)
            list.forceLayout()
            const row = list.itemAtIndex(index)
            verify(row, id)
            return part(row, "gesture-" + id)
        }

        function actionTitle(screen, id) {
            return part(gestureRow(screen, id), "actionTitle").text
        }

        // Empty while the gesture has its default.
        function mark(screen, id) {
            const item = part(gestureRow(screen, id), "changedMark")
            return item.visible ? item.text : ""
        }

        function menuPage(screen) {
            return part(screen, "pages").currentItem
        }

        function heading(screen) {
            return part(menuPage(screen), "actionPageHeading").text
        }

        function offered(screen) {
            return menuPage(screen).rows.map(row => row.title)
        }

        function openMenu(screen, id) {
            mouseClick(gestureRow(screen, id))
            verify(part(screen, "pages").depth > 1, id)
        }

        function clickAction(screen, path) {
            click(menuPage(screen), "action-" + path)
        }

        function choose(screen, id, path) {
            openMenu(screen, id)
            while (part(screen, "pages").depth > 2)
                click(menuPage(screen), "back")
            const segments = path.split("/")
            for (let i = 1; i <= segments.length; ++i)
                clickAction(screen, segments.slice(0, i).join("/"))
            compare(part(screen, "pages").depth, 1)
        }

        function compareEdited(screen, edited) {
            compare(screen.edited, edited)
            compare(part(screen, "save").enabled, edited)
            compare(part(screen, "cancel").enabled, edited)
        }

        function choicesText(actions) {
            return JSON.stringify({version: 1, actions: actions})
        }

        function savedActions(appId) {
            return JSON.parse(TestTree.choices(appId || "reader")).actions
        }

        function providerOf(screen) {
            for (let i = 0; i < screen.resources.length; ++i) {
                const object = screen.resources[i]
                if ("service" in object && "readonly" in object)
                    return object
            }
            return null
        }

        // An application "menus" of one gesture.
        function showMenus(actions, current) {
            TestTree.setConfiguration("menus", JSON.stringify({
                actions: actions,
                gestures: [{id: "only", kind: "tap", zone: "whole", defaultAction: current,
                            availableActions: actions.map(action => action.path)}]}))
            return show("menus")
        }

        // The rows

        function test_sections() {
            const screen = show()
            compareText(screen, "title", "Gestures of \u201creader\u201d")
            compareText(screen, "problem", "")
            compareText(screen, "notice", "")
            compareText(screen, "message", "")
            const rows = listed(screen).filter(row => row !== "BrighterSwipe" && row !== "DarkerSwipe")
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
                "Menu and selecting: swipe", "MenuSelectingSwipeNotSetToBottom",
                "Everywhere: hold", "Thumb"])
            compare(part(part(screen, "gestureList").itemAtIndex(0), "heading").text, "Reading: tap")
            compare(TestTree.userFiles(), [])
        }

        function test_row() {
            const screen = show()
            const row = gestureRow(screen, tapRight)
            compare(row.Accessible.name, "Tap on the right: Next page")
            compare(actionTitle(screen, tapRight), "Next page")
            compare(mark(screen, tapRight), "")
            compare(actionTitle(screen, "Thumb"), "Menu")
        }

        function test_rowOfAnActionWithoutATitle() {
            const screen = showMenus([{path: "some/where", titles: []}], "some/where")
            compare(actionTitle(screen, "only"), "some/where")
            openMenu(screen, "only")
            compare(offered(screen), ["where"])
        }

        function test_changedMark() {
            const screen = show()
            choose(screen, tapRight, "chapter/list")
            compare(actionTitle(screen, tapRight), "List of chapters")
            compare(mark(screen, tapRight), "changed; by default: Next page")
            compare(mark(screen, tapLeft), "")
            click(screen, "save")
            compare(mark(screen, tapRight), "changed; by default: Next page")
            wait(100)
            compare(mark(screen, tapRight), "changed; by default: Next page")
            screen.destroy()
            const again = show()
            compare(actionTitle(again, tapRight), "List of chapters")
            compare(mark(again, tapRight), "changed; by default: Next page")
            compare(mark(again, tapLeft), "")
            choose(again, tapRight, "page/next")
            compare(mark(again, tapRight), "")
        }

        function test_kinds_data() {
            return [
                {tag: "Tap", headings: ["Reading: tap", "Selecting: tap"]},
                {tag: "Hold", headings: ["Reading: hold", "Selecting: hold", "Everywhere: hold"]},
                {tag: "Swipe", headings: ["Reading: swipe", "Menu and selecting: swipe"]},
                {tag: "Drag", headings: ["Reading: drag", "Selecting: drag"]},
            ]
        }
        function test_kinds(data) {
            const screen = show()
            const all = listed(screen)
            verify(part(screen, "kind-All").checked)
            click(screen, "kind-" + data.tag)
            compare(listed(screen).filter(row => row.includes(": ")), data.headings)
            verify(part(screen, "kind-" + data.tag).checked)
            verify(!part(screen, "kind-All").checked)
            verify(gestureRow(screen, listed(screen)[1]).visible)
            click(screen, "kind-All")
            compare(listed(screen), all)
        }

        function test_kindsThatThereAreNot() {
            const screen = show("notes")
            verify(!part(screen, "kind-Tap").enabled)
            verify(part(screen, "kind-Hold").enabled)
            verify(part(screen, "kind-Swipe").enabled)
            verify(!part(screen, "kind-Drag").enabled)
        }

        function test_withoutAChoice_data() {
            return [{tag: "mouse"}, {tag: "keyboard"}]
        }
        function test_withoutAChoice(data) {
            const screen = show()
            const fixed = ["ReadingHoldLeftBottomNoDirection", "MenuTapWholeNoDirection"]
            const toggle = () => {
                if (data.tag === "mouse") {
                    click(screen, "withoutChoice")
                } else {
                    part(screen, "withoutChoice").forceActiveFocus()
                    keyClick(Qt.Key_Return)
                }
            }
            fixed.forEach(id => verify(!listed(screen).includes(id)))
            toggle()
            fixed.forEach(id => verify(listed(screen).includes(id)))
            compare(actionTitle(screen, fixed[1]), "Close")
            verify(!gestureRow(screen, fixed[1]).enabled)
            mouseClick(gestureRow(screen, fixed[1]))
            compare(part(screen, "pages").depth, 1)
            toggle()
            fixed.forEach(id => verify(!listed(screen).includes(id)))
        }

        // On every machine: a gesture is shown if the device has all its features.
        function test_gesturesThatTheDeviceCannotDo() {
            const features = ["frontlight", "smartlight", "tts"]
            TestTree.setConfiguration("device", JSON.stringify({
                actions: [{path: "a", title: "A"}],
                gestures: [["plain"]].concat(features.map(name => [name, name])).map(
                    entry => ({id: entry[0], kind: "tap", zone: "whole", defaultAction: "a", availableActions: ["a"],
                               features: entry.slice(1)}))}))
            const screen = show("device")
            const model = screen.copy.gestures
            let hidden = 0
            for (let i = 0; i < model.rowCount(); ++i) {
                const gesture = model.data(model.index(i, 0))
                compare(listed(screen).includes(gesture.id), gesture.supported, gesture.id)
                hidden += gesture.supported ? 0 : 1
            }
            if (hidden === 0)
                skip("This machine has everything that a gesture may need.")
            const shown = listed(screen)
            click(screen, "withoutChoice")
            compare(listed(screen), shown)
        }

        function test_nothingToShow() {
            TestTree.setConfiguration("empty", '{"gestures": []}')
            const screen = show("empty")
            compareText(screen, "problem", "")
            compare(listed(screen), [])
            compareEdited(screen, false)
        }

        function test_pages() {
            const screen = show()
            const list = part(screen, "gestureList")
            const up = part(screen, "pageUp")
            const down = part(screen, "pageDown")
            verify(!up.enabled)
            let pages = 1
            for (; down.enabled && pages < 20; ++pages)
                mouseClick(down)
            verify(pages > 2)
            verify(list.atYEnd)
            verify(list.itemAtIndex(list.count - 1))
            for (; up.enabled && pages > 0; --pages)
                mouseClick(up)
            verify(list.atYBeginning)
            verify(list.itemAtIndex(0))
        }

        // The place in the list survives a choice, a filter that is no change and a cancelled edit.
        function test_place() {
            const screen = show()
            const list = part(screen, "gestureList")
            list.positionViewAtIndex(listed(screen).indexOf("ScrubbingBack"), testCase.centre)
            const before = list.contentY
            verify(before > list.originY + 200)
            choose(screen, "ScrubbingBack", "chapter/previous")
            fuzzyCompare(list.contentY, before, 1)
            click(screen, "save")
            wait(100)
            fuzzyCompare(list.contentY, before, 1)
            choose(screen, "ScrubbingBack", "page/back")
            click(screen, "cancel")
            fuzzyCompare(list.contentY, before, 1)
        }

        // The menu

        function test_menuAtTheBranch() {
            const screen = show()
            openMenu(screen, tapRight)
            compare(heading(screen), "Tap on the right \u203a Page")
            compare(offered(screen), ["Next page", "Previous page", "Ten pages on", "Ten pages back"])
            click(menuPage(screen), "back")
            compare(heading(screen), "Tap on the right")
            const titles = offered(screen).filter(title => title !== "Light" && title !== "Speech")
            compare(titles, ["Page", "Chapter", "Text", "View"])
            clickAction(screen, "chapter")
            compare(heading(screen), "Tap on the right \u203a Chapter")
            compare(offered(screen), ["Next chapter", "Previous chapter", "List of chapters"])
            click(menuPage(screen), "back")
            click(menuPage(screen), "back")
            compare(part(screen, "pages").depth, 1)
            compareEdited(screen, false)
            compare(TestTree.userFiles(), [])
        }

        function test_menuOfManyLevels() {
            const screen = showMenus([{path: "a/b/c/d", titles: ["A", "B", "C", "D"]},
                                      {path: "a/b/x", titles: ["A", "B", "X"]},
                                      {path: "z", title: "Z"}], "a/b/x")
            openMenu(screen, "only")
            compare(heading(screen), "Tap anywhere \u203a A \u203a B")
            compare(offered(screen), ["C", "X"])
            clickAction(screen, "a/b/c")
            compare(heading(screen), "Tap anywhere \u203a A \u203a B \u203a C")
            clickAction(screen, "a/b/c/d")
            compare(actionTitle(screen, "only"), "D")
            openMenu(screen, "only")
            compare(heading(screen), "Tap anywhere \u203a A \u203a B \u203a C")
            for (let i = 0; i < 3; ++i)
                click(menuPage(screen), "back")
            compare(offered(screen), ["A", "Z"])
            clickAction(screen, "z")
            compare(actionTitle(screen, "only"), "Z")
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
            const screen = showMenus(data.actions, "close")
            openMenu(screen, "only")
            compare(offered(screen).sort(), ["Close", "Turn"])
            clickAction(screen, "page")
            compare(offered(screen), ["Turn", "Next page"])
            clickAction(screen, "page")
            compare(part(screen, "pages").depth, 1)
            compare(actionTitle(screen, "only"), "Turn")
            compareEdited(screen, true)
            // It is current again where it was chosen.
            openMenu(screen, "only")
            compare(heading(screen), "Tap anywhere \u203a Turn")
            clickAction(screen, "page/next")
            compare(actionTitle(screen, "only"), "Next page")
            choose(screen, "only", "close")
            compareEdited(screen, false)
            openMenu(screen, "only")
            clickAction(screen, "page")
            clickAction(screen, "page")
            click(screen, "save")
            compareText(screen, "message", "Saved.")
            compare(savedActions("menus"), {only: "page"})
        }

        function test_fewerTitlesThanSegments() {
            const screen = showMenus([{path: "far/away/there", titles: ["Far"]}, {path: "far/near", titles: ["Far"]}],
                                     "far/near")
            openMenu(screen, "only")
            compare(heading(screen), "Tap anywhere \u203a Far")
            compare(offered(screen), ["away", "near"])
            clickAction(screen, "far/away")
            compare(heading(screen), "Tap anywhere \u203a Far \u203a away")
            compare(offered(screen), ["there"])
        }

        // Save, cancel and reset

        function test_save() {
            const screen = show()
            compareEdited(screen, false)
            verify(!part(screen, "reset").enabled)
            choose(screen, tapRight, "page/previous")
            compareEdited(screen, true)
            verify(part(screen, "reset").enabled)
            compareText(screen, "message", "")
            compare(TestTree.userFiles(), [])
            click(screen, "save")
            compareText(screen, "message", "Saved.")
            compareEdited(screen, false)
            compare(TestTree.userFiles(), ["gestures/apps/current/reader/cfg.json"])
            const actions = savedActions()
            compare(actions[tapRight], "page/previous")
            compare(actions[tapLeft], "page/previous")
            compare(actions.Thumb, "view/menu")
            compare(Object.keys(actions).length, 22)
            // It is not reported as another program's.
            wait(300)
            compareText(screen, "message", "Saved.")
            compare(actionTitle(screen, tapRight), "Previous page")
            verify(part(screen, "reset").enabled)
            choose(screen, tapRight, "page/next")
            compareText(screen, "message", "")
            compareEdited(screen, true)
            click(screen, "save")
            wait(300)
            compareText(screen, "message", "Saved.")
            compare(savedActions()[tapRight], "page/next")
        }

        function test_writableOnlyForASave() {
            const screen = show()
            const provider = providerOf(screen)
            const seen = []
            verify(provider.readonly)
            provider.readonlyChanged.connect(value => seen.push(value))
            choose(screen, tapRight, "page/previous")
            compare(seen, [])
            click(screen, "save")
            compare(seen, [false, true])
            choose(screen, tapRight, "page/next")
            click(screen, "cancel")
            click(screen, "reset")
            click(screen, "resetYes")
            wait(100)
            compare(seen, [false, true])
            verify(provider.readonly)
        }

        function test_twoEditsAndTheOldAction() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            choose(screen, tapLeft, "view/menu")
            choose(screen, tapRight, "page/next")
            compareEdited(screen, true)
            compare(Object.keys(screen.edits), [tapLeft])
            choose(screen, tapLeft, "page/previous")
            compareEdited(screen, false)
            verify(!part(screen, "reset").enabled)
            openMenu(screen, tapLeft)
            clickAction(screen, "page/previous")
            compareEdited(screen, false)
            compare(TestTree.userFiles(), [])
        }

        function test_cancel() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            choose(screen, tapLeft, "view/menu")
            click(screen, "cancel")
            compareEdited(screen, false)
            compare(actionTitle(screen, tapRight), "Next page")
            compare(actionTitle(screen, tapLeft), "Previous page")
            compare(mark(screen, tapRight), "")
            wait(100)
            compare(TestTree.userFiles(), [])
        }

        function test_cancelAfterASave() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            const bytes = TestTree.choices("reader")
            choose(screen, tapRight, "page/forward")
            choose(screen, tapLeft, "page/forward")
            click(screen, "cancel")
            compare(actionTitle(screen, tapRight), "Previous page")
            compare(actionTitle(screen, tapLeft), "Previous page")
            compare(TestTree.choices("reader"), bytes)
        }

        function test_reset() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            choose(screen, tapLeft, "view/menu")
            const bytes = TestTree.choices("reader")
            const question = part(screen, "question")
            verify(!question.visible)
            click(screen, "reset")
            verify(question.visible)
            mouseClick(gestureRow(screen, tapCenter)) // items below do not react
            compare(part(screen, "pages").depth, 1)
            click(screen, "resetNo")
            verify(!question.visible)
            compare(TestTree.choices("reader"), bytes)
            compare(actionTitle(screen, tapRight), "Previous page")
            compare(actionTitle(screen, tapLeft), "Menu")
            compareEdited(screen, true)
            click(screen, "reset")
            click(screen, "resetYes")
            verify(!question.visible)
            compare(TestTree.userFiles(), [])
            compareText(screen, "message", "These are the defaults.")
            compareEdited(screen, false)
            tryVerify(() => actionTitle(screen, tapRight) === "Next page", container.patience)
            wait(300)
            compareText(screen, "message", "These are the defaults.")
            compare(actionTitle(screen, tapLeft), "Previous page")
            compare(mark(screen, tapRight), "")
            verify(!part(screen, "reset").enabled)
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            wait(300)
            compareText(screen, "message", "Saved.")
            compare(savedActions()[tapRight], "page/previous")
        }

        function test_resetWithoutAFile() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "reset")
            click(screen, "resetYes")
            compareText(screen, "message", "These are the defaults.")
            compare(actionTitle(screen, tapRight), "Next page")
            compareEdited(screen, false)
            choose(screen, tapRight, "page/forward")
            click(screen, "save")
            compareText(screen, "message", "Saved.")
            compare(savedActions()[tapRight], "page/forward")
        }

        function test_leftInTheMiddle() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            screen.destroy()
            wait(100)
            const other = show()
            choose(other, tapRight, "page/next")
            openMenu(other, tapLeft)
            other.destroy()
            wait(100)
            compare(savedActions()[tapRight], "page/previous")
        }

        // The choice for a gesture with a fixed action is not reported as another program's change.
        function test_choiceThatTheConfigurationOverrules() {
            TestTree.setConfiguration("fixed", JSON.stringify({
                actions: [{path: "a", title: "A"}, {path: "b", title: "B"}],
                gestures: [{id: "one", kind: "tap", zone: "whole", currentAction: "a", availableActions: ["a", "b"]},
                           {id: "two", kind: "hold", zone: "whole", defaultAction: "a", availableActions: ["a", "b"]}]
            }))
            const screen = show("fixed")
            choose(screen, "one", "b")
            choose(screen, "two", "b")
            click(screen, "save")
            wait(300)
            compareText(screen, "message",
                        "Saved, but the configuration decides itself about: Tap anywhere.")
            compare(actionTitle(screen, "one"), "A")
            compare(actionTitle(screen, "two"), "B")
            compareEdited(screen, false)
        }

        // Other programs

        function test_change() {
            const screen = show()
            TestTree.setChoices("reader", choicesText({[tapRight]: "chapter/list"}))
            waitForText(screen, "message", foreignNews)
            compare(actionTitle(screen, tapRight), "List of chapters")
            compare(mark(screen, tapRight), "changed; by default: Next page")
            compareEdited(screen, false)
            verify(part(screen, "reset").enabled)
            mouseClick(part(screen, "message"))
            compareText(screen, "message", "")
        }

        function test_changeBackToTheDefaults() {
            TestTree.setChoices("reader", choicesText({[tapRight]: "chapter/list"}))
            const screen = show()
            compare(actionTitle(screen, tapRight), "List of chapters")
            TestTree.reset()
            waitForText(screen, "message", foreignNews)
            compare(actionTitle(screen, tapRight), "Next page")
            verify(!part(screen, "reset").enabled)
        }

        function test_changeOfNothing() {
            const screen = show()
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/next"}))
            tryCompare(part(screen, "reset"), "enabled", true, container.patience)
            compareText(screen, "message", "")
        }

        function test_changeBelowEdits() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            choose(screen, tapCenter, "view/search")
            TestTree.setChoices("reader", choicesText({[tapRight]: "chapter/list", [tapLeft]: "view/menu"}))
            waitForText(screen, "message", foreignNewsBelow)
            compare(actionTitle(screen, tapRight), "Previous page")
            compare(actionTitle(screen, tapLeft), "Menu")
            compare(actionTitle(screen, tapCenter), "Search")
            compareEdited(screen, true)
            choose(screen, tapRight, "chapter/list") // another program's choice: no edit
            compare(Object.keys(screen.edits), [tapCenter])
            choose(screen, tapRight, "page/forward")
            click(screen, "save")
            wait(300)
            compareText(screen, "message", "Saved.")
            const actions = savedActions()
            compare(actions[tapRight], "page/forward")
            compare(actions[tapLeft], "view/menu")
            compare(actions[tapCenter], "view/search")
        }

        function test_changeThatIsTheEdit() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/previous"}))
            waitForText(screen, "message", foreignNews)
            compareEdited(screen, false)
            compare(actionTitle(screen, tapRight), "Previous page")
        }

        function test_changeInTheMenu() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            openMenu(screen, tapLeft)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForText(screen, "message", foreignNewsBelow)
            compare(part(screen, "pages").depth, 1)
            gc()
            wait(0)
            compare(actionTitle(screen, tapLeft), "Menu")
        }

        // The change is made, its event has not arrived.
        function test_changeThatASaveMeets() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            const theirs = choicesText({[tapLeft]: "view/menu"})
            TestTree.setChoices("reader", theirs)
            click(screen, "save")
            compare(TestTree.choices("reader"), theirs)
            waitForText(screen, "message", foreignNewsBelow)
            compare(TestTree.choices("reader"), theirs)
            compareEdited(screen, true)
            compare(actionTitle(screen, tapLeft), "Menu")
            click(screen, "save")
            wait(300)
            compareText(screen, "message", "Saved.")
            compare(savedActions()[tapLeft], "view/menu")
            compare(savedActions()[tapRight], "page/previous")
        }

        function test_changeThatASaveDoesNotUnderstand() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            const theirs = choicesText({[tapLeft]: "no/such"})
            TestTree.setChoices("reader", theirs)
            click(screen, "save")
            tryVerify(() => part(screen, "problem").text !== "", container.patience)
            compare(TestTree.choices("reader"), theirs)
            // No file to save to, and nothing lost: the edit returns once the file is valid again.
            verify(!part(screen, "save").enabled)
            verify(!part(screen, "cancel").enabled)
            gc()
            wait(0)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForText(screen, "problem", "")
            compare(actionTitle(screen, tapRight), "Previous page")
            compare(actionTitle(screen, tapLeft), "Menu")
            compareEdited(screen, true)
        }

        function test_changeWhileTheQuestionIsAsked() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "reset")
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForText(screen, "message", foreignNewsBelow)
            verify(part(screen, "resetNo").activeFocus)
            keyClick(Qt.Key_Return)
            verify(!part(screen, "question").visible)
            compareEdited(screen, true)
        }

        // The keyboard

        function test_keyboard() {
            const screen = show()
            const list = part(screen, "gestureList")
            const pages = part(screen, "pages")
            verify(list.activeFocus)
            const current = () => listed(screen)[list.currentIndex]
            compare(current(), "ReadingTapCornerNoDirection") // no heading is ever the current row
            keyClick(Qt.Key_Down)
            compare(current(), tapLeft)
            verify(gestureRow(screen, tapLeft).selected)
            for (let i = 0; i < 4; ++i)
                keyClick(Qt.Key_Down)
            compare(current(), "ReadingAloud")
            for (let i = 0; i < 4; ++i)
                keyClick(Qt.Key_Up)
            compare(current(), tapLeft)
            keyClick(Qt.Key_Return)
            compare(heading(screen), "Tap on the left \u203a Page")
            const menu = part(menuPage(screen), "actionList")
            verify(menu.activeFocus)
            compare(menu.currentIndex, 1) // the action that it has
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Left)
            compare(heading(screen), "Tap on the left")
            verify(part(menuPage(screen), "actionList").activeFocus)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Return)
            compare(heading(screen), "Tap on the left \u203a Chapter")
            keyClick(Qt.Key_Back)
            keyClick(Qt.Key_Back)
            compare(pages.depth, 1)
            verify(list.activeFocus)
            compare(current(), tapLeft)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Up)
            keyClick(Qt.Key_Enter)
            compare(pages.depth, 1)
            compare(actionTitle(screen, tapLeft), "Next page")
            verify(list.activeFocus)
            compare(current(), tapLeft)
        }

        function test_tab() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            verify(gestureRow(screen, tapRight).selected) // the keys go on from the mouse's place
            verify(part(screen, "gestureList").activeFocus)
            for (const name of ["save", "cancel", "reset"]) {
                keyClick(Qt.Key_Tab)
                verify(part(screen, name).activeFocus, name)
            }
            keyClick(Qt.Key_Return)
            verify(part(screen, "question").visible)
            verify(part(screen, "resetNo").visualFocus)
            // Only the question is active.
            for (let i = 0; i < 4; ++i) {
                keyClick(Qt.Key_Tab)
                verify(part(screen, "resetNo").activeFocus || part(screen, "resetYes").activeFocus)
            }
            keyClick(Qt.Key_Escape)
            verify(!part(screen, "question").visible)
            compareEdited(screen, true)
            verify(part(screen, "gestureList").activeFocus)
            keyClick(Qt.Key_Tab)
            keyClick(Qt.Key_Space)
            compareText(screen, "message", "Saved.")
            // The button is disabled now; the keys go on in the list.
            verify(part(screen, "gestureList").activeFocus)
            keyClick(Qt.Key_Backtab)
            verify(!part(screen, "gestureList").activeFocus)
        }

        function test_tabInTheMenu() {
            const screen = show()
            choose(screen, tapLeft, "view/menu")
            openMenu(screen, tapRight)
            verify(part(menuPage(screen), "actionList").activeFocus)
            tryVerify(() => part(menuPage(screen), "actionList").itemAtIndex(3) !== null, container.patience) // they are no stops
            keyClick(Qt.Key_Tab)
            verify(part(screen, "save").activeFocus)
            keyClick(Qt.Key_Backtab)
            verify(part(menuPage(screen), "actionList").activeFocus)
            keyClick(Qt.Key_Backtab)
            verify(part(menuPage(screen), "back").activeFocus)
            keyClick(Qt.Key_Return)
            compare(heading(screen), "Tap on the right")
            verify(part(menuPage(screen), "actionList").activeFocus)
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
            const screen = show(data.app)
            const problem = part(screen, "problem")
            verify(data.problem.test(problem.text), problem.text)
            verify(problem.visible)
            verify(!part(screen, "pages").visible)
            compareText(screen, "message", "")
            compareEdited(screen, false)
            verify(!part(screen, "reset").enabled)
            keyClick(Qt.Key_Return)
            gc()
            wait(50)
            compare(problem.text.match(data.problem).length, 1)
            compare(TestTree.userFiles(), [])
        }

        function test_badChoices_data() {
            const reset = " \u201cDefaults\u201d in the settings forgets them.$"
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
                          + reset},
            ]
        }
        function test_badChoices(data) {
            TestTree.setChoices("reader", data.text)
            const screen = show()
            const sentence = part(screen, data.problem ? "problem" : "notice")
            verify(new RegExp(data.problem || data.notice).test(sentence.text), sentence.text)
            verify(sentence.visible)
            compare(part(screen, "pages").visible, !data.problem)
            compare(TestTree.choices("reader"), data.text)
            compare(TestTree.userFiles().length, 1)
            compareEdited(screen, false)
            verify(part(screen, "reset").enabled)
            if (data.notice) {
                compareText(screen, "problem", "")
                choose(screen, tapRight, "page/previous")
                compare(TestTree.choices("reader"), data.text)
                click(screen, "save")
                compareText(screen, "message", "Saved.")
                compare(TestTree.userFiles(), ["gestures/apps/current/reader/cfg.json",
                                               "gestures/apps/current/reader/cfg.json.rejected"])
                compare(savedActions()[tapRight], "page/previous")
                waitForText(screen, "notice", "")
            }
        }
        function test_resetHealsBadChoices_data() {
            return test_badChoices_data()
        }
        function test_resetHealsBadChoices(data) {
            TestTree.setChoices("reader", data.text)
            const screen = show()
            click(screen, "reset")
            compare(TestTree.choices("reader"), data.text)
            click(screen, "resetYes")
            compareText(screen, "message", "These are the defaults.")
            waitForText(screen, "problem", "")
            waitForText(screen, "notice", "")
            compare(TestTree.userFiles(), [])
            compare(actionTitle(screen, tapRight), "Next page")
            wait(300)
            compareText(screen, "message", "These are the defaults.")
            verify(part(screen, "gestureList").activeFocus)
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            compareText(screen, "message", "Saved.")
        }

        function test_unknownGestureInTheChoices() {
            TestTree.setChoices("reader", choicesText({Nobody: "page/next", [tapRight]: "page/previous"}))
            const screen = show()
            compareText(screen, "problem", "")
            compareText(screen, "notice", "")
            compare(actionTitle(screen, tapRight), "Previous page")
        }

        function test_badChoicesWhileEditing_data() {
            return test_badChoices_data()
        }
        function test_badChoicesWhileEditing(data) {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            openMenu(screen, tapLeft)
            TestTree.setChoices("reader", data.text)
            const sentence = part(screen, data.problem ? "problem" : "notice")
            tryVerify(() => sentence.text !== "", container.patience)
            gc()
            wait(50)
            compare(TestTree.choices("reader"), data.text)
            compare(screen.edits, {[tapRight]: "page/previous"})
            compare(part(screen, "save").enabled, !data.problem)
            compare(part(screen, "pages").depth > 1, !data.problem) // a valid menu stays open
            if (data.problem) {
                click(screen, "reset")
                click(screen, "resetYes")
                waitForText(screen, "problem", "")
                compareEdited(screen, false)
            }
            wait(50)
            compare(actionTitle(screen, tapRight), data.problem ? "Next page" : "Previous page")
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
            const screen = show(data.app)
            const notice = part(screen, "notice").text
            verify(/Choices cannot be saved: .*\/odd\/cfg\.json may not be written\.$/.test(notice), notice)
            const id = "ViewingSwipeNotSetToLeft"
            choose(screen, id, "pen/undo")
            for (let i = 0; i < 2; ++i) {
                click(screen, "save")
                const told = part(screen, "message")
                verify(/^The choices were not saved/.test(told.text), told.text)
                wait(300)
                verify(/^The choices were not saved/.test(told.text), told.text)
                compareEdited(screen, true)
                compare(actionTitle(screen, id), "Undo")
                compare(TestTree.userFiles(), files)
                compare(TestTree.choices(data.inTheWay), "in the way")
            }
        }

        function test_unresettable() {
            TestTree.setChoices("reader/cfg.json", "in the way")
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "reset")
            click(screen, "resetYes")
            compareText(screen, "message", "The choices could not be deleted.")
            compareEdited(screen, true)
            compare(TestTree.choices("reader/cfg.json"), "in the way")
        }

        // The configuration changes on disk. Only a new service reads it.

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
                {tag: "another default", change: document => { document.gestures[0].defaultAction = "view/menu" }},
                {tag: "other modes", change: document => { document.gestures[20].modes = ["writing"] }},
            ]
        }
        function test_configurationChanges(data) {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            changedConfiguration(data.change)
            // Reported, not saved, and the edit is applied to the present files.
            click(screen, "save")
            tryVerify(() => part(screen, "message").text !== "", container.patience)
            verify(part(screen, "message").text !== "Saved.")
            compare(TestTree.userFiles(), [])
            wait(100)
            verify(part(screen, "message").text !== "")
            compareEdited(screen, true)
            compare(actionTitle(screen, tapRight), "Previous page")
            click(screen, "save")
            compareText(screen, "message", "Saved.")
            wait(300)
            compareText(screen, "message", "Saved.")
            compare(savedActions()[tapRight], "page/previous")
            compare(savedActions()[tapLeft], "page/previous")
        }

        // The file would name a removed action, and no program could use it.
        function test_configurationLosesTheChosenAction() {
            const screen = show()
            choose(screen, tapRight, "text/larger")
            choose(screen, tapLeft, "view/menu")
            changedConfiguration(document => {
                const groups = document.actionGroups
                groups.reading = groups.reading.filter(path => path !== "text/larger")
                document.actions = document.actions.filter(action => action.path !== "text/larger")
                document.gestures.forEach(entry => {
                    if (entry.defaultAction === "text/larger")
                        entry.defaultAction = "view/menu"
                })
            })
            click(screen, "save")
            wait(100)
            compare(TestTree.userFiles(), [])
            compare(screen.edits, {[tapLeft]: "view/menu"})
            compare(actionTitle(screen, tapRight), "Next page")
            click(screen, "save")
            compareText(screen, "message", "Saved.")
            compareText(screen, "problem", "")
        }

        function test_configurationBreaks() {
            const screen = show()
            choose(screen, tapRight, "page/previous")
            click(screen, "save")
            wait(100)
            const bytes = TestTree.choices("reader")
            choose(screen, tapLeft, "view/menu")
            const good = TestTree.configuration("reader")
            TestTree.setConfiguration("reader", "{")
            click(screen, "save")
            tryVerify(() => part(screen, "problem").text !== "", container.patience)
            gc()
            wait(50)
            compare(TestTree.choices("reader"), bytes)
            verify(!part(screen, "save").enabled)
            verify(!part(screen, "reset").enabled)
            TestTree.setConfiguration("reader", good)
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/forward"}))
            waitForText(screen, "problem", "")
            compare(actionTitle(screen, tapRight), "Ten pages on")
            compare(actionTitle(screen, tapLeft), "Menu")
        }

        // Memory

        function test_collection() {
            const screen = show()
            const collect = () => {
                gc()
                gc()
                wait(0)
            }
            collect()
            openMenu(screen, tapRight)
            collect()
            clickAction(screen, "page/previous")
            collect()
            compare(actionTitle(screen, tapRight), "Previous page")
            openMenu(screen, tapRight)
            click(menuPage(screen), "back")
            collect()
            clickAction(screen, "chapter")
            collect()
            clickAction(screen, "chapter/list")
            collect()
            click(screen, "kind-Hold")
            collect()
            click(screen, "kind-All")
            collect()
            click(screen, "save")
            collect()
            compareText(screen, "message", "Saved.")
            choose(screen, tapLeft, "view/menu")
            collect()
            TestTree.setChoices("reader", choicesText({[tapRight]: "page/forward"}))
            waitForText(screen, "message", foreignNewsBelow)
            collect()
            compare(actionTitle(screen, tapLeft), "Menu")
            compare(actionTitle(screen, tapRight), "Ten pages on")
            click(screen, "save")
            collect()
            compare(savedActions()[tapLeft], "view/menu")
            click(screen, "reset")
            collect()
            click(screen, "resetYes")
            collect()
            tryVerify(() => actionTitle(screen, tapLeft) === "Previous page", container.patience)
            collect()
            compare(actionTitle(screen, tapRight), "Next page")
        }

        function test_collectionWhileTheCopyIsReplaced() {
            const screen = show()
            const collector = createTemporaryObject(collectorComponent, container, {target: screen})
            choose(screen, tapRight, "page/previous")
            openMenu(screen, tapLeft)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "view/menu"}))
            waitForText(screen, "message", foreignNewsBelow)
            wait(50)
            click(screen, "cancel")
            wait(50)
            openMenu(screen, tapLeft)
            TestTree.setChoices("reader", choicesText({[tapLeft]: "no/such"}))
            tryVerify(() => part(screen, "problem").text !== "", container.patience)
            wait(50)
            verify(collector.times >= 3)
            click(screen, "reset")
            click(screen, "resetYes")
            waitForText(screen, "problem", "")
            wait(50)
            compare(actionTitle(screen, tapLeft), "Previous page")
        }
    }
}
