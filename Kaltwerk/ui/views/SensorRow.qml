import QtQuick
import Ventaro.Style
import Ventaro.Views

/// One sensor of a group.
Item {
    id: row

    required property int index
    required property string name
    required property string key
    required property string valueText
    property bool isLast: false

    signal menuRequested(point position)
    signal moveRequested(int distance)

    implicitHeight: isLast ? 25 : 26
    // The first row stands for its group on the way through the window, the arrows do the rest.
    activeFocusOnTab: index === 0
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + key + ": " + valueText
    Accessible.focusable: true
    Keys.onUpPressed: moveRequested(-1)
    Keys.onDownPressed: moveRequested(1)
    Keys.onMenuPressed: menuRequested(Qt.point(value.x, height))
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_C && event.modifiers === Qt.ControlModifier;
        if (event.accepted)
            Clipboard.copy(row.valueText);
    }

    HoverHandler {
        id: pointer
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.WithinBounds
        onTapped: point => row.menuRequested(point.position)
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        anchors.bottomMargin: row.isLast ? 2 : 3
        radius: Theme.radiusControl
        color: pointer.hovered ? Theme.controlFill : "transparent"
        border.width: row.activeFocus ? 2 : 0
        border.color: Theme.focus
    }
    Label {
        id: title

        x: 12
        y: Math.round((25 - height) / 2)
        width: Math.min(implicitWidth, value.x - 12 - x - 8 - smcKey.implicitWidth)
        text: row.name
        size: 11.5
        Accessible.ignored: true
    }
    Label {
        id: smcKey

        anchors.left: title.right
        anchors.leftMargin: 8
        anchors.baseline: title.baseline
        text: row.key
        color: Theme.textSecondary
        size: 9.5
        font.family: Theme.monoFamily
        font.weight: Font.Bold
        font.preferShaping: false
        Accessible.ignored: true
    }
    TabularText {
        id: value

        anchors.right: parent.right
        anchors.rightMargin: 12
        y: Math.round(title.y + title.baselineOffset - baselineOffset)
        text: row.valueText
        color: Theme.textPrimary
        font.pointSize: Theme.fontPoints(Theme.captionSize)
        font.weight: Font.Medium
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        visible: !row.isLast
        color: Theme.hairline
    }
}
