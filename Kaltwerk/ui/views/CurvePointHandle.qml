import QtQuick
import Ventaro.Style
import Ventaro.Views

/// One point of the curve in its chart, with its label; moved by keys when it has the focus.
FocusableItem {
    id: handle

    required property CurveModel curve
    required property int row
    required property real temperature
    required property real percent
    /// Where the label is, relative to the point.
    required property real labelX
    required property bool isHovered
    required property bool isDragged

    readonly property real diameter: 11
    readonly property alias labelWidth: chip.width

    /// A key moves this point by so much.
    signal movedByKey(real degrees, real percent)
    /// The key is up, or the focus gone.
    signal keyEnded

    width: 26
    height: 26
    Accessible.role: Accessible.Slider
    Accessible.name: "Stützpunkt " + (row + 1) + ": " + NumberText.whole(temperature) + " °C, " + NumberText.whole(percent) + " %"
    // The names by which assistive technology finds the value.
    readonly property real value: percent
    readonly property real minimumValue: 0
    readonly property real maximumValue: 100
    readonly property real stepSize: curve.percentStep

    function increase() {
        movedByKey(0, curve.percentStep);
        keyEnded();
    }
    function decrease() {
        movedByKey(0, -curve.percentStep);
        keyEnded();
    }
    Accessible.onIncreaseAction: increase()
    Accessible.onDecreaseAction: decrease()
    onActiveFocusChanged: {
        if (!activeFocus)
            keyEnded();
    }

    Keys.onPressed: event => {
        const isLarge = (event.modifiers & Qt.ShiftModifier) !== 0;
        const degrees = isLarge ? 5 : 1;
        const step = isLarge ? 2 * curve.percentStep : curve.percentStep;
        switch (event.key) {
        case Qt.Key_Left:
            movedByKey(-degrees, 0);
            break;
        case Qt.Key_Right:
            movedByKey(degrees, 0);
            break;
        case Qt.Key_Up:
            movedByKey(0, step);
            break;
        case Qt.Key_Down:
            movedByKey(0, -step);
            break;
        default:
            return;
        }
        event.accepted = true;
    }
    Keys.onReleased: event => {
        if (!event.isAutoRepeat && [Qt.Key_Left, Qt.Key_Right, Qt.Key_Up, Qt.Key_Down].indexOf(event.key) >= 0) {
            keyEnded();
            event.accepted = true;
        }
    }

    Rectangle {
        anchors.fill: parent
        visible: handle.isHovered || handle.isDragged
        radius: width / 2
        color: Theme.tint(Theme.accentFill, handle.isDragged ? 0.26 : 0.18)
    }
    Rectangle {
        id: dot

        anchors.centerIn: parent
        width: handle.diameter + 3
        height: width
        radius: width / 2
        color: Theme.accentFill
        border.width: 1.5
        border.color: Theme.card

        FocusRing {
            around: parent.radius
            visible: handle.showsFocus
        }
    }
    CurveChip {
        id: chip

        x: handle.labelX + handle.width / 2
        y: -13
        text: NumberText.whole(handle.temperature) + "°C · " + NumberText.whole(handle.percent) + "%"
    }
}
