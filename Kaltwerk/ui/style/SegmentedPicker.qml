pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style

/// One of a few. Shows `currentIndex`, which whoever owns it changes on `chosen`.
FocusableItem {
    id: picker

    property list<string> labels
    property int currentIndex: 0

    signal chosen(int index)

    function move(offset: int) {
        const next = currentIndex + offset;
        if (next >= 0 && next < labels.length)
            chosen(next);
    }

    implicitHeight: 26
    implicitWidth: 300
    opacity: enabled ? 1 : Theme.disabledOpacity
    Accessible.role: Accessible.Grouping
    Keys.onLeftPressed: move(-1)
    Keys.onRightPressed: move(1)

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusControl
        color: Theme.controlFill
        border.width: 1
        border.color: Theme.controlBorder
    }
    Row {
        id: row

        anchors.fill: parent
        anchors.margins: 2

        readonly property real spare: {
            let taken = 0;
            for (const label of picker.labels)
                taken += metrics.advanceWidth(label);
            return width - taken;
        }

        FontMetrics {
            id: metrics

            font.pointSize: Theme.fontPoints(10.5)
            font.weight: Font.Medium
        }

        Repeater {
            model: picker.labels

            ChoiceButton {
                id: segment

                required property int index
                required property string modelData

                // Each as wide as its word, and an equal share of what is left.
                width: metrics.advanceWidth(modelData) + row.spare / picker.labels.length
                height: row.height
                text: modelData
                focusPolicy: Qt.NoFocus
                isOn: index === picker.currentIndex
                onClicked: {
                    picker.takeFocusByMouse();
                    picker.chosen(index);
                }

                background: Rectangle {
                    radius: Theme.radiusSmall
                    color: segment.isOn ? Theme.segmentSelected : segment.down ? Theme.controlPressed : segment.hovered ? Theme.controlHover : "transparent"
                    border.width: segment.isOn ? 1 : 0
                    border.color: Theme.segmentBorder

                    Rectangle {
                        x: parent.width
                        anchors.verticalCenter: parent.verticalCenter
                        visible: segment.index + 1 < picker.labels.length && !segment.isOn && segment.index + 1 !== picker.currentIndex
                        width: 1
                        height: 12
                        color: Theme.divider
                    }
                    FocusRing {
                        around: parent.radius
                        visible: picker.showsFocus && segment.isOn
                    }
                }
                contentItem: Label {
                    text: segment.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    size: 10.5
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
            }
        }
    }
}
