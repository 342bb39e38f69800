.pragma library

// A short tale, and the functions that break it into lines and pages.

var chapters = [
    {title: "The Narrow Water", paragraphs: [
        "Nobody in Harrow’s End could say who had first hung a lamp at the ferry. It stood on a post of black oak where the road ran out of land, and it had always stood there, and somebody had always lit it. When old Tobias Wren died in the first week of March, the lamp stayed dark for one night only. By the next evening his granddaughter had climbed the ladder with a can of oil in her coat.",
        "Her name was Ada. She was nineteen, she had rowed the ferry since she was twelve, and she did not believe in any of the things that her grandfather had told her about the lamp. It must never be lit before the first star, he had said. It must never be put out by a stranger. And on a night of fog, when the bell rang on the far bank, she must count the strokes before she untied the boat.",
        "The water was narrow there, no more than three hundred paces from one landing to the other, but it was deep, and it went by with a steady pull that the maps called slow and the oars called something else. On the far bank were a hut, a bell and a road that climbed into the hills. People came down that road with cheese and wool, and went back up it with salt and needles and news.",
        "On her first night as keeper nobody rang. Ada sat on the step with her grandfather’s watch in her hand, listening to the river talk to itself under the landing. At midnight she trimmed the wick, as she had been taught. At four the sky went grey. She put the lamp out with her own breath and slept until noon, and dreamed of nothing at all.",
        "On the second night there was fog.",
        "It came up the valley before dusk, so thick that the post vanished from the window, then the landing, then the window itself. Ada waited for the first star, and understood that she would not see one. She took the ladder out all the same. What use was a lamp that waited for good weather?",
    ]},
    {title: "Five Strokes", paragraphs: [
        "The bell rang a little after ten. She had been sitting so still that she heard the rope creak before the clapper moved. One, she counted, because nobody was there to laugh at her. Two. Three. The sound was small and flat, as if it had been wrapped in cloth. Four. Then such a long silence that she had already bent down to the knot when the fifth stroke came.",
        "Three was a traveller, her grandfather had taught her. Two was a letter, and one was only the wind. For four she was to wake the miller and bring him with her. He had never said what five meant. When she had asked him, he had looked into his tea and told her that in sixty years it had not rung five, and that there was no sense in filling a child’s head with sums.",
        "Ada untied the boat. She set the small lantern in the bow and her back to the dark, and took her bearing from the big lamp on its post, keeping it straight above the stern as it turned from a flame into a stain and from a stain into a guess. After fifty strokes there was nothing behind her but wool. She rowed on by the pull of the water against the blade.",
        "“Is anyone there?” she called, when she thought that she must be near. The answer came at once, and from the wrong side. “Here,” said a voice. “A little to your left. Mind the stake.” She pulled to the left, and the stake slid by so close that it combed the moss from her oar.",
        "A man stood on the landing with one hand still on the rope. He was neither old nor young, and he wore no hat. At his feet lay a bundle of the sort that clockmakers carry, with many small pockets. “Thank you for not waking the miller,” he said. “I rang as softly as I could.”",
    ]},
    {title: "The Passenger", paragraphs: [
        "He sat where passengers sit, and kept his hands on his knees. Ada noticed that the boat did not settle under him as it did under other people. She noticed also that he watched the water, and not the fog, as though he could see by it. “You know the river,” she said. “I knew it when it was wider,” said the man.",
        "They went some way without talking. Then the passenger asked who kept the lamp now, and she told him. He was silent for as long as it takes to row ten strokes. “He was a careful man,” he said at last. “He once made me wait until morning because I could not tell him what the toll was. It had gone up by a farthing.” And he laughed, so quietly that it might have been the water.",
        "“What does five mean?” asked Ada. She had not intended to. The passenger turned his head toward her for the first time, and the lantern showed a plain, tired, friendly face, with ink on the chin. “It means that someone on this side has something to give back,” he said. “It does not happen often. People mostly keep things.”",
        "He untied one of the small pockets and took out a key. It was of the same black iron as the bracket of the lamp, and no longer than her thumb. “I borrowed it from the keeper who was there before your grandfather,” he said. “I meant to bring it back the same week. But you know how it goes with a thing once it is in a pocket.”",
        "Ada shipped the oars to take it from him, and the boat, which should have swung at once with the stream, stayed where it was, as a leaf stays on a pond. “And what does it open?” she asked. “I never found out,” said the passenger. “That is why I have been so long about it.”",
    ]},
    {title: "What the Post Held", paragraphs: [
        "He paid the toll, and knew what it was to the farthing. He walked up the road to Harrow’s End without a light, and Ada, who looked after him until the fog had closed, could never say afterwards that she had seen him reach the first house. She made the boat fast. Then she took the ladder, because it had come to her where she had seen iron like that before.",
        "The bracket was bolted to the post under an iron plate, and in the plate there was a slot, painted over so often that it looked like a crack. She scraped it with her knife. It took a quarter of an hour, with one arm round the post and the lamp hissing by her ear. The key went in as if it had been oiled that morning. It turned to the left, which is the wrong way.",
        "Behind the plate the oak was hollow, and in the hollow stood a book. It was narrow and tall, like an account book, and it was wrapped in sailcloth. Ada carried it down into the kitchen, where she washed her hands, which were shaking, and sat down at the table where she had learned to read.",
        "It was a list of nights. Each had a date, a number of strokes and one line in a hand that changed every thirty or forty pages as one keeper gave way to the next. Three, a pedlar with a cough. Two, a letter for the widow. Three, two brothers who did not speak. So it went, page after page, for a hundred and ninety years, until it stopped in the middle of a winter with the words: five, a clockmaker, and I have been foolish and lent him the key.",
        "Her grandfather had kept the lamp for sixty years, and had never been able to write down a single night. She thought of him looking into his tea. Then she fetched the ink.",
    ]},
    {title: "A Clear Evening", paragraphs: [
        "She began with what she remembered. It was more than she would have thought, for he had liked to tell of his passengers, and he had told each story in the same words every time, as people do who know that they are the only copy. She wrote down the bishop who was seasick. She wrote down the calf, the bride, and the night when the miller’s brother came home from the war and rang three, politely, like a stranger.",
        "When she could remember no more she went from house to house and asked. Everybody in Harrow’s End had crossed the water at some time, and everybody had something to say about it. The miller remembered being woken, and how often, and how cold it had been. The widow still had the letter. By the end of April the book had caught up with itself, and there were eleven pages left.",
        "It was a clear evening, and the first star stood over the hills before the road was dark. Ada climbed the ladder and lit the lamp. She sat down on the step with the book on her knees, and the river went by, talking, and for once she thought that she could follow a good deal of what it said.",
        "The bell rang three. She wrote down the date and the number of strokes, and left the rest of the line open, for whoever it might be. Then she untied the boat.",
    ]},
]

