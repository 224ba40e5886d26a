import QtQuick
import Ventaro.Style

/// Two points wide, two points outside of the control it surrounds. Shown after keyboard use only.
Rectangle {
    property Item control: parent as Item
    property real controlRadius: Theme.radiusControl
    property bool shown: false

    visible: shown
    anchors.fill: control
    anchors.margins: -4
    radius: controlRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
}
