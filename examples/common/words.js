.pragma library

// Gestures in plain words. The kinds and directions are those of Gesture.Kind and Gesture.Direction; zones are
// rectangles relative to the screen, 0 to 1.

var kinds = ["Tap", "Hold", "Swipe", "Drag"]
var directions = ["to the left", "to the right", "upwards", "downwards", ""]
var arrows = ["\u2190", "\u2192", "\u2191", "\u2193", ""]

function kindWord(kind) {
    return kinds[kind] || "Gesture"
}

function directionWord(direction) {
    return directions[direction] || ""
}

function arrow(direction) {
    return arrows[direction] || ""
}

// "Reading", "Menu and selecting", "Everywhere"
function modesWords(modes) {
    if (modes.length === 0)
        return "Everywhere"
    const text = modes.length === 1 ? modes[0] : modes.slice(0, -1).join(", ") + " and " + modes[modes.length - 1]
    return text.charAt(0).toUpperCase() + text.slice(1)
}

function sectionWords(gesture) {
    return modesWords(gesture.modes) + ": " + kindWord(gesture.kind).toLowerCase()
}

function third(position) {
    return position < 0.34 ? 0 : position > 0.66 ? 2 : 1
}

// The place of a zone, by its middle; empty for the whole screen.
function placeWords(zone) {
    if (zone.x <= 0 && zone.y <= 0 && zone.width >= 1 && zone.height >= 1)
        return ""
    const across = third(zone.x + zone.width / 2)
    const down = third(zone.y + zone.height / 2)
    if (across === 1 && down === 1)
        return zone.width >= 1 ? "across the middle" : "in the middle"
    if (across === 1)
        return down === 0 ? "at the top" : "at the bottom"
    if (down === 1)
        return across === 0 ? "on the left" : "on the right"
    return "in the " + (down === 0 ? "top" : "bottom") + (across === 0 ? " left" : " right") + " corner"
}

// "Tap on the right", "Swipe upwards on the left"
function gestureWords(gesture) {
    const place = placeWords(gesture.zone)
    const still = gesture.kind < 2 // taps and holds do not move
    return [kindWord(gesture.kind), still ? "" : directionWord(gesture.direction),
            place || (still ? "anywhere" : "")].filter(part => part !== "").join(" ")
}
