pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The sensors of one category under their title; nothing at all without any.
Column {
    id: section

    required property string title
    required property SensorGroup sensors
    readonly property int count: rows.count

    signal menuRequested(SensorRow row, point position)
    /// The focus is to go on beyond the first (-1) or the last (1) row.
    signal focusLeft(int direction)

    function focusRow(place: int) {
        const row = rows.itemAt(place);
        if (row)
            row.forceActiveFocus(Qt.OtherFocusReason);
        else
            focusLeft(place < 0 ? -1 : 1);
    }

    visible: count > 0
    spacing: 6

    Label {
        x: 2
        width: parent.width - 2
        text: section.title
        color: Theme.textSecondary
        size: Theme.smallestSize
        font.weight: Font.Bold
        font.letterSpacing: 0.3
        lineHeightMode: Text.FixedHeight
        lineHeight: 13
        Accessible.role: Accessible.Heading
    }
    Card {
        width: parent.width
        height: list.height + 2

        Column {
            id: list

            x: 1
            y: 1
            width: parent.width - 2
            Accessible.role: Accessible.List
            Accessible.name: section.title

            Repeater {
                id: rows

                model: section.sensors

                SensorRow {
                    id: row

                    width: list.width
                    isLast: index === rows.count - 1
                    onMenuRequested: position => section.menuRequested(row, position)
                    onMoveRequested: distance => section.focusRow(index + distance)
                }
            }
        }
    }
}
