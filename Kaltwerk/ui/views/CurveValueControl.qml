import QtQuick
import Ventaro.Style

/// A value with its slider; the number itself can be typed over.
Item {
    id: control

    property string symbol
    property color symbolColor
    property string name
    property string unit
    property alias from: slider.from
    property alias to: slider.to
    property alias stepSize: slider.stepSize
    property real value

    /// An edit begins, changes the value, and ends.
    signal begun
    signal moved(real value)
    signal ended
    signal undoAsked
    signal redoAsked

    implicitHeight: 22

    SymbolIcon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: control.symbol
        size: 15
        color: control.symbolColor
    }
    SmallSlider {
        id: slider

        anchors.left: icon.right
        anchors.leftMargin: 6
        anchors.right: field.left
        anchors.rightMargin: 6
        value: control.value
        valueText: NumberText.whole(value) + control.unit
        Accessible.name: control.name
        onMoved: value => control.moved(value)
        onIsEditingChanged: slider.isEditing ? control.begun() : control.ended()
    }
    NumberField {
        id: field

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        value: control.value
        unit: control.unit
        from: control.from
        to: control.to
        Accessible.name: control.name + " eintippen"
        onEntered: value => {
            control.begun();
            control.moved(value);
            control.ended();
        }
        onUndoAsked: control.undoAsked()
        onRedoAsked: control.redoAsked()
    }
}
