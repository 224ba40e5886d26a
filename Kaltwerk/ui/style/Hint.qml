import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// What its parent, a control without words, does: shown while the pointer rests on it.
T.ToolTip {
    id: hint

    x: parent ? (parent.width - width) / 2 : 0
    y: parent ? parent.height + 6 : 0
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    horizontalPadding: 8
    verticalPadding: 4
    margins: 4
    delay: 600
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: Label {
        text: hint.text
        color: Theme.textOnBubble
    }
    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.bubble
    }
}
