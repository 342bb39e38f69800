import QtQuick 2.15
import "../common/words.js" as Words
import "zones.js" as Zones

// Draws the zones of all gestures of a mode over the page. Ignores touches.
Item {
    id: overlay

    property var service: null
    property string mode

    // One entry for each zone, {zone, gestures: [words]}, the smallest zones first.
    readonly property var zones: overlay.service ? Zones.grouped(overlay.gestures(), overlay.mode) : []
    readonly property int margin: 4

    // Plain values: the gestures are destroyed with their service.
    function gestures() {
        const service = overlay.service
        const model = service.gestures
        const list = []
        for (let row = 0; row < model.rowCount(); ++row) {
            const gesture = model.data(model.index(row, 0), Qt.DisplayRole)
            const action = gesture.currentAction
            list.push({zone: gesture.zone, modes: gesture.modes, supported: gesture.supported,
                       text: (Words.arrow(gesture.direction) + " " + Words.kindWord(gesture.kind)).trim() + ": "
                             + (action ? action.lastTitle : "nothing")})
        }
        return list
    }

    // Call it when all labels have their sizes. Zones may overlap, labels should not.
    function place() {
        const sizes = []
        for (let number = 0; number < labels.count; ++number) {
            const label = labels.itemAt(number)
            if (!label)
                return
            sizes.push({zone: Zones.onScreen(overlay.zones[number], overlay.width, overlay.height),
                        width: label.width, height: label.height})
        }
        const places = Zones.placed(sizes, overlay.width, overlay.height)
        places.forEach((place, number) => {
            labels.itemAt(number).x = place.x
            labels.itemAt(number).y = place.y
        })
    }

    function placeLater() {
        Qt.callLater(overlay.place)
    }

    onZonesChanged: overlay.placeLater()
    onWidthChanged: overlay.placeLater()
    onHeightChanged: overlay.placeLater()

    FontMetrics {
        id: metrics
        font.pixelSize: 15
    }

    Repeater {
        model: overlay.zones
        delegate: Rectangle {
            id: outline
            required property int index
            required property var modelData
            objectName: "zone-" + outline.index
            x: overlay.margin / 2 + Zones.left(outline.modelData, overlay.width)
            y: overlay.margin / 2 + Zones.top(outline.modelData, overlay.height)
            width: Zones.width(outline.modelData, overlay.width) - overlay.margin
            height: Zones.height(outline.modelData, overlay.height) - overlay.margin
            color: "transparent"
            border.color: "black"
            border.width: 2
        }
    }

    Repeater {
        id: labels
        model: overlay.zones
        delegate: Rectangle {
            id: label
            required property int index
            required property var modelData
            readonly property real zoneWidth: Zones.width(label.modelData, overlay.width)
            readonly property real zoneHeight: Zones.height(label.modelData, overlay.height)
            // The text in a narrow strip is rotated.
            readonly property bool upright: label.zoneWidth < 80 && label.zoneHeight > 2 * label.zoneWidth
            readonly property real room: (label.upright ? label.zoneHeight : Math.max(80, label.zoneWidth)) - 14
            readonly property real textWidth: Math.min(label.room, Math.ceil(
                    Zones.widestLine(label.modelData, text => metrics.advanceWidth(text))) + 1)
            objectName: "zoneLabel-" + label.index
            width: (label.upright ? words.height : label.textWidth) + 10
            height: (label.upright ? label.textWidth : words.height) + 6
            color: "white"
            border.color: "black"
            border.width: 1

            Text {
                id: words
                objectName: "zoneText-" + label.index
                anchors.centerIn: label
                width: label.textWidth
                rotation: label.upright ? -90 : 0
                text: Zones.words(label.modelData)
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                font: metrics.font
            }
        }
    }
}
