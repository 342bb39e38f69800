.pragma library

// Gestures by zone, and the places of the labels of overlapping zones.

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

function left(entry, screenWidth) {
    return entry.zone.x * screenWidth
}

function top(entry, screenHeight) {
    return entry.zone.y * screenHeight
}

function width(entry, screenWidth) {
    return entry.zone.width * screenWidth
}

function height(entry, screenHeight) {
    return entry.zone.height * screenHeight
}

function words(entry) {
    return entry.gestures.join("\n")
}

function widestLine(entry, widthOf) {
    return Math.max.apply(null, entry.gestures.map(widthOf))
}

function onScreen(entry, screenWidth, screenHeight) {
    return Qt.rect(left(entry, screenWidth), top(entry, screenHeight), width(entry, screenWidth),
                   height(entry, screenHeight))
}

function overlap(a, b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height
}

function within(value, low, high) {
    return Math.max(low, Math.min(high, value))
}

// A place for each label {zone, width, height}: in its zone, not over earlier labels if possible, and as
// near to the middle of the zone as possible.
function placed(labels, screenWidth, screenHeight) {
    const steps = 12
    const done = []
    labels.forEach(label => {
        const zone = label.zone
        const middle = {x: zone.x + (zone.width - label.width) / 2, y: zone.y + (zone.height - label.height) / 2,
                        away: 0}
        const free = {x: Math.max(0, zone.width - label.width - 8), y: Math.max(0, zone.height - label.height - 8)}
        const candidates = [middle]
        for (let column = 0; column <= steps; ++column) {
            for (let row = 0; row <= steps; ++row) {
                const dx = (column / steps - 0.5) * free.x
                const dy = (row / steps - 0.5) * free.y
                candidates.push({x: middle.x + dx, y: middle.y + dy, away: Math.sqrt(dx * dx + dy * dy)})
            }
        }
        candidates.sort((a, b) => a.away - b.away)
        const rects = candidates.map(candidate => ({x: within(candidate.x, 0, screenWidth - label.width),
                                                    y: within(candidate.y, 0, screenHeight - label.height),
                                                    width: label.width, height: label.height}))
        done.push(rects.find(rect => !done.some(other => overlap(rect, other))) || rects[0])
    })
    return done
}
