import QtQuick
import Ventaro.Style

/// Words in the curve's chart, on a ground of their own.
Rectangle {
    property alias text: label.text
    property alias textColor: label.color
    property alias weight: label.font.weight

    width: label.width + 12
    height: 16
    radius: 5
    color: Qt.tint(Theme.card, Theme.ink(0.06))

    TabularText {
        id: label

        anchors.centerIn: parent
        color: Theme.textPrimary
        font.pixelSize: Theme.smallestSize
    }
}
