import QtQuick 2.15

// A label. The text of a configuration never has markup.
Text {
    id: label

    color: label.enabled ? Theme.ink : Theme.dim
    font { family: Theme.fontFamily; pixelSize: Theme.labelSize }
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft // explicit, or else it follows the text's language, not the layout
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text
}
