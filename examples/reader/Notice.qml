import QtQuick 2.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0

// A message about the gestures. It stays until the user dismisses it, and comes back with another text.
Rectangle {
    id: notice

    property string text
    property real largestHeight: 0
    property string dismissed

    readonly property bool shown: notice.text !== "" && notice.text !== notice.dismissed

    function dismiss() {
        notice.dismissed = notice.text
    }

    onTextChanged: {
        if (notice.text !== notice.dismissed)
            notice.dismissed = ""
        if (notice.shown)
            Gestures.announce(notice)
    }

    visible: notice.shown
    height: notice.shown ? Math.max(button.height + 2 * Theme.margin,
                                    Math.min(notice.largestHeight, words.implicitHeight + 2 * Theme.margin)) : 0
    color: Theme.paper
    border.color: Theme.ink
    border.width: Theme.line

    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text

    Text {
        id: words
        objectName: "noticeText"
        anchors { left: notice.left; right: button.left; top: notice.top; bottom: notice.bottom; margins: Theme.margin }
        text: notice.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font { family: Theme.fontFamily; pixelSize: Theme.noteSize }
        fontSizeMode: Text.VerticalFit
        minimumPixelSize: Math.round(Theme.noteSize / 2)
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }

    EinkButton {
        id: button
        objectName: "noticeButton"
        anchors { right: notice.right; top: notice.top; margins: Theme.margin }
        activeFocusOnTab: false // Escape does the same
        text: qsTr("Dismiss")
        onClicked: notice.dismiss()
    }
}
