pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// One of a few. Shows `currentIndex`, which whoever owns it changes on `chosen`.
T.Control {
    id: picker

    property list<string> labels
    property int currentIndex: 0

    signal chosen(int index)

    implicitHeight: 26
    implicitWidth: 300
    padding: 2
    opacity: enabled ? 1 : Theme.disabledOpacity
    Accessible.role: Accessible.PageTabList

    background: Rectangle {
        radius: Theme.radiusControl
        color: Theme.controlFill
        border.width: 1
        border.color: Theme.controlBorder
    }
    contentItem: Row {
        id: row

        Repeater {
            model: picker.labels

            T.AbstractButton {
                id: segment

                required property int index
                required property string modelData
                readonly property bool isCurrent: index === picker.currentIndex

                function move(offset: int) {
                    const next = index + offset;
                    if (next >= 0 && next < picker.labels.length) {
                        picker.chosen(next);
                        row.children[next].forceActiveFocus(Qt.TabFocusReason);
                    }
                }

                width: row.width / picker.labels.length
                height: row.height
                text: modelData
                hoverEnabled: true
                focusPolicy: isCurrent ? Qt.StrongFocus : Qt.ClickFocus
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: isCurrent
                onClicked: picker.chosen(index)
                Keys.onLeftPressed: move(-1)
                Keys.onRightPressed: move(1)

                background: Rectangle {
                    radius: Theme.radiusSmall
                    color: segment.isCurrent ? Theme.segmentSelected : segment.down ? Theme.controlPressed : segment.hovered ? Theme.controlHover : "transparent"
                    border.width: segment.isCurrent ? 1 : 0
                    border.color: Theme.segmentBorder

                    FocusRing {
                        around: parent.radius
                        visible: segment.visualFocus
                    }
                }
                contentItem: Label {
                    text: segment.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    size: 10.5
                    font.weight: Font.Medium
                }
            }
        }
    }
}
