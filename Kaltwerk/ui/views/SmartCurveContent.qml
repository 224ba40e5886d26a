pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Views

/// The second tab: the curve, to be dragged, typed, kept and applied.
Column {
    id: content

    required property CurveModel curve
    required property CurveFileDialog files
    /// The detail column's size, points.
    required property size containerSize

    readonly property bool isWide: containerSize.width >= 820
    readonly property real chartHeight: isWide ? Math.min(Math.max(containerSize.height - 155, 230), 360) : Math.min(Math.max(containerSize.height * 0.34, 200), 270)

    spacing: 14
    // A tab that goes in the middle of an edit ends it.
    Component.onDestruction: curve?.endEdit()

    Shortcut {
        sequences: ["Ctrl+Z"]
        onActivated: {
            if (!chart.cancelDrag())
                content.curve.undo();
        }
    }
    Shortcut {
        sequences: ["Ctrl+Shift+Z", "Ctrl+Y"]
        onActivated: content.curve.redo()
    }

    CurveHeader {
        width: parent.width
        curve: content.curve
        containerWidth: content.containerSize.width
    }

    Item {
        width: parent.width
        height: content.isWide ? Math.round(content.chartHeight) : table.y + table.height

        CurveChartCard {
            id: chart

            width: content.isWide ? parent.width - 12 - table.width : parent.width
            height: Math.round(content.chartHeight)
            curve: content.curve
        }
        CurvePointsCompactTable {
            id: table

            x: content.isWide ? chart.width + 12 : 0
            y: content.isWide ? 0 : chart.height + 12
            width: content.isWide ? Math.round(Math.min(Math.max(content.containerSize.width * 0.4, 340), 420)) : parent.width
            height: content.isWide ? chart.height : implicitHeight
            curve: content.curve
        }
    }

    CurveFileButtons {
        width: parent.width
        curve: content.curve
        files: content.files
    }
}
