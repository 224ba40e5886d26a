import QtQuick
import Ventaro.Style

/// A value with its symbol on a tinted tile.
Rectangle {
    id: badge

    property string title
    property string value
    property string symbol
    property color tintColor
    property color symbolColor

    implicitHeight: 70
    radius: Theme.radiusCard
    color: Theme.tint(tintColor, 0.10)
    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value

    SymbolIcon {
        x: 8
        y: 8
        name: badge.symbol
        size: 16
        color: badge.symbolColor
    }
    TabularText {
        x: 8
        y: 28
        text: badge.value
        color: Theme.textPrimary
        font.pixelSize: Theme.sectionSize
        font.weight: Font.Bold
    }
    Label {
        x: 8
        y: 48
        width: parent.width - 16
        text: badge.title
        color: Theme.textSecondary
        size: Theme.smallestSize
        Accessible.ignored: true
    }
}
