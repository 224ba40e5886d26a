import QtQuick
import Ventaro.Style

/// One profile to choose.
ChoiceButton {
    id: card

    required property string title
    required property string subtitle
    required property string symbol
    required property bool isActive
    /// Whether the fans do what it says, as far as is known.
    required property bool isInForce

    readonly property bool isInVain: isActive && !isInForce

    readonly property string shownSubtitle: isInVain ? "Nicht in Kraft" : subtitle
    readonly property real padded: 8

    implicitHeight: Math.max(words.implicitHeight + 2 * padded, 48)
    text: title
    opacity: enabled ? 1 : Theme.disabledOpacity
    isOn: isActive
    Accessible.description: shownSubtitle

    background: Rectangle {
        radius: Theme.radiusCard
        color: Theme.card

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: card.isActive ? Theme.tint(Theme.accentFill, 0.10) : card.down ? Theme.controlHover : card.hovered ? Theme.rowTint : "transparent"
            border.width: 1
            border.color: card.isActive ? Theme.accentFill : card.hovered ? Theme.ink(0.18) : Theme.hairline
        }
        FocusRing {
            around: parent.radius
            control: card
        }
    }
    contentItem: Item {
        SymbolTile {
            id: tile

            x: card.padded
            anchors.verticalCenter: parent.verticalCenter
            color: card.isActive ? Theme.accent : Theme.tint(Theme.accentFill, 0.12)
            symbol: card.symbol
            symbolColor: card.isActive ? Theme.textOnAccent : Theme.accentText
        }
        Column {
            id: words

            anchors.left: tile.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: card.padded
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width - (card.isActive ? mark.width + 4 : 0)
                text: card.title
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: card.shownSubtitle
                color: card.isInVain ? Theme.orangeText : Theme.textSecondary
                size: Theme.smallestSize
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }
        }
        SymbolIcon {
            id: mark

            anchors.right: parent.right
            anchors.rightMargin: card.padded
            y: words.y + 1
            visible: card.isActive
            name: card.isInVain ? "exclamationmark.triangle.fill" : "checkmark.circle.fill"
            size: 14
            color: card.isInVain ? Theme.orangeText : Theme.accentText
        }
    }
}
