import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A whole number that looks like text until it is typed over. Return takes the new one, Escape or
/// leaving with something that is no number in range keeps the old one. Undo and redo are the
/// field's own only while something is typed.
T.TextField {
    id: field

    property real value: 0
    property real from: 0
    property real to: 100
    property string unit

    signal entered(real value)
    signal undoAsked
    signal redoAsked

    /// The text that stands for the value.
    property string shown
    readonly property bool isTyping: text !== shown

    function showValue() {
        shown = activeFocus ? NumberText.whole(value) : NumberText.whole(value) + unit;
        text = shown;
    }
    function takeOver() {
        const typed = Number(text);
        if (isTyping && /^\s*\d+\s*$/.test(text) && typed >= from && typed <= to && typed !== value)
            entered(typed);
        showValue();
    }

    implicitHeight: 20
    rightPadding: 3
    leftPadding: 2
    horizontalAlignment: TextInput.AlignRight
    verticalAlignment: TextInput.AlignVCenter
    hoverEnabled: true
    selectByMouse: true
    activeFocusOnTab: true
    color: Theme.textPrimary
    selectionColor: Theme.accent
    selectedTextColor: Theme.textOnAccent
    font.family: Appearance.fontFamily
    font.pixelSize: Theme.smallestSize
    font.weight: Font.DemiBold
    inputMethodHints: Qt.ImhDigitsOnly
    Component.onCompleted: showValue()
    onValueChanged: {
        if (!isTyping) {
            showValue();
            if (activeFocus)
                selectAll();
        }
    }
    onActiveFocusChanged: {
        if (activeFocus) {
            showValue();
            selectAll();
        } else {
            takeOver();
        }
    }
    Keys.onReturnPressed: {
        takeOver();
        selectAll();
    }
    Keys.onEnterPressed: event => Keys.returnPressed(event)
    Keys.onEscapePressed: event => {
        event.accepted = isTyping;
        showValue();
        selectAll();
    }
    Keys.onPressed: event => {
        if (!isTyping && event.matches(StandardKey.Undo)) {
            undoAsked();
            event.accepted = true;
        } else if (!isTyping && event.matches(StandardKey.Redo)) {
            redoAsked();
            event.accepted = true;
        }
    }

    background: Rectangle {
        radius: 5
        color: field.activeFocus ? Theme.field : field.hovered ? Theme.controlFill : "transparent"
        border.width: field.activeFocus ? 2 : 0
        border.color: Theme.focus
    }
}
