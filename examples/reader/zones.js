.pragma library

// Gestures by zone, and the places of the labels of zones that overlap. All lengths are pixels, all rectangles have x,
// y, width and height.

function isOf(gesture, mode) {
    return gesture.supported && (gesture.modes.length === 0 || gesture.modes.indexOf(mode) >= 0)
}

// {zone, gestures: [text]} for each zone of the mode's gestures, the smallest first.
function grouped(gestures, mode) {
    const zones = []
    gestures.filter(gesture => isOf(gesture, mode)).forEach(gesture => {
        const z = gesture.zone
        const known = zones.find(each => each.zone.x === z.x && each.zone.y === z.y && each.zone.width === z.width
                                         && each.zone.height === z.height)
        if (known)
            known.gestures.push(gesture.text)
        else
            zones.push({zone: z, gestures: [gesture.text]})
    })
    const size = each => each.zone.width * each.zone.height
    return zones.sort((a, b) => size(a) - size(b))
}

function overlap(a, b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height
}

// The parts of a rectangle, a label or a legend; nothing of null.

function left(rect) {
    return rect ? rect.x : 0
}

function top(rect) {
    return rect ? rect.y : 0
}

function width(rect) {
    return rect ? rect.width : 0
}

function height(rect) {
    return rect ? rect.height : 0
}

function words(label) {
    return label ? label.lines.join("\n") : ""
}

function fontSize(label) {
    return label ? Math.floor(label.size) : 1
}

function angle(label) {
    return label && label.upright ? -90 : 0
}

// A zone in pixels, without its parts beside the screen.
function onScreen(zone, screenWidth, screenHeight) {
    const x = Math.max(0, zone.x) * screenWidth
    const y = Math.max(0, zone.y) * screenHeight
    return {x: x, y: y, width: Math.max(0, Math.min(1, zone.x + zone.width) * screenWidth - x),
            height: Math.max(0, Math.min(1, zone.y + zone.height) * screenHeight - y)}
}

// {area, zone, gestures} for each zone.
function withAreas(entries, screenWidth, screenHeight) {
    return entries.map(entry => Object.assign({area: onScreen(entry.zone, screenWidth, screenHeight)}, entry))
}

function areaOf(entry) {
    return entry.area
}

function zoneOf(entry) {
    return entry.zone
}

function gesturesOf(entry) {
    return entry.gestures.join("\n")
}

function labelsOf(arrangement) {
    return arrangement.labels
}

function legendOf(arrangement) {
    return arrangement.legend
}

// The lines of a text that is at most so wide; null if a word is wider.
function wrapped(text, width, widthOf) {
    const lines = []
    let line = ""
    for (const word of text.split(" ")) {
        const longer = line === "" ? word : line + " " + word
        if (widthOf(longer) <= width) {
            line = longer
            continue
        }
        if (line === "" || widthOf(word) > width)
            return null
        lines.push(line)
        line = word
    }
    return lines.concat([line])
}

// {lines, size, upright, width, height} for texts in a label that is at most so wide; null if they do not fit.
// `style` has the font's `size` and its `smallSize`, the `lineHeight` of the former, the `padding` of a label, and
// widthOf(text) for the former.
function block(texts, width, size, upright, style) {
    const part = size / style.size
    const widthOf = text => style.widthOf(text) * part
    const lines = []
    for (const text of texts) {
        const more = wrapped(text, width - 2 * style.padding, widthOf)
        if (!more)
            return null
        Array.prototype.push.apply(lines, more)
    }
    const long = Math.ceil(Math.max.apply(null, lines.map(widthOf))) + 2 * style.padding
    const high = Math.ceil(lines.length * style.lineHeight * part) + 2 * style.padding
    return {lines: lines, size: size, upright: upright, width: upright ? high : long, height: upright ? long : high}
}

// Every form of a label that fits its zone, the best first: large before small, level before upright (if that is
// allowed), and one line before several.
function forms(texts, zone, upright, style) {
    const found = []
    for (const size of [style.size, (style.size + style.smallSize) / 2, style.smallSize]) {
        for (const turned of upright ? [false, true] : [false]) {
            const room = turned ? zone.height : zone.width
            for (const narrow of [1, 0.7, 0.5, 0.35]) {
                const form = block(texts, room * narrow, size, turned, style)
                if (form && form.width <= zone.width && form.height <= zone.height)
                    found.push(form)
            }
        }
    }
    return found
}

