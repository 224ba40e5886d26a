import QtQuick
import Ventaro.Style

/// A slider that shows `value`, which whoever owns it changes on `moved`. Snaps to whole steps from
/// the left end, and reaches the right end even where no step does. The wheel turns it only when it
/// has the focus.
FocusableItem {
    id: slider

    property real from: 0
    property real to: 1
    property real value: 0
    property real stepSize: 0
    /// What the bubble says while the value is being moved, with its unit.
    property string valueText

    /// The user asks for another value.
    signal moved(real newValue)
    /// The user is done: the pointer is released, no key has come for a while, or the slider has
    /// lost the focus or goes. Once for everything since `isEditing`.
    signal released

    /// Whether the user is at it.
    property bool isEditing: false

    readonly property real range: to - from
    readonly property real position: range > 0 ? Math.min(Math.max((value - from) / range, 0), 1) : 0
    readonly property bool pressed: pointer.pressed
    readonly property real knobSize: 14

    // The names by which assistive technology finds the value.
    readonly property real minimumValue: from
    readonly property real maximumValue: to

    function snapped(wanted: real): real {
        const inside = Math.min(Math.max(wanted, from), to);
        if (stepSize <= 0)
            return inside;
        const last = from + Math.floor(range / stepSize) * stepSize;
        if (inside > (last + to) / 2)
            return to;
        return Math.min(from + Math.round((inside - from) / stepSize) * stepSize, to);
    }
    function ask(wanted: real) {
        const next = snapped(wanted);
        if (next !== value)
            moved(next);
    }
    /// One or more steps on, without leaving the grid by it.
    function stepBy(steps: int) {
        goTo(value + steps * (stepSize > 0 ? stepSize : range / 100));
    }
    function goTo(wanted: real) {
        isEditing = true;
        ask(wanted);
        // A pointer that holds the knob ends the edit itself.
        if (!pointer.pressed)
            rest.restart();
    }
    function end() {
        rest.stop();
        if (isEditing) {
            isEditing = false;
            released();
        }
    }
    function increase() {
        stepBy(1);
    }
    function decrease() {
        stepBy(-1);
    }

    implicitWidth: 120
    implicitHeight: 22
    opacity: enabled ? 1 : Theme.disabledOpacity
    Accessible.role: Accessible.Slider
    Accessible.description: valueText
    Accessible.onIncreaseAction: increase()
    Accessible.onDecreaseAction: decrease()

    Keys.onPressed: event => {
        const page = 10;
        switch (event.key) {
        case Qt.Key_Left:
        case Qt.Key_Down:
            slider.stepBy(-1);
            break;
        case Qt.Key_Right:
        case Qt.Key_Up:
            slider.stepBy(1);
            break;
        case Qt.Key_PageDown:
            slider.stepBy(-page);
            break;
        case Qt.Key_PageUp:
            slider.stepBy(page);
            break;
        case Qt.Key_Home:
            slider.goTo(slider.from);
            break;
        case Qt.Key_End:
            slider.goTo(slider.to);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    Component.onDestruction: end()
    onActiveFocusChanged: {
        if (rest.running)
            end();
    }

    Timer {
        id: rest

        interval: 400
        onTriggered: slider.end()
    }

    Rectangle {
        id: track

        y: Math.round((parent.height - height) / 2)
        width: parent.width
        height: 4
        radius: 2
        color: Theme.track
    }
    Rectangle {
        y: track.y
        visible: knob.x > 0
        width: knob.x + knob.width / 2
        height: 4
        radius: 2
        color: Theme.accentFill
    }
    Rectangle {
        id: knob

        x: Math.round(slider.position * (parent.width - width))
        y: Math.round((parent.height - height) / 2)
        width: slider.knobSize
        height: slider.knobSize
        radius: width / 2
        color: slider.pressed ? Theme.sliderKnobPressed : Theme.sliderKnob
        border.width: 1
        border.color: Theme.sliderKnobBorder

        FocusRing {
            around: parent.radius
            visible: slider.showsFocus
        }
    }
    Rectangle {
        id: bubble

        visible: slider.pressed || rest.running
        x: Math.min(Math.max(knob.x + (knob.width - width) / 2, 0), parent.width - width)
        y: knob.y - 6 - height
        width: bubbleText.implicitWidth + 12
        height: 18
        radius: 5
        color: Theme.bubble

        TabularText {
            id: bubbleText

            anchors.centerIn: parent
            text: bubble.visible ? slider.valueText : ""
            color: Theme.textOnBubble
            font.pixelSize: Theme.smallestSize
            font.weight: Font.DemiBold
        }
    }
    MouseArea {
        id: pointer

        /// From the knob's centre to where it was taken hold of.
        property real grip: 0
        property real wheelTurn: 0

        function follow(pointerX: real) {
            const x = pointerX - grip;
            slider.ask(slider.from + slider.range * (x - slider.knobSize / 2) / Math.max(width - slider.knobSize, 1));
        }

        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => {
            slider.takeFocusByMouse();
            rest.stop();
            slider.isEditing = true;
            const offset = mouse.x - knob.x - knob.width / 2;
            const isOnKnob = Math.abs(offset) <= knob.width / 2;
            grip = isOnKnob ? offset : 0;
            // Taking hold of the knob moves nothing yet.
            if (!isOnKnob)
                follow(mouse.x);
        }
        onPositionChanged: mouse => follow(mouse.x)
        onReleased: slider.end()
        onCanceled: slider.end()
        onWheel: wheel => {
            if (!slider.activeFocus) {
                wheel.accepted = false;
                return;
            }
            // A touchpad sends many small parts of what a wheel sends as one notch.
            const notch = 120;
            wheelTurn += wheel.angleDelta.y;
            const notches = Math.trunc(wheelTurn / notch);
            wheelTurn -= notches * notch;
            if (notches !== 0)
                slider.stepBy(notches);
        }
    }
}
