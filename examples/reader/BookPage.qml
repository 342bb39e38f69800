import QtQuick 2.15
import "book.js" as Book

// A page of the book. The place is a word, so that it stays the same when the text size changes the pages.
Item {
    id: view

    property int textSize: 24 // in pixels
    property int word: 0
    property var bookmarks: []

    readonly property var pages: Book.paginate(view.width, view.linesOnPage, view.titleLines,
                                               text => metrics.advanceWidth(text))
    // All of these follow from the place: a page number may not exist after the pages have changed.
    readonly property int pageIndex: Book.pageOfWord(view.pages, view.word)
    readonly property bool first: Book.pageAt(view.pages, view.word).first
    readonly property int pageCount: Book.count(view.pages)
    readonly property var chapterTitles: Book.chapterTitles()
    readonly property int chapterCount: Book.count(view.chapterTitles)
    readonly property int chapterIndex: Book.pageAt(view.pages, view.word).chapter
    readonly property string chapterTitle: view.chapterTitles[view.chapterIndex]
    readonly property bool bookmarked: Book.isBookmarked(view.bookmarks, view.pages, view.pageIndex)

    // The height of the measured font, so that the two never differ.
    readonly property int lineHeight: Math.round(metrics.font.pixelSize * 1.4)
    readonly property int linesOnPage: Math.floor(view.height / view.lineHeight)
    readonly property int titleLines: 3

    // Returns whether there is such a page.
    function turn(pages) {
        const wanted = Math.max(0, Math.min(view.pageCount - 1, view.pageIndex + pages))
        const turned = wanted !== view.pageIndex
        view.word = view.pages[wanted].start
        return turned
    }

    function goToChapter(chapter) {
        const first = Book.firstPageOf(view.pages, chapter)
        if (first >= 0)
            view.word = view.pages[first].start
        return first >= 0
    }

    function toggleBookmark() {
        view.bookmarks = Book.toggled(view.bookmarks, view.pages, view.pageIndex, view.word)
    }

    FontMetrics {
        id: metrics
        font.family: "Serif"
        font.pixelSize: view.textSize
    }

    Text {
        objectName: "chapterTitle"
        visible: view.first
        width: view.width
        height: (view.titleLines - 1) * view.lineHeight
        text: view.chapterTitle
        textFormat: Text.PlainText
        font.family: "Serif"
        font.bold: true
        font.pixelSize: Math.round(view.textSize * 1.3)
        fontSizeMode: Text.HorizontalFit
        verticalAlignment: Text.AlignVCenter
        Accessible.role: Accessible.Heading
        Accessible.name: view.chapterTitle
    }

    Text {
        id: pageText
        objectName: "pageText"
        y: view.first ? view.titleLines * view.lineHeight : 0
        width: view.width
        text: Book.pageAt(view.pages, view.word).text
        textFormat: Text.PlainText
        font: metrics.font
        lineHeightMode: Text.FixedHeight
        lineHeight: view.lineHeight
        Accessible.role: Accessible.StaticText
        Accessible.name: pageText.text
    }
}