// The place for a label that is nearest to the middle of its zone, in the zone and not over the obstacles.
function freePlace(form, zone, obstacles) {
    const steps = 12
    const freeX = zone.width - form.width
    const freeY = zone.height - form.height
    let best = null
    for (let column = 0; column <= steps; ++column) {
        for (let row = 0; row <= steps; ++row) {
            const away = Math.hypot((column / steps - 0.5) * freeX, (row / steps - 0.5) * freeY)
            const place = {x: zone.x + column / steps * freeX, y: zone.y + row / steps * freeY, width: form.width,
                           height: form.height, away: away}
            if ((!best || away < best.away) && !obstacles.some(other => overlap(place, other)))
                best = place
        }
    }
    return best
}

// A form with its place, or null.
function label(texts, zone, upright, obstacles, style) {
    for (const form of forms(texts, zone, upright, style)) {
        const place = freePlace(form, zone, obstacles)
        if (place)
            return Object.assign({}, form, {x: place.x, y: place.y})
    }
    return null
}

// The numbers follow the order of the zones.
function numberOf(index, numbered) {
    return String(Array.from(numbered).filter(other => other <= index).length)
}

// The labels of all zones around an obstacle: those in `numbered` are numbers. `failed` are the zones without a place.
function attempt(entries, numbered, obstacles, style) {
    const done = []
    const failed = []
    const taken = obstacles.slice()
    entries.forEach((entry, index) => {
        const number = numbered.has(index)
        const texts = number ? [numberOf(index, numbered)] : entry.gestures
        const found = label(texts, entry.area, !number, taken, style)
        if (found)
            taken.push(found)
        else
            failed.push(index)
        done.push(found)
    })
    return {labels: done, failed: failed}
}

// {lines, x, y, width, height}: the gestures of the numbered zones, at the bottom of the screen.
function legendFor(entries, numbered, screenWidth, screenHeight, style) {
    if (numbered.size === 0)
        return null
    const texts = []
    entries.forEach((entry, index) => {
        if (numbered.has(index))
            texts.push(style.legendLine(numberOf(index, numbered), entry.gestures))
    })
    const form = block(texts, screenWidth, style.smallSize, false, style)
    return form ? Object.assign(form, {x: 0, y: Math.max(0, screenHeight - form.height), width: screenWidth}) : null
}

// The number in a zone that has no free place for it.
function covered(number, area, style) {
    const size = Math.min(style.size, area.height * 0.7, area.width)
    const width = Math.min(area.width, style.widthOf(number) * size / style.size + 2 * style.padding)
    const height = Math.min(area.height, style.lineHeight * size / style.size + 2 * style.padding)
    return {lines: [number], size: size, upright: false, width: width, height: height,
            x: area.x + (area.width - width) / 2, y: area.y + (area.height - height) / 2}
}

// Moves the legend up until no number is under it.
function aroundLegend(entries, numbered, legend, style) {
    let best = null
    const step = style.lineHeight
    for (let y = legend.y; y >= 0; y -= step) {
        const place = Object.assign({}, legend, {y: y})
        const tried = attempt(entries, numbered, [place], style)
        if (!best || tried.failed.length < best.failed.length)
            best = Object.assign(tried, {legend: place})
        if (tried.failed.length === 0)
            break
    }
    return best
}

// {labels, legend}: a label for each entry {area, gestures}, in its area and not over another label. Where two labels
// do not fit, a number stands for one, and the legend explains it; the legend is null if there are no numbers.
function arranged(entries, screenWidth, screenHeight, style) {
    let numbered = new Set()
    let tried = attempt(entries, numbered, [], style)
    while (tried.failed.length > 0 && tried.failed.some(index => !numbered.has(index))) {
        numbered = new Set(Array.from(numbered).concat(tried.failed))
        const legend = legendFor(entries, numbered, screenWidth, screenHeight, style)
        tried = legend ? aroundLegend(entries, numbered, legend, style) : attempt(entries, numbered, [], style)
    }
    const labels = tried.labels.map(
            (found, index) => found || covered(numberOf(index, numbered), entries[index].area, style))
    return {labels: labels, legend: tried.legend || null}
}
