import QtQuick
import Ventaro.Style

/// A short word on a tinted ground.
Rectangle {
    id: capsule

    property alias text: label.text
    property color textColor: Theme.textSecondary

    implicitWidth: label.implicitWidth + 18
    implicitHeight: 18
    radius: height / 2
    color: Theme.controlFill
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Label {
        id: label

        anchors.centerIn: parent
        color: capsule.textColor
        size: Theme.smallestSize
        font.weight: Font.DemiBold
    }
}
