import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A switch that shows `on`. A click changes nothing by itself: whoever owns the state answers it.
T.AbstractButton {
    id: toggle

    property bool on: false
    property bool small: false

    readonly property real inset: 2
    readonly property real knobSize: (small ? 16 : 20) - 2 * inset

    implicitWidth: small ? 28 : 36
    implicitHeight: small ? 16 : 20
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on

    background: Rectangle {
        radius: height / 2
        color: toggle.on ? (toggle.down ? Theme.accentPressed : toggle.hovered ? Theme.accentHover : Theme.accent) : Theme.switchOff

        Behavior on color {
            ColorAnimation {
                duration: Theme.toggle
            }
        }

        FocusRing {
            around: parent.radius
            visible: toggle.visualFocus
        }
    }
    contentItem: Item {
        Rectangle {
            x: toggle.on ? parent.width - width - toggle.inset : toggle.inset
            y: toggle.inset
            width: toggle.knobSize + (toggle.down ? 3 : 0)
            height: toggle.knobSize
            radius: height / 2
            color: Theme.switchKnob
            border.width: 1
            border.color: Theme.switchKnobBorder

            Behavior on x {
                NumberAnimation {
                    duration: Theme.toggle
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
