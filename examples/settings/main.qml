import QtQuick 2.15
import QtQuick.Window 2.15

Window {
    property string appId: "reader"
    width: 600
    height: 800
    visible: true
}
