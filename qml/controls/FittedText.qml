import QtQuick 2.15

// A label that may be long: then it is smaller, and has up to three lines.
EinkText {
    id: label

    readonly property real needed: label.widthIn(metrics, metrics.height)
    readonly property real neededIfSmall: label.widthIn(small, small.height)
    // It needs more than two lines, or it has only one if it is smaller.
    readonly property bool isLong: label.needed > 1.6 * label.width
                                   || (label.needed > label.width && label.neededIfSmall < label.width)

    font.pixelSize: label.isLong ? Theme.noteSize : Theme.labelSize
    maximumLineCount: label.isLong ? 3 : 2

    // The height is a part of the binding: it changes with the font.
    function widthIn(metrics, height) {
        return height > 0 ? metrics.advanceWidth(label.text) + 1 : 0
    }

    FontMetrics {
        id: metrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize; bold: label.font.bold }
    }
    FontMetrics {
        id: small
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize; bold: label.font.bold }
    }
}
