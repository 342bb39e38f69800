import QtQml 2.15
import QtQuick 2.15
import Vellix.Examples 1.0
import Vellix.Gesture 1.0
import "../common/words.js" as Words

// The whole screen of the reading program: turns every touch and key into a gesture, and looks up its action in the
// service.
FocusScope {
    id: screen

    property string appId

    readonly property string title: state.problem !== "" ? "Reader"
            : page.chapterTitle + ", page " + (page.pageIndex + 1) + " of " + page.pageCount
    readonly property var modes: ["reading", "selecting", "menu"]
    property string mode: "reading"
    // The panel over the page in the mode "menu".
    property bool choosingChapter: false
    property string modeBefore: "reading"
    property bool zonesShown: false

    readonly property int levels: 10
    property bool lightOn: true
    property int light: 6
    property int warmth: 3
    property bool speaking: false

    property string answer: "Touch the page. The keys are arrows and digits, M for the mode and Z for the zones."
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
        "text/larger": () => screen.setTextSize(page.textSize + 4),
        "text/smaller": () => screen.setTextSize(page.textSize - 4),
        "light/brighter": () => screen.setLight(screen.light + 1),
        "light/darker": () => screen.setLight(screen.light - 1),
        "light/warmer": () => screen.setWarmth(screen.warmth + 1),
        "light/colder": () => screen.setWarmth(screen.warmth - 1),
        "light/toggle": () => { screen.lightOn = !screen.lightOn },
        "speech/toggle": () => screen.toggleSpeech(),
        "view/menu": () => screen.openMenu(false),
        "view/bookmark": () => page.toggleBookmark(),
        "view/search": () => "Here the device would search.",
        "view/refresh": () => "Here the device would refresh the screen.",
        "view/close": () => screen.close(),
        "select/start": () => screen.setMode("selecting"),
        "select/highlight": () => "Here the device would highlight the selection.",
        "select/note": () => "Here the device would write a note.",
        "select/lookup": () => "Here the device would look up the selection.",
        "select/cancel": () => screen.setMode("reading"),
    })

    function turn(pages) {
        if (!page.turn(pages))
            return pages > 0 ? "This is the last page." : "This is the first page."
    }

    function goToChapter(chapter) {
        if (!page.goToChapter(chapter))
            return chapter > 0 ? "This is the last chapter." : "This is the first chapter."
    }

    function setTextSize(size) {
        if (size < 16 || size > 48)
            return size < 16 ? "This is the smallest text." : "This is the largest text."
        page.textSize = size
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
        return screen.speaking ? "Here the device would read aloud." : "Here the device would stop reading aloud."
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
            return "Here the device would close the book."
        screen.setMode(screen.mode === "menu" ? screen.modeBefore : "reading")
    }

    // Runs an action and returns a sentence about it, usually an empty one.
    function perform(path) {
        const actions = screen.actions
        return actions.hasOwnProperty(path) ? actions[path]() || "" : "This program has no action “" + path + "”."
    }

    function choose(path) {
        screen.answer = ""
        screen.message = screen.perform(path)
    }

    function placeWords(position) {
        return position.x.toFixed(2) + ", " + position.y.toFixed(2)
    }

    function handle(kind, direction, position) {
        const found = touches.find(provider.service, screen.mode, kind, direction, position)
        const gesture = found.gesture
        const action = gesture ? gesture.currentAction : null
        const able = !!action && gesture.supported && action.supported
        const start = [Words.kindWord(kind), Words.directionWord(direction), "at", screen.placeWords(position)]
        const what = action ? action.lastTitle + " (" + action.path + ")" + (able ? "" : ", this device cannot do it")
                            : "nothing"
        screen.answer = start.filter(part => part !== "").join(" ") + ": " + what + ", "
                + Math.ceil(found.microseconds) + " µs"
        screen.message = able ? screen.perform(action.path) : ""
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
    }

    // Like a numeric keypad: 7 is the top left ninth of the screen, 3 the bottom right one.
    function ninth(digit) {
        return Qt.point(((digit - 1) % 3 + 0.5) / 3, (2.5 - Math.floor((digit - 1) / 3)) / 3)
    }

    function key(event) {
        const directions = {[Qt.Key_Left]: Gesture.ToLeft, [Qt.Key_Right]: Gesture.ToRight, [Qt.Key_Up]: Gesture.ToTop,
                            [Qt.Key_Down]: Gesture.ToBottom}
        const digit = event.key - Qt.Key_0
        // On most keyboards Shift changes the digit keys; Alt never does.
        const held = event.modifiers & (Qt.AltModifier | Qt.ShiftModifier)
        if (event.modifiers & (Qt.ControlModifier | Qt.MetaModifier))
            return false
        if (directions.hasOwnProperty(event.key))
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

    Touches {
        id: touches
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
        visible: state.problem === ""
        anchors.top: noticeText.bottom
        anchors.bottom: footer.top
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.margins: 36
        anchors.topMargin: 20
        anchors.bottomMargin: 4
    }

    Text {
        objectName: "problemText"
        visible: state.problem !== ""
        anchors.top: noticeText.bottom
        anchors.bottom: footer.top
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.margins: 36
        text: state.problem
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: 26
        fontSizeMode: Text.Fit
        minimumPixelSize: 14
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    TouchArea {
        anchors.fill: screen
        onGestureMade: (kind, direction, position) => screen.handle(kind, direction, position)
    }

    Row {
        id: modeSwitch
        // The corner beside it is for the bookmark.
        width: screen.width * 0.84
        height: 60

        Repeater {
            id: modeButtons
            model: screen.modes
            delegate: LargeButton {
                id: modeButton
                required property string modelData
                objectName: "modeButton-" + modeButton.modelData
                width: modeSwitch.width / modeButtons.count
                height: modeSwitch.height
                text: Words.modesWords([modeButton.modelData])
                chosen: screen.mode === modeButton.modelData
                onClicked: screen.setMode(modeButton.modelData)
            }
        }
    }

    Rectangle {
        objectName: "bookmarkMarker"
        visible: page.bookmarked && page.visible
        anchors.top: screen.top
        anchors.right: screen.right
        anchors.rightMargin: 30
        width: 32
        height: 60
        color: "black"
    }

    Text {
        id: noticeText
        objectName: "noticeText"
        anchors.top: modeSwitch.bottom
        anchors.topMargin: text ? 6 : 0
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        height: text ? implicitHeight : 0
        text: state.notice
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: 15
    }

    Item {
        id: footer
        visible: state.problem === ""
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.bottom: statusLine.top
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        height: 36

        Text {
            objectName: "pageNumber"
            anchors.left: footer.left
            anchors.verticalCenter: footer.verticalCenter
            text: "Page " + (page.pageIndex + 1) + " of " + page.pageCount + ", chapter " + (page.chapterIndex + 1)
                  + " of " + page.chapterCount
            font.pixelSize: 18
        }

        Text {
            id: lightText
            objectName: "lightText"
            anchors.right: footer.right
            anchors.verticalCenter: footer.verticalCenter
            text: screen.lightOn ? "warmth " + screen.warmth : "off"
            font.pixelSize: 18
        }

        Rectangle {
            id: lightBar
            anchors.right: lightText.left
            anchors.rightMargin: 8
            anchors.verticalCenter: footer.verticalCenter
            width: 80
            height: 16
            color: "white"
            border.color: "black"
            border.width: 2

            Rectangle {
                objectName: "lightLevel"
                width: screen.lightOn ? lightBar.width * screen.light / screen.levels : 0
                height: lightBar.height
                color: "black"
            }
        }

        Text {
            anchors.right: lightBar.left
            anchors.rightMargin: 8
            anchors.verticalCenter: footer.verticalCenter
            text: "Light"
            font.pixelSize: 18
        }
    }

    Text {
        id: statusLine
        objectName: "statusLine"
        anchors.left: screen.left
        anchors.right: screen.right
        anchors.bottom: screen.bottom
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        height: 66
        text: [screen.answer, screen.message].filter(part => part !== "").join("\n")
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: 16
        fontSizeMode: Text.VerticalFit
        minimumPixelSize: 10
    }

    MenuPanel {
        objectName: "menuPanel"
        visible: screen.mode === "menu" && !screen.choosingChapter
        anchors.top: modeSwitch.bottom
        anchors.left: screen.left
        anchors.right: screen.right
        onChosen: path => screen.choose(path)
        onZonesWanted: screen.zonesShown = !screen.zonesShown
    }

    ChapterList {
        objectName: "chapterList"
        visible: screen.mode === "menu" && screen.choosingChapter
        anchors.top: modeSwitch.bottom
        anchors.left: screen.left
        anchors.right: screen.right
        current: page.chapterIndex
        onPicked: chapter => {
            screen.goToChapter(chapter)
            screen.close()
        }
        onClosed: screen.close()
    }

    ZoneOverlay {
        objectName: "zoneOverlay"
        visible: screen.zonesShown
        anchors.fill: screen
        service: screen.zonesShown ? provider.service : null
        mode: screen.mode
    }
}
