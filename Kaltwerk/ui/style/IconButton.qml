import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A small symbol to press. `text` is what assistive technology reads.
T.Button {
    id: button

    property string symbol
    property real symbolSize: 11

    implicitWidth: 22
    implicitHeight: 22
    hoverEnabled: true
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: button.down ? Theme.controlPressed : button.hovered ? Theme.controlHover : "transparent"

        FocusRing {
            around: parent.radius
            control: button
        }
    }
    contentItem: Item {
        SymbolIcon {
            anchors.centerIn: parent
            name: button.symbol
            size: button.symbolSize
            color: Theme.textSecondary
        }
    }
}