function title() {
    return "The Ferry Lamp"
}

function chapterTitles() {
    return chapters.map(chapter => chapter.title)
}

// Lines of at most `width`, measured by `widthOf(text)`, each with the number of its first word.
function linesOf(paragraphs, width, widthOf, firstWord) {
    const indent = "\u2003"
    const space = widthOf(" ")
    const lines = []
    let word = firstWord
    paragraphs.forEach((paragraph, number) => {
        let text = number > 0 ? indent : ""
        let used = widthOf(text)
        let start = word
        let empty = true
        paragraph.split(" ").forEach(part => {
            const wide = widthOf(part)
            if (!empty && used + space + wide > width) {
                lines.push({start: start, text: text})
                text = ""
                used = 0
                start = word
                empty = true
            }
            text += (empty ? "" : " ") + part
            used += (empty ? 0 : space) + wide
            empty = false
            ++word
        })
        lines.push({start: start, text: text})
    })
    return {lines: lines, nextWord: word}
}

// All pages of the book: {chapter, first (of its chapter), start (number of its first word), text}. The first page of
// a chapter leaves `titleLines` free.
function paginate(width, linesOnPage, titleLines, widthOf) {
    const widths = new Map()
    const cachedWidthOf = text => {
        if (!widths.has(text))
            widths.set(text, widthOf(text))
        return widths.get(text)
    }
    const pages = []
    let word = 0
    chapters.forEach((chapter, number) => {
        const broken = linesOf(chapter.paragraphs, width, cachedWidthOf, word)
        word = broken.nextWord
        let at = 0
        while (at < broken.lines.length) {
            const room = Math.max(1, at === 0 ? linesOnPage - titleLines : linesOnPage)
            const taken = broken.lines.slice(at, at + room)
            pages.push({chapter: number, first: at === 0, start: taken[0].start,
                        text: taken.map(line => line.text).join("\n")})
            at += room
        }
    })
    return pages
}

// Of pages or chapters.
function count(list) {
    return list.length
}

// The page of a word.
function pageOfWord(pages, word) {
    let page = 0
    while (page + 1 < pages.length && pages[page + 1].start <= word)
        ++page
    return page
}

function pageAt(pages, word) {
    return pages[pageOfWord(pages, word)]
}

// The bookmarks (numbers of words) with a new one on this page, or without those on this page.
function toggled(bookmarks, pages, page, word) {
    const others = bookmarks.filter(bookmark => pageOfWord(pages, bookmark) !== page)
    return others.length < bookmarks.length ? others : others.concat([word])
}

function isBookmarked(bookmarks, pages, page) {
    return bookmarks.some(bookmark => pageOfWord(pages, bookmark) === page)
}

// The number of the first page of a chapter, -1 if there is no such chapter.
function firstPageOf(pages, chapter) {
    return pages.findIndex(page => page.chapter === chapter)
}
