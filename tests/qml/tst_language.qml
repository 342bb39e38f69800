import QtQml 2.15
import QtTest 1.15
import Vellix.Gesture 1.0

// The module speaks the language of the process, which is set for each run.
TestCase {
    name: "Language"

    readonly property var texts: ({
        de: {tap: "Tippen", modes: "Lesen", leftToRight: true},
        ar: {tap: "نقر", modes: "القراءة", leftToRight: false},
        ja: {tap: "タップ", modes: "読書", leftToRight: true},
        fr: {tap: "Tap", modes: "Reading", leftToRight: true}, // no translation: English
    })

    function test_language() {
        const language = Qt.locale().name.slice(0, 2)
        compare(Gestures.kindTitle(Gesture.Tap), texts[language].tap)
        compare(Gestures.modeTitle("reading"), texts[language].modes)
        compare(Qt.application.layoutDirection, texts[language].leftToRight ? Qt.LeftToRight : Qt.RightToLeft)
    }
}
