import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A button with a text, a symbol, or both. Busy, it keeps its width and does nothing, and has its
/// focus again afterwards.
T.Button {
    id: button

    enum Kind {
        Bordered,
        Prominent,
        Orange,
        Tinted
    }

    property int kind: PushButton.Bordered
    property string symbol
    property bool small: false
    property bool busy: false
    property real fontSize: small ? 11 : 11.5

    readonly property color foreground: {
        switch (kind) {
        case PushButton.Prominent:
            return Theme.textOnAccent;
        case PushButton.Orange:
            return Theme.textOnOrange;
        case PushButton.Tinted:
            return Theme.accentText;
        default:
            return Theme.textPrimary;
        }
    }
    readonly property color fill: {
        switch (kind) {
        case PushButton.Prominent:
            return down ? Theme.accentPressed : hovered ? Theme.accentHover : Theme.accent;
        case PushButton.Orange:
            return down ? Theme.orangeButtonPressed : hovered ? Theme.orangeButtonHover : Theme.orangeButton;
        case PushButton.Tinted:
            return Theme.tint(Theme.accentFill, down ? 0.24 : hovered ? 0.18 : 0.12);
        default:
            return down ? Theme.controlPressed : hovered ? Theme.controlHover : Theme.controlFill;
        }
    }

    // Whole points, so that the border stays sharp at either end.
    implicitWidth: Math.ceil(content.implicitWidth) + 2 * (small ? 8 : 10)
    implicitHeight: small ? 22 : 26
    enabled: !busy
    hoverEnabled: true
    opacity: busy ? Theme.busyOpacity : enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    background: Rectangle {
        radius: button.small ? Theme.radiusSmall : Theme.radiusControl
        color: button.fill
        border.width: button.kind === PushButton.Bordered || button.kind === PushButton.Tinted ? 1 : 0
        border.color: button.kind === PushButton.Tinted ? Theme.tint(Theme.accentFill, 0.35) : Theme.controlBorder

        Behavior on color {
            enabled: !button.down
            ColorAnimation {
                duration: button.hovered ? Theme.hoverIn : Theme.hoverOut
            }
        }

        FocusRing {
            around: parent.radius
            control: button
        }
    }
    contentItem: Item {
        Row {
            id: content

            anchors.centerIn: parent
            spacing: 5
            opacity: button.busy ? 0 : 1

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: name !== ""
                name: button.symbol
                size: button.small ? 12 : 13
                color: button.foreground
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                visible: text !== ""
                text: button.text
                color: button.foreground
                size: button.fontSize
                font.weight: button.font.weight !== Font.Normal ? button.font.weight : button.kind === PushButton.Bordered || button.kind === PushButton.Tinted ? Font.Medium : Font.DemiBold
                Accessible.ignored: true
            }
        }
        Spinner {
            anchors.centerIn: parent
            visible: button.busy
            size: 14
            color: button.foreground
        }
    }
}
