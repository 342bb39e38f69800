import QtQuick 2.15
import QtTest 1.15

TestCase {
    name: "Settings"
}
