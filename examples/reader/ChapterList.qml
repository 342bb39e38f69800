import QtQuick 2.15
import "book.js" as Book

// The chapters of the book, to choose from.
Rectangle {
    id: list

    property int current: 0

    signal picked(int chapter)
    signal closed()

    height: column.height + 2 * column.spacing
    color: "white"
    border.color: "black"
    border.width: 2

    Column {
        id: column
        x: column.spacing
        y: column.spacing
        width: list.width - 2 * column.spacing
        spacing: 10

        Text {
            width: column.width
            height: 40
            text: Book.title()
            font.pixelSize: 24
            font.bold: true
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }

        Repeater {
            model: Book.chapterTitles()
            delegate: LargeButton {
                id: entry
                required property int index
                required property string modelData
                objectName: "chapterButton-" + entry.index
                width: column.width
                height: 64
                text: (entry.index + 1) + ". " + entry.modelData
                chosen: entry.index === list.current
                onClicked: list.picked(entry.index)
            }
        }

        LargeButton {
            objectName: "chapterListClose"
            width: column.width
            height: 64
            text: "Close"
            onClicked: list.closed()
        }
    }
}
