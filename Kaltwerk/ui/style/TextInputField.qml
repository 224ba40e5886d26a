import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// One line to type in.
T.TextField {
    id: field

    implicitWidth: 240
    implicitHeight: 28
    leftPadding: 10
    rightPadding: 10
    verticalAlignment: TextInput.AlignVCenter
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.disabledOpacity
    color: Theme.textPrimary
    placeholderTextColor: Theme.textTertiary
    selectionColor: Theme.accent
    selectedTextColor: Theme.textOnAccent
    selectByMouse: true
    font.family: Appearance.fontFamily
    font.pixelSize: Theme.bodySize
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    background: Rectangle {
        radius: Theme.radiusControl
        color: Theme.field
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.focus : field.hovered ? Theme.fieldBorderHover : Theme.fieldBorder
    }

    Label {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText === ""
        verticalAlignment: Text.AlignVCenter
        text: field.placeholderText
        color: field.placeholderTextColor
        size: field.font.pixelSize
        Accessible.ignored: true
    }
}
