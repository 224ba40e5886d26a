import QtQuick
import Ventaro.Style

/// Two points wide, two points outside of its parent, whose corners have the radius `around`.
Rectangle {
    property real around: Theme.radiusControl

    anchors.fill: parent
    anchors.margins: -4
    radius: around + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
}
