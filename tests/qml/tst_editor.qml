import QtQml 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Test 1.0

TestCase {
    id: testCase
    name: "Editor"

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays
    readonly property string tapLeft: "ReadingTapLeftNoDirection"
    readonly property string tapRight: "ReadingTapRightNoDirection"
    readonly property string reader: "gestures/apps/current/reader/cfg.json"

    property int choicesChanged: 0
    property int configurationChanged: 0
    property int saves: 0

    Component {
        id: editorComponent
        GestureEditor {
            onChoicesChangedElsewhere: testCase.choicesChanged += 1
            onConfigurationChangedElsewhere: testCase.configurationChanged += 1
            onSaved: testCase.saves += 1
        }
    }

    function init() {
        TestTree.reset()
        testCase.choicesChanged = 0
        testCase.configurationChanged = 0
        testCase.saves = 0
    }

    function edit(appId) {
        return createTemporaryObject(editorComponent, testCase, {appId: appId === undefined ? "reader" : appId})
    }


    // In the order of the header.
    function roleNumber(role) {
        const names = ["gesture", "gestureId", "gestureTitle", "section", "sectionTitle", "actionTitle", "defaultTitle",
                       "isDefault", "isEdited", "isConflicting", "isSupported", "isChangeable"]
        return Qt.UserRole + names.indexOf(role)
    }

    function value(editor, id, role) {
        for (let row = 0; row < editor.model.count; ++row) {
            const index = editor.model.index(row, 0)
            if (editor.model.data(index, testCase.roleNumber("gestureId")) === id)
                return editor.model.data(index, testCase.roleNumber(role))
        }
        fail("no gesture " + id)
    }

    function marks(editor, id) {
        return ["isDefault", "isEdited", "isConflicting"].filter(mark => testCase.value(editor, id, mark)).join(" ")
    }

    function compareState(editor, state) {
        const now = {edited: editor.edited, hasChoices: editor.hasChoices, problem: editor.problem,
                     saveProblem: editor.saveProblem, notice: editor.notice, news: editor.news}
        const wanted = Object.assign({edited: false, hasChoices: false, problem: "", saveProblem: "", notice: "",
                                      news: ""}, state)
        compare(JSON.stringify(now, null, 1), JSON.stringify(wanted, null, 1))
    }

    function bindings(appId) {
        return JSON.parse(TestTree.choices(appId === undefined ? "reader" : appId)).actions
    }

    // Another program's choices.
    function bind(actions) {
        TestTree.setChoices("reader", JSON.stringify({version: 1, actions: actions}))
    }

    function configuration() {
        return JSON.parse(TestTree.configuration("reader"))
    }

    function gestureOf(configuration, id) {
        return configuration.gestures.find(gesture => gesture.id === id)
    }

    function setConfiguration(configuration) {
        TestTree.setConfiguration("reader", JSON.stringify(configuration))
    }

    function test_start() {
        const editor = edit()
        compare(editor.model.count, 22)
        compareState(editor, {})
        compare(value(editor, tapRight, "gestureTitle"), "Tap, on the right")
        compare(value(editor, tapRight, "sectionTitle"), "Reading: tap")
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        compare(value(editor, tapRight, "defaultTitle"), "Next page")
        compare(value(editor, tapRight, "gesture"), editor.gesture(tapRight))
        compare(value(editor, tapRight, "isChangeable"), true)
        compare(value(editor, "MenuTapWholeNoDirection", "isChangeable"), false)
        compare(marks(editor, tapRight), "isDefault")
        compare(editor.gesture("none"), null)
        compare(testCase.choicesChanged + testCase.configurationChanged, 0)
    }

    function test_sectionsStandTogether() {
        const editor = edit()
        const seen = []
        for (let row = 0; row < editor.model.count; ++row) {
            const section = editor.model.data(editor.model.index(row, 0), Qt.UserRole + 4)
            if (seen[seen.length - 1] !== section)
                seen.push(section)
        }
        compare(new Set(seen).size, seen.length)
        compare(seen[0], "Reading: tap")
    }

    function test_choiceAndSave() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        compareState(editor, {edited: true, hasChoices: true})
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        compare(marks(editor, tapRight), "isEdited")
        compare(TestTree.userFiles().length, 0)
        verify(editor.save())
        compareState(editor, {hasChoices: true, news: "Saved."})
        compare(marks(editor, tapRight), "")
        // Only what the user has chosen: the other gestures follow their defaults.
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
        compare(testCase.saves, 1)
        compare(testCase.choicesChanged, 0)
    }

    function test_nothingToSave() {
        const editor = edit()
        verify(editor.save())
        compare(TestTree.userFiles().length, 0)
        compareState(editor, {})
    }

    function test_choosingBackIsNoEdit() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.choose(tapRight, "page/next"))
        compareState(editor, {})
        compare(marks(editor, tapRight), "isDefault")
    }

    function test_marksAreTheBindings() {
        // The second one is bound to its default.
        bind({[tapLeft]: "view/menu", [tapRight]: "page/next"})
        const editor = edit()
        compare(marks(editor, tapLeft), "")
        compare(marks(editor, tapRight), "")
        const changed = configuration()
        changed.gestures.find(gesture => gesture.zone === "center" && gesture.kind === "tap").defaultAction = "view/search"
        setConfiguration(changed)
        tryCompare(editor, "news", "", patience)
        tryVerify(() => value(editor, "ReadingTapCenterNoDirection", "actionTitle") === "Search", patience)
        compare(marks(editor, "ReadingTapCenterNoDirection"), "isDefault")
    }

    function test_resetOfOneGesture() {
        bind({[tapLeft]: "view/menu", [tapRight]: "view/menu"})
        const editor = edit()
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        verify(editor.resetGesture(tapRight))
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        compare(marks(editor, tapRight), "isDefault isEdited")
        compare(marks(editor, tapLeft), "")
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/menu"}))
        verify(editor.resetGesture(tapRight))
        compareState(editor, {hasChoices: true})
        verify(!editor.resetGesture("none"))
        compare(editor.problem, "There is no gesture “none”.")
    }

    function test_revert() {
        bind({[tapLeft]: "view/menu"})
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.resetGesture(tapLeft))
        editor.revert()
        compareState(editor, {hasChoices: true})
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        compare(value(editor, tapLeft, "actionTitle"), "Menu")
        editor.restoreDefaults()
        editor.revert()
        compareState(editor, {hasChoices: true})
        compare(value(editor, tapLeft, "actionTitle"), "Menu")
    }

    function test_restoreDefaults() {
        bind({[tapLeft]: "view/menu"})
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        editor.restoreDefaults()
        compareState(editor, {edited: true})
        compare(value(editor, tapLeft, "actionTitle"), "Previous page")
        compare(marks(editor, tapLeft), "isDefault isEdited")
        compare(marks(editor, tapRight), "isDefault")
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/menu"}))
        verify(editor.choose(tapRight, "view/search"))
        verify(editor.save())
        compareState(editor, {hasChoices: true, news: "Saved."})
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/search"}))
        editor.restoreDefaults()
        verify(editor.save())
        compareState(editor, {news: "Saved."})
        compare(JSON.stringify(bindings()), "{}")
        editor.restoreDefaults()
        compareState(editor, {})
    }

    function test_refusals_data() {
        return [
            {tag: "unknown gesture", id: "none", path: "view/menu", problem: "There is no gesture “none”."},
            {tag: "unknown action", id: tapRight, path: "no/such", problem: "“no/such” is not offered for this gesture."},
            {tag: "no action", id: tapRight, path: "", problem: "“” is not offered for this gesture."},
            {tag: "another gesture's action", id: tapRight, path: "view/close",
             problem: "“view/close” is not offered for this gesture."},
        ]
    }
    function test_refusals(row) {
        const editor = edit()
        verify(!editor.choose(row.id, row.path))
        compareState(editor, {problem: row.problem})
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        verify(editor.choose(tapRight, "view/menu")) // and the next good choice clears the sentence
        compareState(editor, {edited: true, hasChoices: true})
    }

    // A file that holds a binding to an action that only one gesture defines would load no gesture at all.
    function test_choiceThatWouldNotLoad() {
        const inline = configuration()
        inline.gestures.find(gesture => gesture.zone === "right").availableActions =
                ["page/next", {path: "own/thing", title: "Own thing"}]
        setConfiguration(inline)
        const editor = edit()
        verify(!editor.choose(tapRight, "own/thing"))
        compareState(editor, {problem: "“Own thing” cannot be chosen. The application could not read its gestures any "
                                       + "more (action 'own/thing' not defined)."})
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        verify(editor.save())
        compare(TestTree.userFiles().length, 0)
    }

    // The configuration becomes such a one between the choice and the save.
    function test_saveThatWouldNotLoad() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        const inline = configuration()
        inline.actions = inline.actions.filter(action => action.path !== "view/menu")
        for (const group in inline.actionGroups)
            inline.actionGroups[group] = inline.actionGroups[group].filter(path => path !== "view/menu")
        inline.gestures = [{modes: ["reading"], kind: "tap", zone: "right", defaultAction: "page/next",
                            availableActions: ["page/next", {path: "view/menu", title: "Menu"}]}]
        setConfiguration(inline)
        verify(!editor.save())
        compare(editor.saveProblem, "The choices were not saved. The application could not read its gestures any more "
                                    + "(action 'view/menu' not defined).")
        compare(TestTree.userFiles().length, 0)
        compare(testCase.saves, 0)
    }

    function test_choiceThatTheConfigurationOverrules() {
        const fixed = configuration()
        fixed.gestures.find(gesture => gesture.zone === "right").currentAction = "page/next"
        setConfiguration(fixed)
        const editor = edit()
        verify(!editor.choose(tapRight, "view/menu"))
        compare(editor.problem, "“Menu” cannot be chosen. The configuration itself decides what this gesture does.")
        verify(!editor.edited)
    }

    // The expectation follows the machine: few have a light of two colours.
    function test_actionThatTheDeviceLacks() {
        const lights = configuration()
        lights.gestures.find(gesture => gesture.zone === "right").availableActions = ["page/next", "light/warmer"]
        setConfiguration(lights)
        const editor = edit()
        const supported = editor.gesture(tapRight).availableActions[1].supported
        compare(editor.choose(tapRight, "light/warmer"), supported)
        compare(editor.problem, supported ? "" : "This device does not have what “Warmer” needs.")
        compare(editor.edited, supported)
    }

    function test_changeBelowAnEdit() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        bind({[tapLeft]: "view/search"})
        tryCompare(testCase, "choicesChanged", 1, patience)
        compareState(editor, {edited: true, hasChoices: true,
                              news: "Another program has changed the choices. Your unsaved choices are kept."})
        compare(value(editor, tapLeft, "actionTitle"), "Search")
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        compare(marks(editor, tapRight), "isEdited")
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/search", [tapRight]: "view/menu"}))
    }

    function test_changeOfTheEditedGesture() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        bind({[tapRight]: "view/search"})
        tryCompare(testCase, "choicesChanged", 1, patience)
        compare(marks(editor, tapRight), "isEdited isConflicting")
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        verify(editor.choose(tapRight, "view/search")) // is theirs
        compare(marks(editor, tapRight), "")
        verify(!editor.edited)
    }

    function test_changeWithoutEdits() {
        const editor = edit()
        bind({[tapRight]: "view/search"})
        tryCompare(editor, "news", "Another program has changed the choices.", patience)
        compare(value(editor, tapRight, "actionTitle"), "Search")
        TestTree.setChoices("reader", JSON.stringify({version: 1, actions: {}}))
        tryCompare(testCase, "choicesChanged", 2, patience)
        compare(value(editor, tapRight, "actionTitle"), "Next page")
    }

    // The report of the watch has not come yet.
    function test_changeThatASaveMeets() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        bind({[tapLeft]: "view/search"})
        verify(editor.save())
        compare(editor.news, "Saved. Another program had changed other choices.")
        compare(testCase.choicesChanged, 1)
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/search", [tapRight]: "view/menu"}))
    }

    // The binding of the fixed gesture has no effect, and is none of our edits.
    function test_changeWithoutEffectThatASaveMeets() {
        const fixed = configuration()
        fixed.gestures.find(gesture => gesture.zone === "left").currentAction = "page/previous"
        setConfiguration(fixed)
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        bind({[tapLeft]: "view/search"})
        verify(editor.save())
        compareState(editor, {hasChoices: true, news: "Saved. Another program had changed other choices."})
        compare(bindings()[tapRight], "view/menu")
    }

    // A save never replaces a choice that was not shown.
    function test_changeOfTheEditedGestureThatASaveMeets() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        bind({[tapRight]: "view/search"})
        verify(!editor.save())
        compare(editor.saveProblem, "Another program has changed a choice that is unsaved here. Check it, then save again.")
        compare(marks(editor, tapRight), "isEdited isConflicting")
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/search"}))
        compare(testCase.choicesChanged, 1)
        verify(editor.save())
        compareState(editor, {hasChoices: true, news: "Saved."})
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
    }

    function test_changeThatDefaultsMeet() {
        bind({[tapLeft]: "view/menu"})
        const editor = edit()
        editor.restoreDefaults()
        bind({[tapLeft]: "view/menu", [tapRight]: "view/search"})
        verify(!editor.save())
        verify(editor.saveProblem !== "")
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/menu", [tapRight]: "view/search"}))
        verify(editor.save())
        compare(JSON.stringify(bindings()), "{}")
    }

    function test_twoEditorsOfOneApplication() {
        const one = edit()
        const other = edit()
        verify(one.choose(tapRight, "view/menu"))
        verify(other.choose(tapLeft, "view/search"))
        verify(one.save())
        verify(other.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapLeft]: "view/search", [tapRight]: "view/menu"}))
        tryVerify(() => value(one, tapLeft, "actionTitle") === "Search", patience)
    }

    function test_configurationChanges() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.choose(tapLeft, "view/search"))
        const smaller = configuration()
        smaller.gestures = smaller.gestures.filter(gesture => gesture.zone !== "left")
        setConfiguration(smaller)
        tryCompare(testCase, "configurationChanged", 1, patience)
        compare(editor.news, "The gestures of the application have changed.")
        compare(editor.gesture(tapLeft), null)
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
    }

    function test_configurationLosesTheChosenAction() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        const smaller = configuration()
        smaller.gestures.find(gesture => gesture.zone === "right").availableActions = ["page/next"]
        setConfiguration(smaller)
        tryCompare(testCase, "configurationChanged", 1, patience)
        compare(value(editor, tapRight, "actionTitle"), "Next page")
        verify(!editor.edited)
    }

    function test_configurationBreaksAndComesBack() {
        const whole = configuration()
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        TestTree.setConfiguration("reader", "{")
        tryVerify(() => editor.problem !== "", patience)
        compare(editor.model.count, 0)
        verify(editor.edited)
        verify(!editor.save())
        verify(editor.saveProblem !== "")
        setConfiguration(whole)
        tryCompare(editor, "problem", "", patience)
        compare(editor.model.count, 22)
        compare(value(editor, tapRight, "actionTitle"), "Menu")
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
    }

    function test_noGestures_data() {
        return [
            {tag: "unknown", appId: "none", problem: /^There is no application “none”: no gestures were found in .*cfg\.json\.$/},
            {tag: "prohibited", appId: "launcher", problem: /^“launcher” may not have gestures of its own\.$/},
            {tag: "empty", appId: "", problem: /^No application was named\.$/},
        ]
    }
    function test_noGestures(row) {
        const editor = edit(row.appId)
        verify(row.problem.test(editor.problem), editor.problem)
        compare(editor.model.count, 0)
        editor.restoreDefaults()
        editor.revert()
        verify(!editor.edited)
        verify(!editor.choose(tapRight, "view/menu"))
        verify(editor.save())
        compare(TestTree.userFiles().length, 0)
        editor.appId = "reader"
        compareState(editor, {})
        compare(editor.model.count, 22)
    }

    function test_badFiles_data() {
        return [
            {tag: "no JSON", text: "{"},
            {tag: "another version", text: '{"version": 7, "actions": {}}'},
            {tag: "wrong types", text: '{"version": 1, "actions": []}'},
        ]
    }
    function test_badFiles(row) {
        TestTree.setChoices("reader", row.text)
        const editor = edit()
        compare(editor.problem, "")
        verify(/The file is kept as “cfg\.json\.rejected” when the settings save\.$/.test(editor.notice), editor.notice)
        compare(editor.model.count, 22)
        verify(editor.hasChoices)
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.save())
        compareState(editor, {hasChoices: true, news: "Saved."})
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
        compare(JSON.stringify(TestTree.userFiles()), JSON.stringify([reader, reader + ".rejected"]))
    }

    function test_defaultsPutABadFileAside() {
        TestTree.setChoices("reader", "{")
        const editor = edit()
        editor.restoreDefaults()
        verify(editor.edited)
        verify(!editor.hasChoices)
        verify(editor.save())
        compareState(editor, {news: "Saved."})
        compare(JSON.stringify(TestTree.userFiles()), JSON.stringify([reader, reader + ".rejected"]))
    }

    function test_choicesThatDoNotFit() {
        bind({[tapRight]: "no/such", [tapLeft]: "view/menu"})
        const editor = edit()
        compare(editor.model.count, 0)
        verify(/^Your choices do not fit the gestures of “reader”: action 'no\/such' not defined\. “Defaults” /
               .test(editor.problem), editor.problem)
        editor.restoreDefaults()
        compareState(editor, {edited: true})
        compare(editor.model.count, 22)
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
        compare(JSON.stringify(TestTree.userFiles()), JSON.stringify([reader, reader + ".rejected"]))
        compareState(editor, {hasChoices: true, news: "Saved."})
    }

    // Every service of another program writes all its gestures.
    function test_choicesOfAService() {
        const provider = createTemporaryQmlObject("import Vellix.Gesture 1.0; GestureServiceProvider { appId: 'reader' }",
                                                  testCase)
        tryVerify(() => provider.service !== null, patience)
        provider.readonly = false
        compare(provider.service.trySaveAsString(), "")
        provider.readonly = true
        const editor = edit()
        compare(marks(editor, tapRight), "")
        editor.restoreDefaults()
        verify(editor.choose(tapRight, "view/menu"))
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
        tryVerify(() => provider.service && Gestures.gestureById(provider.service, tapRight)
                        && Gestures.gestureById(provider.service, tapRight).currentAction.path === "view/menu", patience)
    }

    function test_unwritable() {
        TestTree.setChoices("reader/cfg.json/odd", "")
        const editor = edit()
        verify(/Choices cannot be saved: .* may not be written\.$/.test(editor.notice), editor.notice)
        verify(editor.choose(tapRight, "view/menu"))
        verify(!editor.save())
        verify(/^The choices were not saved: .* may not be written\.$/.test(editor.saveProblem), editor.saveProblem)
        verify(editor.edited)
        compare(testCase.saves, 0)
        verify(editor.choose(tapRight, "view/search"))
        compare(editor.saveProblem, "")
    }

    function test_anotherApplicationDropsTheEdits() {
        const editor = edit()
        verify(editor.choose(tapRight, "view/menu"))
        editor.appId = "notes"
        compareState(editor, {})
        verify(editor.model.count > 0 && editor.model.count !== 22)
        editor.appId = "reader"
        compareState(editor, {})
        compare(testCase.choicesChanged + testCase.configurationChanged, 0)
    }

    function test_gesturesOfOneId() {
        const twice = configuration()
        const one = twice.gestures.find(gesture => gesture.zone === "right")
        twice.gestures.push(Object.assign({}, one, {kind: "hold", id: tapRight}))
        setConfiguration(twice)
        const editor = edit()
        compare(editor.model.count, 23)
        verify(editor.choose(tapRight, "view/menu"))
        const titles = []
        for (let row = 0; row < 23; ++row) {
            const index = editor.model.index(row, 0)
            if (editor.model.data(index, Qt.UserRole + 1) === tapRight)
                titles.push(editor.model.data(index, Qt.UserRole + 5))
        }
        compare(titles.join(), "Menu,Menu")
        verify(editor.save())
        compare(JSON.stringify(bindings()), JSON.stringify({[tapRight]: "view/menu"}))
    }

    function test_titlesArePlain() {
        const odd = configuration()
        odd.actions.find(action => action.path === "view/menu").titles = ["View", "<b>Menu</b> %1 %2"]
        setConfiguration(odd)
        const editor = edit()
        verify(!editor.choose(tapRight, "%1"))
        compare(editor.problem, "“%1” is not offered for this gesture.")
        verify(editor.choose(tapRight, "view/menu"))
        compare(value(editor, tapRight, "actionTitle"), "<b>Menu</b> %1 %2")
    }

    function test_modesAsWords_data() {
        return [
            {tag: "reading", words: "Reading"}, {tag: "textSelection", words: "Text selection"},
            {tag: "text_selection", words: "Text selection"}, {tag: "two-pages", words: "Two pages"},
            {tag: "PDF", words: "PDF"}, {tag: "readPDF", words: "ReadPDF"}, {tag: "aB", words: "A b"},
            {tag: "_", words: "_"}, {tag: "éClair", words: "É clair"},
        ]
    }
    function test_modesAsWords(row) {
        compare(Gestures.modeTitle(row.tag), row.words)
    }

    function test_functions() {
        compare(Gestures.directionFromVec(-3, 1), Gesture.ToLeft)
        compare(Gestures.directionFromVec(3, 1), Gesture.ToRight)
        compare(Gestures.directionFromVec(1, -3), Gesture.ToTop)
        compare(Gestures.directionFromVec(1, 3), Gesture.ToBottom)
        compare(Gestures.directionFromVec(2, -2), Gesture.NoDirection)
        compare(Gestures.touchTitle(Gesture.Swipe, Gesture.ToLeft), "Swipe to the left")
        compare(Gestures.touchTitle(Gesture.Drag, Gesture.NoDirection), "Drag")
        compare(Gestures.touchTitle(Gesture.Tap, Gesture.ToLeft), "Tap")
        compare(Gestures.kindTitle(Gesture.Hold), "Hold")
        compare(Gestures.kindTitle(99), "Gesture")
        compare(Gestures.zoneTitle(Qt.rect(0, 0, 1, 1)), "")
        compare(Gestures.zoneTitle(Qt.rect(0, 0, 0.5, 0.1)), "in the top left corner (x 0–50 %, y 0–10 %)")
        compare(Gestures.gestureTitle(null), "")
        compare(Gestures.sectionTitle(null), "")
        compare(Gestures.actionTitle(null), "Nothing")
        compare(Gestures.gestureById(null, tapRight), null)
        Gestures.announce(null)
        const editor = edit()
        compare(Gestures.gestureTitle(editor.gesture(tapRight)), "Tap, on the right")
        compare(Gestures.sectionTitle(editor.gesture(tapRight)), "Reading: tap")
        compare(Gestures.actionTitle(editor.gesture(tapRight).currentAction), "Next page")
    }
}
