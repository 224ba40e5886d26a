pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The curve's points as rows of sliders and numbers. Higher than its rows need, they share it.
Card {
    id: table

    required property CurveModel curve

    readonly property bool isOneLine: width >= 600
    readonly property real rowHeight: isOneLine ? 34 : 58
    readonly property real gap: 6
    readonly property real head: 36

    implicitHeight: head + rows.count * (rowHeight + gap) - gap + 12

    Label {
        id: title

        x: 12
        y: 12
        width: caption.x - x - 8
        text: "Stützpunkte (4 Stufen)"
        size: Theme.bodySize
        font.weight: Font.DemiBold
    }
    Label {
        id: caption

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.baseline: title.baseline
        text: "Links / Rechts RPM"
        color: Theme.textSecondary
        size: Theme.smallestSize
    }
    Column {
        x: 12
        y: table.head
        width: parent.width - 24
        spacing: table.gap

        Repeater {
            id: rows

            model: table.curve

            CurvePointRow {
                width: table.width - 24
                height: Math.floor((table.height - table.head - 12 + table.gap) / rows.count - table.gap)
                isOneLine: table.isOneLine
                curve: table.curve
            }
        }
    }
}
