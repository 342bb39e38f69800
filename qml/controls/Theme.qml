pragma Singleton
import QtQml 2.15
import QtQuick 2.15

// Sizes for a finger and for the eye, in pixels, and the colours. A program may assign any of them before it shows a
// page, above all the density of a screen that does not know its own.
QtObject {
    id: theme

    // The pixels of a millimetre of the screen.
    property real pixelsPerMillimeter: theme.densityOf(Qt.application.screens)
    property string fontFamily: Qt.application.font.family
    // Whether layouts begin on the right.
    property bool mirrored: Qt.application.layoutDirection === Qt.RightToLeft
                            || Qt.locale().textDirection === Qt.RightToLeft

    property color ink: "black"
    property color paper: "white"
    // Of what cannot be used now.
    property color dim: "#606060"

    // The side of the smallest thing to touch: 9 mm.
    property int target: Math.ceil(theme.millimeters(9))
    // The pixel size of main labels, whose x is 2.5 mm high, and of notes, whose x is 1.8 mm high.
    property int labelSize: theme.sizeFor(2.5)
    property int noteSize: theme.sizeFor(1.8)

    property int margin: Math.round(theme.millimeters(1.5))
    property int spacing: Math.round(theme.millimeters(0.8))
    // The widths of lines: between rows, of a frame, and of the frame of what has the keyboard.
    property int hairline: Math.max(1, Math.round(theme.millimeters(0.12)))
    property int line: Math.max(1, Math.round(theme.millimeters(0.25)))
    property int focusLine: Math.max(3, Math.round(theme.millimeters(0.7)))

    readonly property FontMetrics metrics: FontMetrics {
        font.family: theme.fontFamily
        font.pixelSize: 200
    }

    function millimeters(length) {
        return length * theme.pixelsPerMillimeter
    }

    // Some devices report no size of their screen, or a wrong one.
    function densityOf(screens) {
        const density = screens.length > 0 ? screens[0].pixelDensity : 0
        return density >= 2 && density <= 40 ? density : 96 / 25.4
    }

    // The pixel size at which an x has at least this height in millimetres.
    function sizeFor(height) {
        return Math.ceil(theme.millimeters(height) * 200 / theme.metrics.xHeight)
    }
}
