pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// One section of the hardware inventory.
Card {
    id: card

    required property string title
    required property string subtitle
    required property string symbol
    required property string accentName
    /// Objects with "label" and "value"; lists of them.
    required property var specs
    required property var subCards

    signal menuRequested(string text, HardwareRow row, point position)
    /// The focus is to go on to the next (1) or the previous (-1) row.
    signal moveRequested(HardwareRow row, int distance)

    readonly property var accents: ({
            orange: [Theme.orange, Theme.orangeText],
            green: [Theme.green, Theme.greenText],
            purple: [Theme.purple, Theme.purpleText],
            cyan: [Theme.cyan, Theme.cyanText],
            mint: [Theme.mint, Theme.mintText]
        })
    readonly property var accent: accents.hasOwnProperty(accentName) ? accents[accentName] : [Theme.accentFill, Theme.accentText]

    implicitHeight: column.height + 2 * column.y

    Column {
        id: column

        x: 13
        y: 13
        width: parent.width - 26
        spacing: 8

        Item {
            width: parent.width
            height: Math.max(tile.height, words.height)

            SymbolTile {
                id: tile

                width: 32
                height: 32
                color: Theme.tint(card.accent[0], 0.14)
                symbol: card.symbol
                symbolSize: 18
                symbolColor: card.accent[1]
            }
            Column {
                id: words

                x: 42
                width: parent.width - x

                Label {
                    width: parent.width
                    text: card.title
                    size: Theme.sectionSize
                    font.weight: Font.Bold
                    lineHeightMode: Text.FixedHeight
                    lineHeight: 18
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                }
                Label {
                    width: parent.width
                    text: card.subtitle
                    color: Theme.textSecondary
                    lineHeightMode: Text.FixedHeight
                    lineHeight: 15
                    wrapMode: Text.Wrap
                    font.preferShaping: false
                }
            }
        }
        Column {
            id: list

            width: parent.width
            bottomPadding: boxes.visible ? 4 : 0

            Repeater {
                id: rows

                model: card.specs

                Item {
                    id: cell

                    required property int index
                    required property var modelData

                    readonly property bool isLast: index === rows.count - 1

                    width: list.width
                    height: row.height + (isLast ? 4 : 9)

                    HardwareRow {
                        id: row

                        y: 4
                        width: parent.width
                        height: implicitHeight
                        label: cell.modelData.label
                        value: cell.modelData.value
                        isFirst: cell.index === 0
                        onMenuRequested: (text, position) => card.menuRequested(text, row, position)
                        onMoveRequested: distance => card.moveRequested(row, distance)
                    }
                    Rectangle {
                        anchors.bottom: parent.bottom
                        width: parent.width
                        height: 1
                        visible: !cell.isLast
                        color: Theme.hairline
                    }
                }
            }
        }
        AdaptiveGrid {
            id: boxes

            width: parent.width
            visible: card.subCards.length > 0
            minimumCellWidth: 280
            spacing: 8

            Repeater {
                model: card.subCards

                Rectangle {
                    id: box

                    required property var modelData

                    implicitHeight: lines.height + 16
                    radius: Theme.radiusTile
                    color: Theme.window

                    Column {
                        id: lines

                        x: 8
                        y: 8
                        width: parent.width - 16
                        spacing: 4

                        Repeater {
                            model: box.modelData

                            HardwareRow {
                                id: line

                                required property int index
                                required property var modelData

                                width: lines.width
                                size: 10.5
                                lineHeight: 14
                                label: modelData.label
                                value: modelData.value
                                isFirst: index === 0
                                onMenuRequested: (text, position) => card.menuRequested(text, line, position)
                                onMoveRequested: distance => card.moveRequested(line, distance)
                            }
                        }
                    }
                }
            }
        }
    }
}
