import QtQuick 2.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0
import "zones.js" as Zones

// Draws the zones of all gestures of a mode over the page, with a label in each. Ignores touches.
Item {
    id: overlay

    property var service: null
    property string mode

    // {zone, area, gestures: [text]} for each zone, the smallest first.
    readonly property var zones: overlay.service ? Zones.withAreas(Zones.grouped(overlay.gestures(), overlay.mode),
                                                                   overlay.width, overlay.height) : []
    readonly property var arrangement: Zones.arranged(overlay.zones, overlay.width, overlay.height, {
        size: metrics.font.pixelSize,
        smallSize: Theme.noteSize,
        lineHeight: overlay.lineHeight * metrics.font.pixelSize,
        padding: overlay.padding,
        // A smaller font is a little wider than its part of this one.
        widthOf: text => metrics.advanceWidth(text) * 1.04,
        legendLine: overlay.legendLine,
    })
    readonly property var legend: Zones.legendOf(overlay.arrangement)
    readonly property real padding: Theme.line + Theme.spacing
    readonly property real lineHeight: 1.2 // of a font

    // Plain values: the gestures are destroyed with their service.
    function gestures() {
        const service = overlay.service
        const model = service.gestures
        const list = []
        for (let row = 0; row < model.rowCount(); ++row) {
            const gesture = model.data(model.index(row, 0), Qt.DisplayRole)
            //: A touch, and its action.
            const text = qsTr("%1: %2").arg(Gestures.touchTitle(gesture.kind, gesture.direction))
                                       .arg(Gestures.actionTitle(gesture.currentAction))
            list.push({zone: gesture.zone, modes: gesture.modes, supported: gesture.supported, text: text})
        }
        return list
    }

    function legendLine(number, gestures) {
        //: The number of a zone, and its gestures.
        return qsTr("%1. %2").arg(number).arg(gestures.join(qsTr("; ", "between the gestures of a zone")))
    }

    FontMetrics {
        id: metrics
        font { family: Theme.fontFamily; pixelSize: Theme.labelSize }
    }

    Repeater {
        model: overlay.zones
        delegate: Rectangle {
            id: outline
            required property int index
            required property var modelData
            readonly property var area: Zones.areaOf(outline.modelData)
            objectName: "zone-" + outline.index
            x: Zones.left(outline.area) + Theme.line
            y: Zones.top(outline.area) + Theme.line
            width: Zones.width(outline.area) - 2 * Theme.line
            height: Zones.height(outline.area) - 2 * Theme.line
            color: "transparent"
            border.color: Theme.ink
            border.width: Theme.line

            Accessible.role: Accessible.StaticText
            Accessible.name: Zones.gesturesOf(outline.modelData)
            Accessible.description: Gestures.zoneTitle(Zones.zoneOf(outline.modelData))
        }
    }

    Rectangle {
        objectName: "zoneLegend"
        visible: overlay.legend !== null
        x: Zones.left(overlay.legend)
        y: Zones.top(overlay.legend)
        width: Zones.width(overlay.legend)
        height: Zones.height(overlay.legend)
        color: Theme.paper
        border.color: Theme.ink
        border.width: Theme.line

        Text {
            id: legendText
            objectName: "zoneLegendText"
            anchors.fill: parent
            anchors.margins: overlay.padding
            text: Zones.words(overlay.legend)
            textFormat: Text.PlainText
            font { family: Theme.fontFamily; pixelSize: Zones.fontSize(overlay.legend) }
            lineHeightMode: Text.FixedHeight
            lineHeight: overlay.lineHeight * legendText.font.pixelSize
            Accessible.ignored: true
        }
    }

    Repeater {
        model: Zones.labelsOf(overlay.arrangement)
        delegate: Rectangle {
            id: label
            required property int index
            required property var modelData
            objectName: "zoneLabel-" + label.index
            x: Zones.left(label.modelData)
            y: Zones.top(label.modelData)
            width: Zones.width(label.modelData)
            height: Zones.height(label.modelData)
            color: Theme.paper
            border.color: Theme.ink
            border.width: Theme.hairline

            Text {
                id: words
                objectName: "zoneText-" + label.index
                anchors.centerIn: label
                rotation: Zones.angle(label.modelData)
                text: Zones.words(label.modelData)
                textFormat: Text.PlainText
                horizontalAlignment: Text.AlignHCenter
                font { family: Theme.fontFamily; pixelSize: Zones.fontSize(label.modelData) }
                lineHeightMode: Text.FixedHeight
                lineHeight: overlay.lineHeight * words.font.pixelSize
                Accessible.ignored: true
            }
        }
    }
}
