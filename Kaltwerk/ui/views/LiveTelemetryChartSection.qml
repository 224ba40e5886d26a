pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The last two minutes of temperatures and speeds.
Column {
    id: section

    required property FanControllerViewModel viewModel
    /// The detail column's size, points.
    required property size containerSize

    readonly property int chartHeight: Math.round(Math.min(Math.max(containerSize.height * 0.22, 130), 210))

    spacing: 8

    HistoryModel {
        id: history

        viewModel: section.viewModel
    }

    Label {
        text: "Live-Verlauf (Letzte 2 Min.)"
        color: Theme.textSecondary
        font.weight: Font.DemiBold
    }
    AdaptiveGrid {
        width: parent.width
        minimumCellWidth: 300
        spacing: 12

        ChartCard {
            title: "CPU & Radeon GPU (°C)"
            symbol: "thermometer.high"
            chartHeight: section.chartHeight
            minimum: 25
            maximum: 105
            ticks: [40, 60, 80, 100]
            unit: "°C"
            decimals: 1
            lines: [
                ChartLine {
                    name: "CPU"
                    valueLabel: "CPU °C"
                    color: Theme.orange
                    points: history.cpuTemp
                },
                ChartLine {
                    name: "GPU"
                    valueLabel: "GPU °C"
                    color: Theme.purple
                    points: history.gpuTemp
                }
            ]
        }
        ChartCard {
            title: "Lüfterdrehzahl (RPM)"
            symbol: "fan.fill"
            chartHeight: section.chartHeight
            minimum: 1500
            maximum: 5800
            ticks: [2000, 3000, 4000, 5000]
            leftInset: 32
            unit: "RPM"
            lines: [
                ChartLine {
                    name: "Links"
                    valueLabel: "Links"
                    color: Theme.accentFill
                    points: history.fan0RPM
                },
                ChartLine {
                    name: "Rechts"
                    valueLabel: "Rechts"
                    color: Theme.cyan
                    points: history.fan1RPM
                }
            ]
        }
    }
}
