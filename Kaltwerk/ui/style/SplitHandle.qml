import QtQuick
import Ventaro.Style

/// The edge between two columns, to be dragged or moved by keys. Shows nothing but its line.
Item {
    id: handle

    /// The user asks for the left column to be this much wider.
    signal dragged(real distance)

    implicitWidth: 1
    activeFocusOnTab: true
    Accessible.role: Accessible.Separator
    Accessible.name: "Breite der Seitenleiste"
    Accessible.description: Math.round(x + width) + " Punkte"
    Accessible.onDecreaseAction: dragged(-5)
    Accessible.onIncreaseAction: dragged(5)
    Keys.onLeftPressed: dragged(-5)
    Keys.onRightPressed: dragged(5)

    Rectangle {
        anchors.fill: parent
        color: handle.activeFocus ? Theme.focus : Theme.divider
    }
    MouseArea {
        property real pressX: 0

        anchors.fill: parent
        anchors.leftMargin: -4
        anchors.rightMargin: -4
        cursorShape: Qt.SplitHCursor
        preventStealing: true
        onPressed: mouse => pressX = mouse.x
        // The handle follows the pointer, so that the distance is always the one still to go.
        onPositionChanged: mouse => handle.dragged(mouse.x - pressX)
    }
}
