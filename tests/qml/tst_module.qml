import QtQml 2.15
import QtQml.Models 2.15
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Test 1.0

TestCase {
    id: testCase
    name: "Module"

    property var noted: [] // the arguments of signals
    property var deaths: [] // the watched objects that were destroyed in this round
    property int round: 0 // objects of an earlier test may be destroyed in a later one
    property var held: null
    property QtObject target: null
    property var configuration // the sample configuration
    property var supported: ({}) // the features of this device, by name

    readonly property int patience: 60000 // milliseconds, for results that only a busy machine delays
    readonly property var sentences: ({
        Gesture: "A Gesture comes from a GestureService: its model or its find functions",
        GestureAction: "A GestureAction comes from a Gesture: its current, default and available actions",
        GestureActionNode: "A GestureActionNode comes from a Gesture's actionTree",
        GestureFeature: "A GestureFeature comes from the features of a Gesture or a GestureAction",
        GestureService: "A GestureService comes from a GestureServiceProvider's service",
    })

    readonly property var whole: [0, 0, 1, 1]
    readonly property var strip: [0, 0.1, 0.08, 0.8]
    readonly property var footer: [0, 0.92, 1, 0.08]

    // Id, modes, kind, zone, direction, group or list of available actions, default action, current action if
    // different.
    readonly property var rows: [
        ["ReadingTapCornerNoDirection", ["reading"], 0, [0.85, 0, 0.15, 0.12], 4, "reading", "view/bookmark"],
        ["ReadingTapLeftNoDirection", ["reading"], 0, [0, 0.2, 0.25, 0.6], 4, "reading", "page/previous"],
        ["ReadingTapRightNoDirection", ["reading"], 0, [0.75, 0.2, 0.25, 0.6], 4, "reading", "page/next"],
        ["ReadingTapCenterNoDirection", ["reading"], 0, [0.25, 0.2, 0.5, 0.6], 4, "reading", "view/menu"],
        ["ReadingTapFooterNoDirection", ["reading"], 0, footer, 4, "reading", "chapter/list"],
        ["ReadingAloud", ["reading"], 1, [0.25, 0, 0.5, 0.2], 4, "reading",
            ["speech/toggle", "light/toggle", "view/search"]],
        ["ReadingHoldCenterNoDirection", ["reading"], 1, [0.25, 0.2, 0.5, 0.6], 4, ["select/start"], "select/start"],
        ["ReadingHoldLeftBottomNoDirection", ["reading"], 1, [0, 0.8, 0.25, 0.2], 4, [], null, "view/refresh"],
        ["ReadingSwipeNotSetToLeft", ["reading"], 2, whole, 0, "turning", "page/next"],
        ["ReadingSwipeNotSetToRight", ["reading"], 2, whole, 1, "turning", "page/previous"],
        ["BrighterSwipe", ["reading"], 2, strip, 2, "lighting", "light/brighter"],
        ["DarkerSwipe", ["reading"], 2, strip, 3, "lighting", "light/darker"],
        ["ReadingSwipeNotSetToTop", ["reading"], 2, whole, 2, "reading", "text/larger"],
        ["ReadingSwipeNotSetToBottom", ["reading"], 2, whole, 3, "reading", "text/smaller"],
        ["Scrubbing", ["reading"], 3, footer, 1, ["page/forward", "chapter/next"], "page/forward"],
        ["ScrubbingBack", ["reading"], 3, footer, 0, ["page/back", "chapter/previous"], "page/back"],
        ["SelectingTapWholeNoDirection", ["selecting"], 0, whole, 4, "selecting", "select/cancel"],
        ["SelectingHoldWholeNoDirection", ["selecting"], 1, whole, 4, "selecting", "select/lookup"],
        ["SelectingDragWholeNoDirection", ["selecting"], 3, whole, 4, "selecting", "select/highlight"],
        ["MenuTapWholeNoDirection", ["menu"], 0, whole, 4, [], null, "view/close"],
        ["MenuSelectingSwipeNotSetToBottom", ["menu", "selecting"], 2, whole, 3, ["view/close"], "view/close"],
        ["Thumb", [], 1, [0.875, 0, 0.125, 1], 4, ["view/menu", "view/refresh"], "view/menu"],
    ]


    Component {
        id: readerComponent
        GestureServiceProvider {
            appId: "reader"
            readonly: true
        }
    }
    Component {
        id: writableComponent
        GestureServiceProvider {
            appId: "reader"
            readonly: false
        }
    }
    Component {
        id: filterOfWhatWasSetComponent
        GestureKindFilterModel {
            whiteList: [Gesture.Drag, Gesture.Hold]
            blackList: [Gesture.Hold]
            noActionVisible: true
        }
    }
    Component {
        id: typedComponent
        QtObject {
            property Gesture gesture
            property GestureAction action
            property GestureActionNode node
            property GestureFeature feature
            property GestureService service
            property GestureServiceProvider provider
            property GestureKindFilterModel filter
        }
    }
    Component {
        id: delegatesComponent
        Instantiator {
            delegate: QtObject {
                required property var display
            }
        }
    }
    Component {
        id: gesturesComponent
        Connections {
            function onGesturesChanged(model) { testCase.note(model) }
        }
    }
    Component {
        id: titleComponent
        QtObject {
            property Gesture gesture
            readonly property string text: gesture.currentAction.lastTitle
        }
    }
    Component {
        id: followerComponent
        QtObject {
            property GestureAction action
            readonly property string text: {
                testCase.note("evaluated")
                return action.lastTitle
            }
        }
    }
    // The action of a menu, in the same file as the module.
    Component {
        id: menuActionComponent
        Action {
            text: "Open"
        }
    }

    function initTestCase() {
        TestTree.reset()
        configuration = JSON.parse(TestTree.configuration("reader"))
        TestTree.setConfiguration("device", JSON.stringify({
            actions: [{path: "a", title: "A"}],
            gestures: ["frontlight", "smartlight", "tts"].map(
                name => ({id: name, kind: "tap", zone: "whole", defaultAction: "a", features: [name]}))}))
        const device = createTemporaryObject(readerComponent, testCase, {appId: "device"})
        compare(device.service.gestures.rowCount(), 3)
        for (const feature of gesturesOf(device.service))
            supported[feature.id] = feature.supported
    }

    function init() {
        TestTree.reset()
        noted = []
        deaths = []
        round += 1
    }

    // Functions, because qmllint knows no members of a `var`.
    function seen() {
        return noted
    }

    function note(value) {
        seen().push(value)
    }

    function dead() {
        return deaths
    }

    function noteDead(name) {
        dead().push(name)
    }

    function document() {
        return configuration
    }

    function sample() {
        return rows
    }

    function newReader() {
        return createTemporaryObject(readerComponent, testCase)
    }

    // The names of the signals' parameters are part of the interface.
    function newTalkingProvider(appId) {
        return createTemporaryQmlObject("import Vellix.Gesture 1.0; GestureServiceProvider { "
            + (appId ? "appId: '" + appId + "';" : "")
            + "onAppIdChanged: testCase.note('appId ' + value);
               onReadonlyChanged: testCase.note('readonly ' + value);
               onServiceChanged: testCase.note(value ? 'service' : 'none') }", testCase)
    }

    function newFilter(properties) {
        const filter = createTemporaryQmlObject("import Vellix.Gesture 1.0; GestureKindFilterModel {
            onBlackListChanged: testCase.note('black ' + value.join());
            onWhiteListChanged: testCase.note('white ' + value.join());
            onNoActionVisibleChanged: testCase.note('noAction ' + value) }", testCase)
        return Object.assign(filter, properties)
    }

    function gestureAt(service, row) {
        return service.gestures.data(service.gestures.index(row, 0), Qt.DisplayRole)
    }

    function gesturesOf(service) {
        return sequence(service.gestures.rowCount()).map(row => gestureAt(service, row))
    }

    function gestureOf(service, id) {
        return gesturesOf(service).find(gesture => gesture.id === id)
    }

    function idsOf(model) {
        return sequence(model.rowCount()).map(row => model.data(model.index(row, 0)).id)
    }

    function sequence(length) {
        return Array.from({length: length}, (_, i) => i)
    }

    // A list property is not an array.
    function listed(list) {
        return sequence(list.length).map(i => list[i])
    }

    function actionsOf(gesture) {
        const all = listed(gesture.availableActions).concat(gesture.defaultAction, gesture.currentAction)
        return all.filter(action => action)
    }

    function pathsOf(actions) {
        return listed(actions).map(action => action.path)
    }

    function definitionOf(path) {
        return document().actions.find(action => action.path === path)
    }

    function isSupported(path) {
        return (definitionOf(path).features || []).every(feature => supported[feature])
    }

    function hex(number) {
        return ("0000000" + number.toString(16)).slice(-8)
    }

    function sectionOf(modes, kind) {
        const letters = text => text.split("").map(letter => hex(letter.charCodeAt(0)).slice(4)).join("")
        return hex(modes.length) + modes.map(mode => hex(2 * mode.length) + letters(mode)).join("") + hex(kind)
    }

    // All readable properties of an object, as text.
    function describeFeature(feature) {
        return [feature.name, feature.supported]
    }

    function describeAction(action) {
        return action && [action.path, action.titles.join(), action.lastTitle, action.supported,
                          listed(action.features).map(describeFeature)]
    }

    function describeNode(node) {
        return node && [node.level, node.pathSegment, node.title, describeAction(node.action),
                        listed(node.childNodes).map(describeNode)]
    }

    function describeGesture(gesture) {
        return [gesture.id, gesture.modes.join(), gesture.kind, "" + gesture.zone, gesture.direction, gesture.section,
                gesture.supported, listed(gesture.features).map(describeFeature),
                listed(gesture.availableActions).map(describeAction), describeAction(gesture.defaultAction),
                describeAction(gesture.currentAction), describeNode(gesture.actionTree)]
    }

    function describe(service) {
        return JSON.stringify([service.readonly, "" + typeof service.featuresProvider,
                               gesturesOf(service).map(describeGesture)])
    }

    // A child that reports its end also reports its parent's. The engine could collect properties of our own before it.
    function watch(object, name) {
        Qt.createQmlObject("import QtQml 2.15; QtObject { Component.onDestruction: if (testCase.round === " + round
                           + ") testCase.noteDead('" + name + "') }", object)
    }

    // Gestures share actions and features: each is watched once.
    function watchEverything(service) {
        const known = []
        const once = (object, name) => {
            if (known.includes(object))
                return
            known.push(object)
            watch(object, name)
        }
        once(service, "service")
        once(service.gestures, "model")
        for (const gesture of gesturesOf(service)) {
            once(gesture, gesture.id)
            listed(gesture.features).forEach(feature => once(feature, feature.name))
            actionsOf(gesture).forEach(action => once(action, action.path))
            if (gesture.actionTree) {
                once(gesture.actionTree, gesture.id + ": .")
                listed(gesture.actionTree.childNodes).forEach(node => once(node, gesture.id + ": " + node.pathSegment))
            }
        }
        return known.length
    }

    // The collector releases its finds with deferred deletes.
    function collect() {
        for (let i = 0; i < 3; ++i) {
            gc()
            wait(i === 1 ? 10 : 0)
        }
    }

    function messageOf(makeIt) {
        try {
            makeIt()
        } catch (error) {
            return error.qmlErrors ? error.qmlErrors.map(one => one.message).join() : "" + error
        }
        return "nothing was thrown"
    }

    // Types that QML can create, and those that it cannot.

    function test_provider_is_made_with_its_properties() {
        const provider = createTemporaryObject(writableComponent, testCase)
        compare(provider.appId, "reader")
        compare(provider.readonly, false)
        compare(provider.service.readonly, false)
        compare(provider.service.gestures.rowCount(), 22)
        watch(provider.service, "service")
        wait(50)
        compare(dead(), []) // the event loop does not make it again
        compare(gestureAt(provider.service, 0).id, "ReadingTapCornerNoDirection")
    }

    function test_provider_makes_its_service_from_the_event_loop() {
        const provider = newTalkingProvider()
        compare(provider.appId, "tst_qml")
        compare(provider.readonly, true)
        compare(provider.service, null)
        TestTree.setConfiguration("tst_qml", TestTree.configuration("notes"))
        tryVerify(() => provider.service, patience)
        compare(seen(), ["service"])
        compare(provider.service.readonly, true)
        compare(provider.service.gestures.rowCount(), 3)
    }

    function test_filter_is_made_with_its_properties() {
        const plain = newFilter()
        compare(plain.whiteList, [])
        compare(plain.blackList, [])
        compare(plain.noActionVisible, false)
        const filter = createTemporaryObject(filterOfWhatWasSetComponent, testCase,
                                             {sourceModel: newReader().service.gestures})
        compare(filter.whiteList, [Gesture.Drag, Gesture.Hold])
        compare(filter.blackList, [Gesture.Hold])
        compare(filter.noActionVisible, true)
    }

    function test_not_creatable_data() {
        return Object.keys(sentences).map(type => ({tag: type, sentence: sentences[type]}))
    }
    function test_not_creatable(row) {
        const text = "import Vellix.Gesture 1.0; " + row.tag + " {}"
        compare(messageOf(() => Qt.createQmlObject(text, testCase, "x")), row.sentence)
        // The same as for a loaded page.
        const component = Qt.createComponent("data:text/plain," + encodeURIComponent(text), testCase)
        tryVerify(() => component.status === Component.Error, patience)
        compare(component.errorString().trim(), ":1 " + row.sentence)
        component.destroy()
    }

    function test_no_such_type_data() {
        return ["Action", "ActionProxyNode", "Feature", "FeaturesProvider", "ReadonlyLazyListModel",
                "QmlGestureServiceProvider"].map(type => ({tag: type}))
    }
    function test_no_such_type(row) {
        compare(messageOf(() => Qt.createQmlObject("import Vellix.Gesture 1.0; " + row.tag + " {}", testCase, "x")),
                row.tag + " is not a type")
    }

    function test_only_version_1_0() {
        compare(messageOf(() => Qt.createQmlObject("import Vellix.Gesture 1.1; GestureServiceProvider {}", testCase)),
                'module "Vellix.Gesture" version 1.1 is not installed')
    }

    function test_enums() {
        compare([Gesture.Tap, Gesture.Hold, Gesture.Swipe, Gesture.Drag, Gesture.Undefined], [0, 1, 2, 3, 4])
        compare([Gesture.ToLeft, Gesture.ToRight, Gesture.ToTop, Gesture.ToBottom, Gesture.NoDirection],
                [0, 1, 2, 3, 4])
    }

    function test_action_of_the_controls_stays_theirs_data() {
        return [
            {tag: "before", imports: "import QtQuick.Controls 2.15; import Vellix.Gesture 1.0;"},
            {tag: "after", imports: "import Vellix.Gesture 1.0; import QtQuick.Controls 2.15;"},
        ]
    }
    function test_action_of_the_controls_stays_theirs(row) {
        const action = createTemporaryObject(menuActionComponent, testCase)
        compare(action.text, "Open")
        const made = createTemporaryQmlObject(
            row.imports + "Action { property GestureAction other; property int kind: Gesture.Drag; text: 'Close' }",
            testCase)
        compare(made.text, "Close")
        compare(made.kind, 3)
        made.other = gestureAt(newReader().service, 0).currentAction
        compare(made.other.path, "view/bookmark")
    }

    function test_types_name_what_the_objects_are() {
        const typed = createTemporaryObject(typedComponent, testCase)
        const provider = newReader()
        const gesture = gestureOf(provider.service, "BrighterSwipe")
        const menu = gestureAt(provider.service, 0).actionTree
        typed.provider = provider
        typed.service = provider.service
        typed.gesture = gesture
        typed.action = gesture.currentAction
        typed.node = menu
        typed.feature = gesture.features[0]
        typed.filter = newFilter()
        compare(typed.provider.appId, "reader")
        compare(typed.service, provider.service)
        compare(typed.gesture.id, "BrighterSwipe")
        compare(typed.action.path, "light/brighter")
        compare(typed.node.pathSegment, ".")
        compare(typed.feature.name, "frontlight")
        compare(typed.filter.noActionVisible, false)
        compare(messageOf(() => typed.action = gesture).startsWith("Error: Cannot assign"), true)
    }

    // Properties and functions.

    function test_service() {
        const service = newReader().service
        compare(service.readonly, true)
        compare("" + service.featuresProvider, "QVariant(const vellix::gesture::FeaturesProvider*, )")
        const model = service.gestures
        compare(model, service.gestures)
        compare(model.rowCount(), 22)
        compare(model.rowCount(model.index(0, 0)), 0)
        compare(model.data(model.index(2, 0)).id, "ReadingTapRightNoDirection") // the display role
        compare(model.data(model.index(2, 0), Qt.UserRole), undefined)
        ignoreWarning(/checkindex: .* is not valid|Index QModelIndex.* is not valid/)
        compare(model.data(model.index(22, 0)), undefined)
    }

    function test_delegates_have_the_gesture_as_display() {
        const delegates = createTemporaryObject(delegatesComponent, testCase, {model: newReader().service.gestures})
        compare(sequence(delegates.count).map(i => delegates.objectAt(i).display.id), sample().map(row => row[0]))
    }

    function test_gesture_data() {
        return sample().map((row, i) => ({tag: row[0], row: i}))
    }
    function test_gesture(row) {
        const gesture = gestureAt(newReader().service, row.row)
        const [id, modes, kind, zone, direction, available, defaults, current] = sample()[row.row]
        compare(gesture.id, id)
        compare(gesture.modes, modes)
        compare(gesture.kind, kind)
        compare(gesture.direction, direction)
        const found = [gesture.zone.x, gesture.zone.y, gesture.zone.width, gesture.zone.height]
        found.forEach((number, i) => fuzzyCompare(number, zone[i], 1e-9))
        compare(gesture.section, sectionOf(modes, kind))

        const paths = typeof available === "string" ? document().actionGroups[available].filter(isSupported) : available
        compare(gesture.availableActions.length, paths.length)
        compare(pathsOf(gesture.availableActions), paths)
        const path = Array.isArray(defaults) ? defaults.find(isSupported) : defaults
        compare(gesture.defaultAction ? gesture.defaultAction.path : null, path)
        compare(gesture.currentAction.path, current || path)

        const features = document().gestures[row.row].features || []
        compare(gesture.features.length, features.length)
        compare(listed(gesture.features).map(feature => feature.name), features)
        compare(listed(gesture.features).map(feature => feature.supported), features.map(name => supported[name]))
        compare(gesture.supported, features.every(name => supported[name]))
    }

    function test_actions() {
        const service = newReader().service
        let count = 0
        for (const gesture of gesturesOf(service)) {
            for (const action of actionsOf(gesture)) {
                if (gesture.id === "MenuSelectingSwipeNotSetToBottom")
                    continue // one of its own
                const definition = definitionOf(action.path)
                const features = definition.features || []
                compare(action.titles, definition.titles)
                compare(action.lastTitle, definition.titles[1])
                compare(listed(action.features).map(feature => feature.name).sort(), features)
                compare(listed(action.features).map(feature => feature.supported),
                        listed(action.features).map(feature => supported[feature.name]))
                compare(action.supported, isSupported(action.path))
                count += 1
            }
        }
        verify(count > 100)
        // An action that its gesture defines itself.
        const close = gestureOf(service, "MenuSelectingSwipeNotSetToBottom").availableActions[0]
        compare([close.path, close.titles, close.lastTitle, close.supported], ["view/close", ["Close"], "Close", true])
    }

    // The library only connects the titles to the last one for listeners: a binding is one.
    function test_last_title_follows_the_titles() {
        const action = gestureAt(newReader().service, 0).currentAction
        const follower = createTemporaryObject(followerComponent, testCase, {action: action})
        compare(follower.text, "Bookmark")
        compare(seen(), ["evaluated"])
        action.titlesChanged(action.titles)
        compare(seen(), ["evaluated", "evaluated"])
    }

    function test_features_of_an_action() {
        const actions = [["frontlight"], ["frontlight", "smartlight", "tts"], []]
        TestTree.setConfiguration("features", JSON.stringify({
            actions: actions.map((features, i) => ({path: "a" + i, title: "A", features: features})),
            gestures: [{kind: "tap", zone: "whole", availableActions: ["a0", "a1", "a2"], defaultAction: "a2"}]}))
        const gesture = gestureAt(createTemporaryObject(readerComponent, testCase, {appId: "features"}).service, 0)
        const names = action => listed(action.features).map(feature => feature.name).sort() // without order
        compare(listed(gesture.availableActions).map(names), actions)
        compare(listed(gesture.availableActions).map(action => action.supported),
                actions.map(features => features.every(name => supported[name])))
    }

    function test_action_tree() {
        const service = newReader().service
        const gesture = gestureAt(service, 0)
        const root = gesture.actionTree
        compare(gesture.actionTree, root) // made once
        compare([root.level, root.pathSegment, root.title, root.action], [0, ".", "", null])

        const menu = [] // by first segment, in the order of the actions
        for (const path of pathsOf(gesture.availableActions)) {
            const [first, second] = path.split("/")
            const [title, ownTitle] = definitionOf(path).titles
            if (!menu.some(entry => entry.segment === first))
                menu.push({segment: first, title: title, path: path, leaves: []})
            menu.find(entry => entry.segment === first).leaves.push([1, second, ownTitle, path, 0])
        }
        compare(root.childNodes.length, menu.length)
        compare(menu.slice(0, 3).map(entry => entry.segment), ["page", "chapter", "text"])
        listed(root.childNodes).forEach((node, i) => {
            compare([node.level, node.pathSegment, node.title, node.action.path],
                    [0, menu[i].segment, menu[i].title, menu[i].path])
            compare(listed(node.childNodes).map(leaf => [leaf.level, leaf.pathSegment, leaf.title, leaf.action.path,
                                                         leaf.childNodes.length]), menu[i].leaves)
        })

        compare(gestureOf(service, "MenuTapWholeNoDirection").actionTree, null)
        const close = gestureOf(service, "MenuSelectingSwipeNotSetToBottom").actionTree.childNodes[0]
        compare([close.title, close.childNodes[0].title], ["Close", ""]) // fewer titles than segments
    }

    function test_ancestors_in_the_action_tree() {
        const gesture = gestureAt(newReader().service, 0)
        const root = gesture.actionTree
        const page = root.childNodes[0]
        const pageNext = gesture.availableActions[0]
        const chapterNext = listed(gesture.availableActions).find(action => action.path === "chapter/next")
        compare([root.isAnsestorOf(pageNext), root.isAnsestorOf(chapterNext)], [true, true])
        compare([page.isAnsestorOf(pageNext), page.isAnsestorOf(chapterNext)], [true, false])
        compare(page.childNodes[0].isAnsestorOf(pageNext), false)
        compare(root.isAnsestorOf(null), false)
    }

    function test_current_action() {
        const gesture = gestureOf(newReader().service, "ReadingTapRightNoDirection")
        ignoreWarning(/Implicitly defined onFoo properties in Connections are deprecated/)
        target = gesture
        createTemporaryQmlObject("import QtQml 2.15; Connections { target: testCase.target;
            onCurrentActionChanged: testCase.note(value ? value.path : 'none') }", testCase)
        const chosen = gesture.availableActions[5]
        compare(chosen.path, "chapter/previous")
        gesture.currentAction = chosen
        compare(gesture.currentAction, chosen)
        compare(gesture.defaultAction.path, "page/next")
        gesture.currentAction = chosen
        compare(seen(), ["chapter/previous"]) // once
        gesture.currentAction = null
        compare(gesture.currentAction, null)
        gesture.currentAction = gesture.defaultAction
        compare(seen(), ["chapter/previous", "none", "page/next"])

        for (const wrong of [gesture, "page/next", 1, undefined])
            compare(messageOf(() => gesture.currentAction = wrong).startsWith("Error: Cannot assign"), true)
        compare(gesture.currentAction.path, "page/next")
        compare(seen().length, 3)
    }

    function test_bindings_follow_the_current_action() {
        const gesture = gestureAt(newReader().service, 0)
        const shown = createTemporaryObject(titleComponent, testCase, {gesture: gesture})
        compare(shown.text, "Bookmark")
        gesture.currentAction = gesture.availableActions[0]
        compare(shown.text, "Next page")
    }

    function test_read_only_properties() {
        const service = newReader().service
        const gesture = gestureOf(service, "BrighterSwipe")
        const objects = [
            [service, ["featuresProvider", "readonly", "gestures"]],
            [gesture, ["id", "modes", "kind", "zone", "direction", "availableActions", "defaultAction", "actionTree",
                       "section", "supported"]],
            [gesture.currentAction, ["path", "titles", "lastTitle", "supported"]],
            [gestureAt(service, 0).actionTree, ["level", "pathSegment", "title", "action"]],
            [gesture.features[0], ["name", "supported"]],
        ]
        const before = describe(service)
        for (const [object, names] of objects) {
            for (const name of names) {
                compare(messageOf(() => object[name] = object[name]),
                        'TypeError: Cannot assign to read-only property "' + name + '"')
            }
        }
        const lists = [
            [gesture, "features", gesture.features[0]],
            [gesture.currentAction, "features", gesture.features[0]],
            [gestureAt(service, 0).actionTree, "childNodes", gestureAt(service, 0).actionTree.childNodes[0]],
        ]
        for (const [object, name, element] of lists) {
            for (const value of [[], [element], object[name], null, undefined])
                verify(messageOf(() => object[name] = value).startsWith("Error: Cannot assign"))
            compare(messageOf(() => object[name].push(element)), "Error: List doesn't define an Append function")
            compare(messageOf(() => object[name][0] = null), "nothing was thrown")
        }
        gesture.availableActions.pop() // changes a copy
        compare(describe(service), before)
    }

    function test_find_gesture_data() {
        const point = Qt.point
        return [
            {tag: "right", mode: "reading", kind: Gesture.Tap, direction: Gesture.NoDirection, at: point(0.9, 0.5),
                id: "ReadingTapRightNoDirection"},
            {tag: "the first in the file", mode: "reading", kind: Gesture.Tap, direction: Gesture.NoDirection,
                at: point(0.9, 0.05), id: "ReadingTapCornerNoDirection"},
            {tag: "a strip before the whole", mode: "reading", kind: Gesture.Swipe, direction: Gesture.ToBottom,
                at: point(0.5, 0.5), id: "ReadingSwipeNotSetToBottom"},
            {tag: "strip", mode: "reading", kind: Gesture.Swipe, direction: Gesture.ToBottom, at: point(0.05, 0.5),
                id: "DarkerSwipe"},
            {tag: "drag", mode: "reading", kind: Gesture.Drag, direction: Gesture.ToLeft, at: point(0.5, 0.95),
                id: "ScrubbingBack"},
            {tag: "second mode", mode: "selecting", kind: Gesture.Swipe, direction: Gesture.ToBottom,
                at: point(0.5, 0.5), id: "MenuSelectingSwipeNotSetToBottom"},
            {tag: "any mode", mode: "elsewhere", kind: Gesture.Hold, direction: Gesture.NoDirection,
                at: point(0.9, 0.5), id: "Thumb"},
            {tag: "no mode like it", mode: "elsewhere", kind: Gesture.Tap, direction: Gesture.NoDirection,
                at: point(0.9, 0.5), id: null},
            {tag: "another direction", mode: "reading", kind: Gesture.Tap, direction: Gesture.ToTop,
                at: point(0.9, 0.5), id: null},
            {tag: "undefined kind", mode: "reading", kind: Gesture.Undefined, direction: Gesture.NoDirection,
                at: point(0.9, 0.5), id: null},
            {tag: "no kind at all", mode: "reading", kind: -7, direction: 1000, at: point(0.9, 0.5), id: null},
            {tag: "off the screen", mode: "reading", kind: Gesture.Tap, direction: Gesture.NoDirection,
                at: point(1.5, 0.5), id: null},
        ]
    }
    function test_find_gesture(row) {
        const service = newReader().service
        const gesture = service.findGestureAsQObject(row.mode, row.kind, row.direction, row.at)
        compare(gesture ? gesture.id : gesture, row.id)
        if (gesture)
            compare(gesture, gestureOf(service, row.id)) // the same object
        // The smallest zone around the point finds the same.
        const zone = Qt.rect(row.at.x, row.at.y, 0.001, 0.001)
        const byZone = service.findGestureByZoneAsQObject(row.mode, row.kind, row.direction, zone)
        compare(byZone, gesture)
    }

    function test_find_gesture_by_zone_data() {
        return [
            {tag: "the same", zone: Qt.rect(0.75, 0.2, 0.25, 0.6), id: "ReadingTapRightNoDirection"},
            {tag: "within", zone: Qt.rect(0.8, 0.3, 0.1, 0.1), id: "ReadingTapRightNoDirection"},
            {tag: "across a border", zone: Qt.rect(0.7, 0.3, 0.1, 0.1), id: null},
        ]
    }
    function test_find_gesture_by_zone(row) {
        const gesture = newReader().service.findGestureByZoneAsQObject("reading", Gesture.Tap, Gesture.NoDirection,
                                                                       row.zone)
        compare(gesture ? gesture.id : gesture, row.id)
    }

    function test_contains_gesture_kind() {
        const kinds = [Gesture.Tap, Gesture.Hold, Gesture.Swipe, Gesture.Drag, Gesture.Undefined, -1, 100]
        const service = newReader().service
        compare(kinds.map(kind => service.containsGestureKind(kind)), [true, true, true, true, false, false, false])
        const notes = createTemporaryObject(readerComponent, testCase, {appId: "notes"}).service
        compare(kinds.map(kind => notes.containsGestureKind(kind)), [false, true, true, false, false, false, false])
    }

    function test_clone_data() {
        return [{tag: "with a parent", parent: testCase}, {tag: "with null", parent: null}, {tag: "without"}]
    }
    function test_clone(row) {
        const service = newReader().service
        const before = describe(service)
        const clone = row.parent === undefined ? service.cloneAsQObject() : service.cloneAsQObject(row.parent)
        verify(clone !== service)
        compare(describe(clone), before)
        verify(gestureAt(clone, 0) !== gestureAt(service, 0))
        compare(gestureAt(clone, 0).currentAction, gestureAt(service, 0).currentAction) // shared
        gestureAt(clone, 0).currentAction = gestureAt(clone, 0).availableActions[0]
        compare(describe(service), before)
        verify(describe(clone) !== before)
        clone.destroy()
    }

    function test_merge() {
        const service = newReader().service
        const clone = service.cloneAsQObject()
        createTemporaryObject(gesturesComponent, testCase, {target: service})
        gestureAt(clone, 2).currentAction = gestureAt(clone, 2).availableActions[4]
        gestureAt(clone, 3).currentAction = null
        compare(service.fastMergeWithQObject(clone), true)
        compare(gestureAt(service, 2).currentAction.path, "chapter/next")
        compare(gestureAt(service, 3).currentAction, null)
        compare(gestureAt(service, 4).currentAction.path, "chapter/list")
        compare(seen().length, 1)
        compare(seen()[0], service.gestures)

        const notes = createTemporaryObject(readerComponent, testCase, {appId: "notes"}).service
        const before = describe(service)
        for (const other of [notes, service.gestures, gestureAt(service, 0), testCase, null])
            compare(service.fastMergeWithQObject(other), false)
        compare(describe(service), before)
        compare(seen().length, 1)
    }

    function test_save() {
        const reader = newReader().service
        compare(reader.save(), false)
        compare(TestTree.userFiles(), [])

        const provider = createTemporaryObject(writableComponent, testCase)
        const service = provider.service
        const gesture = gestureOf(service, "ReadingTapRightNoDirection")
        gesture.currentAction = gesture.availableActions[4]
        compare(service.save(), true)
        compare(TestTree.userFiles(), ["gestures/apps/current/reader/cfg.json"])
        const saved = JSON.parse(TestTree.choices("reader"))
        compare(saved.version, 1)
        compare(Object.keys(saved.actions).sort(), sample().map(row => row[0]).sort())
        compare(saved.actions.ReadingTapRightNoDirection, "chapter/next")
        compare(saved.actions.ReadingTapLeftNoDirection, "page/previous")
        compare(gestureOf(newReader().service, "ReadingTapRightNoDirection").currentAction.path, "chapter/next")
    }

    function test_prune() {
        TestTree.setChoices("reader", '{"actions": {"Thumb": "view/refresh"}, "version": 1}')
        const service = createTemporaryObject(writableComponent, testCase).service
        compare(gestureOf(service, "Thumb").currentAction.path, "view/refresh")
        compare(service.prune(), true)
        compare(TestTree.userFiles(), [])
        compare(service.save(), false)
        compare(service.cloneAsQObject().save(), false)
        compare(TestTree.userFiles(), [])
        compare(gestureOf(newReader().service, "Thumb").currentAction.path, "view/menu")
        compare(service.prune(), false) // nothing is left
    }

    // The filter.

    function test_filter_data() {
        return [
            {tag: "nothing set", white: [], black: [], noAction: false, kinds: [0, 1, 2, 3]},
            {tag: "white", white: [0, 3], black: [], noAction: false, kinds: [0, 3]},
            {tag: "black", white: [], black: [0, 3], noAction: false, kinds: [1, 2]},
            {tag: "white before black", white: [1], black: [1, 2], noAction: true, kinds: [1]},
            {tag: "no kind like it", white: [4], black: [], noAction: true, kinds: []},
            {tag: "without actions, too", white: [], black: [], noAction: true, kinds: [0, 1, 2, 3]},
        ]
    }
    function test_filter(row) {
        const filter = newFilter({whiteList: row.white, blackList: row.black,
                                                                         noActionVisible: row.noAction})
        const service = newReader().service
        filter.sourceModel = service.gestures
        const shown = sample().filter((one, i) => row.kinds.includes(one[2])
                                    && (row.noAction || gestureAt(service, i).availableActions.length)
                                    && (document().gestures[i].features || []).every(name => supported[name]))
        compare(idsOf(filter), shown.map(one => one[0]))
        compare(filter.rowCount() === 0, row.kinds.length === 0)
        if (shown.length)
            compare(filter.data(filter.index(0, 0), Qt.DisplayRole), gestureOf(service, shown[0][0]))
    }

    function test_filter_hides_what_offers_no_action() {
        const service = newReader().service
        const filter = newFilter({whiteList: [Gesture.Tap],
                                                                         sourceModel: service.gestures})
        verify(!idsOf(filter).includes("MenuTapWholeNoDirection"))
        filter.sourceModel = null
        filter.noActionVisible = true
        filter.sourceModel = service.gestures
        verify(idsOf(filter).includes("MenuTapWholeNoDirection"))
    }

    function test_filter_signals() {
        const filter = newFilter()
        filter.blackList = [Gesture.Tap]
        filter.whiteList = [Gesture.Hold, Gesture.Swipe]
        filter.noActionVisible = true
        compare(seen(), ["black 0", "white 1,2", "noAction true"])
        filter.blackList = [Gesture.Tap]
        filter.whiteList = [1, 2]
        filter.noActionVisible = true
        compare(seen().length, 3) // nothing changed
        filter.whiteList.push(Gesture.Drag)
        filter.blackList = []
        filter.noActionVisible = false
        compare(seen().slice(3), ["white 1,2,3", "black ", "noAction false"])
        compare([filter.whiteList, filter.blackList, filter.noActionVisible], [[1, 2, 3], [], false])
    }

    function test_filter_keeps_its_rows_until_the_model_is_set_again_data() {
        return [
            {tag: "whiteList", value: [Gesture.Drag]},
            {tag: "blackList", value: [Gesture.Drag]},
            {tag: "noActionVisible", value: true},
        ]
    }
    function test_filter_keeps_its_rows_until_the_model_is_set_again(row) {
        const service = newReader().service
        const filter = newFilter({sourceModel: service.gestures})
        const before = idsOf(filter)
        verify(before.length >= 18)
        filter[row.tag] = row.value
        wait(0)
        compare(idsOf(filter), before)
        filter.sourceModel = service.gestures // the same: no change
        compare(idsOf(filter), before)
        filter.sourceModel = null
        compare(filter.rowCount(), 0)
        filter.sourceModel = service.gestures
        const after = idsOf(filter)
        if (row.tag === "whiteList")
            compare(after, ["Scrubbing", "ScrubbingBack", "SelectingDragWholeNoDirection"])
        else if (row.tag === "blackList")
            compare(after, before.filter(id => !/Scrubbing|Drag/.test(id)))
        else
            compare(after.length, before.length + 2)
    }

    // The collector leaves the library's objects alone.

    function test_library_objects_are_not_collected_data() {
        const Tap = 0, NoDirection = 4
        return [
            {tag: "nothing but the service", reach: service => service.readonly},
            {tag: "model", reach: service => service.gestures.rowCount()},
            {tag: "data()", reach: service => gesturesOf(service).length},
            {tag: "data() of a filter", reach: service => {
                const filter = newFilter({sourceModel: service.gestures})
                idsOf(filter)
                filter.sourceModel = null
            }},
            {tag: "delegates", reach: service => {
                const delegates = createTemporaryObject(delegatesComponent, testCase, {model: service.gestures})
                compare(delegates.count, 22)
                delegates.model = null
            }},
            {tag: "findGestureAsQObject", reach: service => sequence(10).forEach(
                i => service.findGestureAsQObject("reading", Tap, NoDirection, Qt.point(i / 10, 0.5)))},
            {tag: "findGestureByZoneAsQObject", reach: service => service.findGestureByZoneAsQObject(
                "reading", Tap, NoDirection, Qt.rect(0.8, 0.3, 0.1, 0.1)).currentAction},
            {tag: "containsGestureKind", reach: service => service.containsGestureKind(Tap)},
            {tag: "cloneAsQObject", reach: service => service.cloneAsQObject()},
            {tag: "reading all of a clone", reach: service => describe(service.cloneAsQObject())},
            {tag: "clone with a parent, destroyed", reach: service => {
                const clone = service.cloneAsQObject(testCase)
                describe(clone)
                clone.destroy()
            }},
            {tag: "fastMergeWithQObject", reach: service => service.fastMergeWithQObject(service.cloneAsQObject())},
            {tag: "fastMergeWithQObject of its model",
                reach: service => service.fastMergeWithQObject(service.gestures)},
            {tag: "save", reach: service => service.save()},
            {tag: "prune", reach: service => service.prune()},
            {tag: "featuresProvider", reach: service => "" + service.featuresProvider},
            {tag: "features", reach: service => gesturesOf(service).forEach(gesture => listed(gesture.features))},
            {tag: "availableActions",
                reach: service => gesturesOf(service).forEach(gesture => gesture.availableActions)},
            {tag: "defaultAction", reach: service => gesturesOf(service).forEach(gesture => gesture.defaultAction)},
            {tag: "currentAction", reach: service => gesturesOf(service).forEach(gesture => gesture.currentAction)},
            {tag: "currentAction written", reach: service => gesturesOf(service).forEach(gesture => {
                const action = gesture.currentAction
                gesture.currentAction = null
                gc()
                gesture.currentAction = action
            })},
            {tag: "currentActionChanged", reach: service => {
                const gesture = gestureAt(service, 0)
                const heard = []
                const hear = action => heard.push(action)
                gesture.currentActionChanged.connect(hear)
                gesture.currentAction = gesture.availableActions[0]
                gesture.currentAction = gesture.defaultAction
                gesture.currentActionChanged.disconnect(hear)
                compare(heard.length, 2)
            }},
            {tag: "actionTree", reach: service => gesturesOf(service).forEach(gesture => gesture.actionTree)},
            {tag: "nodes", reach: service => gesturesOf(service).forEach(gesture => describeNode(gesture.actionTree))},
            {tag: "isAnsestorOf", reach: service => gesturesOf(service).forEach(
                gesture => gesture.actionTree && gesture.actionTree.isAnsestorOf(gesture.currentAction))},
            {tag: "everything", reach: service => describe(service)},
        ]
    }
    function test_library_objects_are_not_collected(row) {
        const provider = newReader()
        const before = describe(provider.service)
        collect()
        verify(watchEverything(provider.service) > 100)
        for (let i = 0; i < 2; ++i) {
            row.reach(provider.service)
            collect()
        }
        compare(dead(), [])
        compare(describe(provider.service), before)
    }

    function test_objects_held_alone_are_usable() {
        const provider = newReader()
        const kept = (service => {
            const gesture = gestureOf(service, "BrighterSwipe")
            const menu = gestureAt(service, 0).actionTree
            return {gesture: gesture, action: gesture.currentAction, feature: gesture.features[0],
                    leaf: menu.childNodes[1].childNodes[0], root: menu, model: service.gestures}
        })(provider.service)
        collect()
        compare(kept.gesture.id, "BrighterSwipe")
        compare(kept.action.path, "light/brighter")
        compare(kept.feature.name, "frontlight")
        compare(kept.leaf.action.path, "chapter/next")
        compare(kept.root.childNodes.length, gestureAt(provider.service, 0).actionTree.childNodes.length)
        compare(kept.model.rowCount(), 22)
    }

    function test_features_outlive_their_providers() {
        const provider = newReader()
        const feature = gestureOf(provider.service, "BrighterSwipe").features[0]
        watch(feature, "feature")
        watch(provider, "provider")
        provider.destroy()
        tryVerify(() => dead().length > 0, patience)
        collect()
        compare(dead(), ["provider"])
        compare(feature.name, "frontlight")
    }

    // Not returned: a caller would keep it until its own end.
    function makeClone(service, parent, filter) {
        const clone = parent ? service.cloneAsQObject(parent) : service.cloneAsQObject()
        watch(clone, "clone")
        watch(gestureAt(clone, 0), "gesture of the clone")
        watch(gestureAt(clone, 0).actionTree, "tree of the clone")
        filter.sourceModel = clone.gestures
        for (const gesture of gesturesOf(clone).slice(0, 6))
            gesture.currentAction = gesture.availableActions[1]
        if (!parent)
            held = clone
    }

    function mergeHeld(service) {
        return service.fastMergeWithQObject(held)
    }

    function test_clone_without_a_parent_is_collected_data() {
        return [{tag: "dropped", merge: false}, {tag: "merged back", merge: true}]
    }
    function test_clone_without_a_parent_is_collected(row) {
        const provider = newReader()
        const before = describe(provider.service)
        const filter = newFilter()
        makeClone(provider.service, null, filter)
        collect()
        compare(dead(), []) // as long as it is referenced
        compare(filter.rowCount() > 0, true)
        if (row.merge)
            compare(mergeHeld(provider.service), true)
        watchEverything(provider.service)
        held = null
        collect()
        compare(dead().sort(), ["clone", "gesture of the clone", "tree of the clone"])
        compare(filter.rowCount(), 0)

        if (!row.merge) {
            compare(describe(provider.service), before)
            return
        }
        compare(gesturesOf(provider.service).slice(0, 7).map(gesture => gesture.currentAction.path),
                ["page/previous", "page/previous", "page/previous", "page/previous", "page/previous", "page/previous",
                 "select/start"])
        compare(gestureAt(provider.service, 0).currentAction, gestureAt(provider.service, 0).availableActions[1])
        compare(gestureAt(provider.service, 0).currentAction.lastTitle, "Previous page")
        collect()
        verify(describe(provider.service) !== before)
    }

    function test_clone_with_a_parent_is_not_collected() {
        const provider = newReader()
        const filter = newFilter()
        const owner = createTemporaryQmlObject("import QtQml 2.15; QtObject {}", testCase)
        makeClone(provider.service, owner, filter)
        collect()
        compare(dead(), [])
        const shown = filter.rowCount()
        verify(shown >= 18)
        compare(filter.data(filter.index(0, 0)).currentAction.path, "page/previous")
        owner.destroy()
        tryVerify(() => dead().length === 3, patience)
        compare(filter.rowCount(), 0)
    }

    function test_actions_of_a_clone_outlive_the_original() {
        const provider = newReader()
        const before = describe(provider.service)
        const clone = provider.service.cloneAsQObject()
        watch(provider, "provider")
        provider.destroy()
        tryVerify(() => dead().length === 1, patience)
        collect()
        compare(describe(clone), before)
    }

    function test_clones_of_a_dropped_clone() {
        const provider = newReader()
        const before = describe(provider.service)
        const clone = provider.service.cloneAsQObject().cloneAsQObject()
        collect()
        compare(describe(clone), before)
        compare(describe(provider.service), before)
    }

    // The provider.

    function test_replacing_the_service() {
        const provider = newTalkingProvider("reader")
        verify(provider.service)
        noted = []
        watch(provider.service, "first")
        const tree = gestureAt(provider.service, 0).actionTree
        watch(tree, "tree")

        provider.readonly = false
        compare(seen().slice().sort(), ["readonly false", "service"])
        compare(provider.service.readonly, false)
        compare(dead(), []) // until the event loop runs
        tryVerify(() => dead().length === 2, patience)
        watch(provider.service, "second")
        provider.readonly = false
        provider.appId = "reader"
        compare(seen().length, 2)
        wait(0)
        compare(dead().slice().sort(), ["first", "tree"])

        noted = []
        provider.readonly = true
        compare(provider.service.readonly, true)
        provider.appId = "notes"
        compare(provider.service.gestures.rowCount(), 3)
        compare(seen().length, 4)
        tryVerify(() => dead().includes("second"), patience)
    }

    function test_no_service_data() {
        return [{tag: "prohibited", appId: "launcher"}, {tag: "no application", appId: ""}]
    }
    function test_no_service(row) {
        const made = createTemporaryObject(readerComponent, testCase, {appId: row.appId})
        compare(made.service, null)
        wait(0)
        compare(made.service, null)

        const provider = newTalkingProvider("reader")
        watch(provider.service, "service")
        noted = []
        provider.appId = row.appId
        compare(provider.service, null)
        compare(seen().slice().sort(), ["appId " + row.appId, "none"])
        tryVerify(() => dead().length === 1, patience)
        provider.readonly = false
        compare(provider.service, null)
        provider.appId = "reader"
        compare(provider.service.readonly, false)
        compare(provider.service.gestures.rowCount(), 22)
    }

    function test_choices_of_another_process() {
        const provider = newTalkingProvider("reader")
        wait(0)
        watch(provider.service, "service")
        noted = []
        TestTree.setChoices("reader", '{"actions": {"Thumb": "view/refresh"}, "version": 1}')
        tryVerify(() => dead().length === 1, patience)
        compare(seen(), ["none", "service"])
        compare(gestureOf(provider.service, "Thumb").currentAction.path, "view/refresh")
    }
}
