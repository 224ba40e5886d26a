import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A switch that shows `isOn`. A click changes nothing by itself: whoever owns the state answers it.
T.CheckBox {
    id: toggle

    property bool isOn: false
    property bool small: false

    readonly property real inset: 2
    readonly property real knobSize: (small ? 16 : 20) - 2 * inset

    implicitWidth: small ? 28 : 36
    implicitHeight: small ? 16 : 20
    opacity: enabled ? 1 : Theme.disabledOpacity
    checked: isOn
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    // Without these, assistive technology would only set what is shown.
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }
    Accessible.onToggleAction: Accessible.pressAction()
    // The template has just checked itself.
    onClicked: checked = Qt.binding(() => toggle.isOn)

    background: Rectangle {
        radius: height / 2
        color: toggle.isOn ? (toggle.down ? Theme.accentPressed : toggle.hovered ? Theme.accentHover : Theme.accent) : Theme.switchOff

        Behavior on color {
            ColorAnimation {
                duration: Theme.toggle
            }
        }

        FocusRing {
            around: parent.radius
            control: toggle
        }
    }
    contentItem: Item {
        Rectangle {
            x: toggle.isOn ? parent.width - width - toggle.inset : toggle.inset
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
