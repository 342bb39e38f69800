import QtQuick 2.15
import "book.js" as Book

// The chapters of the book, to choose from. Picks the number of a chapter, from 0, or "close".
ButtonPanel {
    id: list

    columns: list.width > list.room * 1.2 ? 2 : 1
    title: Book.title()
    keys: Book.chapterTitles().map((title, number) => String(number)).concat(["close"])
    //: The number of a chapter, and its title.
    texts: Book.chapterTitles().map((title, number) => qsTr("%1. %2").arg(number + 1).arg(title))
               .concat([qsTr("Close")])
}
