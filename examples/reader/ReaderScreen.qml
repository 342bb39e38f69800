import QtQml 2.15
import QtQuick 2.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0

// The whole screen of the reading program: turns every touch and key into a gesture, and looks up its action in the
// service. Without gestures it still turns pages.
FocusScope {
    id: screen

    property string appId

    //: The title of a chapter, and the number of a page.
    readonly property string title: qsTr("%1, page %2 of %3").arg(page.chapterTitle).arg(page.pageIndex + 1)
                                                             .arg(page.pageCount)
    readonly property var modes: ["reading", "selecting", "menu"]
    property string mode: "reading"
    // The panel over the page in the mode "menu".
    property bool choosingChapter: false
    property string modeBefore: "reading"
    property bool zonesShown: false

    property int textSize: 6 // in millimetres
    readonly property int levels: 10
    property bool lightOn: true
    property int light: 6
    property int warmth: 3
    property bool speaking: false

    property string answer:
            qsTr("Touch the page. The keys are arrows and digits, M for the mode and Z for the zones.")
    property string message: ""

    // The function of each action. It returns a sentence if nothing else shows its effect.
    readonly property var actions: ({
        "page/next": () => screen.turn(1),
        "page/previous": () => screen.turn(-1),
        "page/forward": () => screen.turn(10),
        "page/back": () => screen.turn(-10),
        "chapter/next": () => screen.goToChapter(page.chapterIndex + 1),
        "chapter/previous": () => screen.goToChapter(page.chapterIndex - 1),
        "chapter/list": () => screen.openMenu(true),
        "text/larger": () => screen.setTextSize(screen.textSize + 1),
        "text/smaller": () => screen.setTextSize(screen.textSize - 1),
        "light/brighter": () => screen.setLight(screen.light + 1),
        "light/darker": () => screen.setLight(screen.light - 1),
        "light/warmer": () => screen.setWarmth(screen.warmth + 1),
        "light/colder": () => screen.setWarmth(screen.warmth - 1),
        "light/toggle": () => { screen.lightOn = !screen.lightOn },
        "speech/toggle": () => screen.toggleSpeech(),
        "view/menu": () => screen.openMenu(false),
        "view/bookmark": () => page.toggleBookmark(),
        "view/search": () => qsTr("Here the device would search."),
        "view/refresh": () => qsTr("Here the device would refresh the screen."),
        "view/close": () => screen.close(),
        "select/start": () => screen.setMode("selecting"),
        "select/highlight": () => qsTr("Here the device would highlight the selection."),
        "select/note": () => qsTr("Here the device would write a note."),
        "select/lookup": () => qsTr("Here the device would look up the selection."),
        "select/cancel": () => screen.setMode("reading"),
    })

    function turn(pages) {
        if (!page.turn(pages))
            return pages > 0 ? qsTr("This is the last page.") : qsTr("This is the first page.")
    }

    function goToChapter(chapter) {
        if (!page.goToChapter(chapter))
            return chapter > 0 ? qsTr("This is the last chapter.") : qsTr("This is the first chapter.")
    }

    function setTextSize(size) {
        if (size < 4 || size > 12)
            return size < 4 ? qsTr("This is the smallest text.") : qsTr("This is the largest text.")
        screen.textSize = size
    }

    function setLight(level) {
        screen.lightOn = true
        screen.light = Math.max(1, Math.min(screen.levels, level))
    }

    function setWarmth(level) {
        screen.warmth = Math.max(0, Math.min(screen.levels, level))
    }

    function toggleSpeech() {
        screen.speaking = !screen.speaking
        return screen.speaking ? qsTr("Here the device would read aloud.")
                               : qsTr("Here the device would stop reading aloud.")
    }

    function setMode(mode) {
        if (mode === "menu" && screen.mode !== "menu")
            screen.modeBefore = screen.mode
        screen.choosingChapter = false
        screen.mode = mode
    }

    function openMenu(chapters) {
        screen.setMode("menu")
        screen.choosingChapter = chapters
    }

    function close() {
        if (screen.mode === "reading")
            return qsTr("Here the device would close the book.")
        screen.setMode(screen.mode === "menu" ? screen.modeBefore : "reading")
    }

    // Runs an action and returns a sentence about it, usually an empty one.
    function perform(path) {
        const actions = screen.actions
        return actions.hasOwnProperty(path) ? actions[path]() || "" : qsTr("This program has no action “%1”.").arg(path)
    }

    function say(answer, message) {
        screen.answer = answer
        screen.message = message
        if (message !== "")
            Gestures.announce(statusLine)
    }

    // Unlike arg(), leaves a title of the configuration alone that has a number after a per cent sign.
    function filled(text, values) {
        return text.replace(/%(\d)/g, (place, number) => values[number - 1])
    }

    // "Tap at 0.90, 0.50"
    function touchWords(kind, direction, position) {
        return qsTr("%1 at %2, %3").arg(Gestures.touchTitle(kind, direction)).arg(position.x.toFixed(2))
                                   .arg(position.y.toFixed(2))
    }

    function hasGestures() {
        const service = provider.service
        return !!service && service.gestures.rowCount() > 0
    }

    function handle(kind, direction, position) {
        const touched = screen.touchWords(kind, direction, position)
        if (!screen.hasGestures()) {
            screen.turnByThird(touched, kind, position)
            return
        }
        const gesture = provider.service.findGestureAsQObject(screen.mode, kind, direction, position)
        const action = gesture ? gesture.currentAction : null
        if (!action)
            screen.say(qsTr("%1: nothing").arg(touched), "")
        else if (!gesture.supported || !action.supported)
            screen.say(screen.filled(qsTr("%1: %2 (%3), this device cannot do it"),
                                     [touched, Gestures.actionTitle(action), action.path]), "")
        else
            screen.run(touched, Gestures.actionTitle(action), action.path)
    }

    function run(touched, title, path) {
        screen.say(screen.filled(qsTr("%1: %2 (%3)"), [touched, title, path]), screen.perform(path))
    }

    // While there are no gestures: a tap on the left third of the screen turns back, on the right third on.
    function turnByThird(touched, kind, position) {
        const path = position.x < 1 / 3 ? "page/previous" : position.x > 2 / 3 ? "page/next" : ""
        if (kind === Gesture.Tap && path !== "")
            screen.say(qsTr("%1: turns the page, as there are no gestures").arg(touched), screen.perform(path))
        else
            screen.say(qsTr("%1: nothing, as there are no gestures").arg(touched), "")
    }

    function turnByKey(path) {
        screen.say("", screen.perform(path))
    }

    function choose(key) {
        if (key === "zones")
            screen.zonesShown = !screen.zonesShown
        else
            screen.say("", screen.perform(key))
    }

    function pickChapter(key) {
        if (key !== "close")
            screen.goToChapter(Number(key))
        screen.close()
    }

    // The panel that is open has the keyboard, else the page.
    function passKeys() {
        if (menuPanel.visible)
            menuPanel.takeKeys()
        else if (chapterList.visible)
            chapterList.takeKeys()
        else
            page.focus = true
    }

    function nextMode() {
        const modes = screen.modes
        screen.setMode(modes[(modes.indexOf(screen.mode) + 1) % modes.length])
    }

    function back() {
        if (screen.zonesShown)
            screen.zonesShown = false
        else if (screen.mode === "menu")
            screen.close()
        else
            notice.dismiss()
    }

    // Like a numeric keypad: 7 is the top left ninth of the screen, 3 the bottom right one.
    function ninth(digit) {
        return Qt.point(((digit - 1) % 3 + 0.5) / 3, (2.5 - Math.floor((digit - 1) / 3)) / 3)
    }

    function key(event) {
        const directions = {[Qt.Key_Left]: Gesture.ToLeft, [Qt.Key_Right]: Gesture.ToRight, [Qt.Key_Up]: Gesture.ToTop,
                            [Qt.Key_Down]: Gesture.ToBottom}
        const turns = {[Qt.Key_PageUp]: "page/previous", [Qt.Key_PageDown]: "page/next"}
        if (!screen.hasGestures())
            Object.assign(turns, {[Qt.Key_Left]: "page/previous", [Qt.Key_Right]: "page/next"})
        const digit = event.key - Qt.Key_0
        // On most keyboards Shift changes the digit keys; Alt never does.
        const held = event.modifiers & (Qt.AltModifier | Qt.ShiftModifier)
        if (event.modifiers & (Qt.ControlModifier | Qt.MetaModifier))
            return false
        if (turns.hasOwnProperty(event.key))
            screen.turnByKey(turns[event.key])
        else if (directions.hasOwnProperty(event.key))
            screen.handle(Gesture.Swipe, directions[event.key], Qt.point(0.5, 0.5))
        else if (digit >= 1 && digit <= 9)
            screen.handle(held ? Gesture.Hold : Gesture.Tap, Gesture.NoDirection, screen.ninth(digit))
        else if (event.key === Qt.Key_Tab || event.key === Qt.Key_M)
            screen.nextMode()
        else if (event.key === Qt.Key_Z)
            screen.zonesShown = !screen.zonesShown
        else if (event.key === Qt.Key_Escape)
            screen.back()
        else
            return false
        return true
    }

    Keys.onPressed: event => { event.accepted = screen.key(event) }

    GestureServiceProvider {
        id: provider
        appId: screen.appId
    }

    ConfigurationState {
        id: state
        appId: screen.appId
    }

    // The service only logs faults in the files; the state explains them.
    Connections {
        target: provider
        function onServiceChanged(value) {
            Qt.callLater(state.refresh)
        }
    }

    Rectangle {
        id: paper
        objectName: "paper"
        // The unlit page of e-ink is a light grey.
        readonly property real grey: 0.8 + (screen.lightOn ? 0.2 * screen.light / screen.levels : 0)
        anchors.fill: screen
        color: Qt.rgba(paper.grey, paper.grey, paper.grey, 1)
    }

    BookPage {
        id: page
        objectName: "page"
        focus: true
        textSize: Math.round(Theme.millimeters(screen.textSize))
        anchors.top: notice.bottom
        anchors.bottom: footer.top
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.margins: Math.min(Theme.millimeters(9), screen.width * 0.06)
        anchors.topMargin: 2 * Theme.margin
        anchors.bottomMargin: Theme.spacing
    }

    GestureTouchArea {
        objectName: "touchArea"
        anchors.fill: screen
        onGestureMade: (kind, direction, position) => screen.handle(kind, direction, position)
    }

    FontMetrics {
        id: labelMetrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize }
    }

    Row {
        id: modeSwitch
        // The right corner is for the bookmark, also in mirrored layouts: zones are not mirrored.
        x: 0
        width: screen.width * 0.84
        height: Theme.millimeters(11)

        // What the names of all modes leave.
        readonly property real spare: modeSwitch.width - modeSwitch.namesWidth()

        function namesWidth() {
            const modes = screen.modes
            return modes.reduce((sum, mode) => sum + modeSwitch.nameWidth(mode), 0)
        }

        // The function of the metrics alone would not tell of another font.
        function nameWidth(mode) {
            return labelMetrics.height > 0 ? Math.ceil(labelMetrics.advanceWidth(Gestures.modeTitle(mode))) : 0
        }

        Repeater {
            id: modeButtons
            model: screen.modes
            delegate: EinkButton {
                id: modeButton
                required property string modelData
                objectName: "modeButton-" + modeButton.modelData
                width: modeSwitch.nameWidth(modeButton.modelData) + modeSwitch.spare / modeButtons.count
                height: modeSwitch.height
                activeFocusOnTab: false // the tabulator key is for the mode
                text: Gestures.modeTitle(modeButton.modelData)
                checked: screen.mode === modeButton.modelData
                onClicked: screen.setMode(modeButton.modelData)
            }
        }
    }

    Rectangle {
        objectName: "bookmarkMarker"
        visible: page.bookmarked
        x: screen.width * 0.89
        width: screen.width * 0.06
        height: modeSwitch.height
        color: Theme.ink
        Accessible.role: Accessible.StaticText
        Accessible.name: qsTr("This page has a bookmark.")
    }

    Notice {
        id: notice
        objectName: "notice"
        anchors.top: modeSwitch.bottom
        anchors.left: screen.left
        anchors.right: screen.right
        largestHeight: screen.height * 0.4
        text: state.problem || state.notice
    }

    Flow {
        id: footer
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.bottom: statusLine.top
        anchors.leftMargin: 2 * Theme.margin
        anchors.rightMargin: 2 * Theme.margin
        anchors.bottomMargin: Theme.spacing
        spacing: Theme.margin

        Text {
            id: pageNumber
            objectName: "pageNumber"
            text: qsTr("Page %1 of %2, chapter %3 of %4").arg(page.pageIndex + 1).arg(page.pageCount)
                                                         .arg(page.chapterIndex + 1).arg(page.chapterCount)
            textFormat: Text.PlainText
            leftPadding: footer.LayoutMirroring.enabled ? 2 * Theme.margin : 0
            rightPadding: 2 * Theme.margin - pageNumber.leftPadding
            font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
            Accessible.role: Accessible.StaticText
            Accessible.name: pageNumber.text
        }

        Text {
            id: lightText
            objectName: "lightText"
            text: screen.lightOn ? qsTr("Light %1 of %2, warmth %3 of %2").arg(screen.light).arg(screen.levels)
                                                                         .arg(screen.warmth)
                                 : qsTr("The light is off.")
            textFormat: Text.PlainText
            font: pageNumber.font
            Accessible.role: Accessible.StaticText
            Accessible.name: lightText.text
        }
    }

    Text {
        id: statusLine
        objectName: "statusLine"
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.bottom: screen.bottom
        anchors.leftMargin: 2 * Theme.margin
        anchors.rightMargin: 2 * Theme.margin
        height: Theme.millimeters(14)
        text: [screen.answer, screen.message].filter(part => part !== "").join("\n")
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
        fontSizeMode: Text.VerticalFit
        minimumPixelSize: Math.round(Theme.noteSize * 0.7)
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: statusLine.text
    }

    MenuPanel {
        id: menuPanel
        objectName: "menuPanel"
        visible: screen.mode === "menu" && !screen.choosingChapter
        anchors.top: modeSwitch.bottom
        anchors.left: screen.left
        anchors.right: screen.right
        room: screen.height - modeSwitch.height
        onVisibleChanged: screen.passKeys()
        onPicked: key => screen.choose(key)
    }

    ChapterList {
        id: chapterList
        objectName: "chapterList"
        visible: screen.mode === "menu" && screen.choosingChapter
        anchors.top: modeSwitch.bottom
        anchors.left: screen.left
        anchors.right: screen.right
        room: screen.height - modeSwitch.height
        chosen: page.chapterIndex
        onVisibleChanged: screen.passKeys()
        onPicked: key => screen.pickChapter(key)
    }

    ZoneOverlay {
        objectName: "zoneOverlay"
        visible: screen.zonesShown
        anchors.fill: screen
        service: screen.zonesShown ? provider.service : null
        mode: screen.mode
    }
}
