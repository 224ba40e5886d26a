pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style

/// A chart under its title and beside its legend.
Card {
    id: card

    property string title
    property string symbol
    property real chartHeight
    property alias lines: chart.lines
    property alias minimum: chart.minimum
    property alias maximum: chart.maximum
    property alias ticks: chart.ticks
    property alias leftInset: chart.leftInset
    property alias unit: chart.unit
    property alias decimals: chart.decimals

    implicitHeight: chartHeight + 50

    SymbolIcon {
        id: icon

        x: 12
        anchors.verticalCenter: heading.verticalCenter
        name: card.symbol
        size: 14
        color: Theme.textSecondary
    }
    Label {
        id: heading

        anchors.left: icon.right
        anchors.leftMargin: 6
        anchors.right: legend.left
        anchors.rightMargin: 8
        y: 12
        text: card.title
        size: Theme.bodySize
        font.weight: Font.DemiBold
    }
    Row {
        id: legend

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: heading.verticalCenter
        spacing: 11

        Repeater {
            model: card.lines

            Row {
                id: entry

                required property ChartLine modelData

                spacing: 4

                SymbolIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "circle.fill"
                    size: 9
                    color: entry.modelData.color
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: entry.modelData.name
                    color: Theme.textSecondary
                    size: Theme.smallestSize
                }
            }
        }
    }
    LiveChart {
        id: chart

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        x: 12
        width: parent.width - 24
        height: card.chartHeight
        timeLabel: "Zeit"
        seriesLabel: "Sensor"
    }
}
