pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style

/// Lines over the last minutes.
Item {
    id: chart

    property alias lines: plot.lines
    property real minimum: 0
    property real maximum: 100
    property list<real> ticks
    /// Room for the values at the left.
    property real leftInset: 26
    /// Milliseconds that the chart shows.
    property real timeSpan: 120000
    /// What a value under the pointer is called, with `decimals` digits.
    property string unit
    property int decimals: 0
    /// The title of the time axis and of the legend, for assistive technology.
    property string timeLabel
    property string seriesLabel

    readonly property real plotX: leftInset
    readonly property real plotY: 6
    readonly property real plotWidth: Math.max(width - leftInset - 6, 1)
    readonly property real plotHeight: Math.max(height - 6 - 18, 1)

    readonly property real opened: Date.now()
    readonly property real end: lines.length > 0 && !lines[0].isEmpty ? lines[0].last.x : opened
    readonly property real start: end - timeSpan

    function xOf(time: real): real {
        return plotX + (time - start) / timeSpan * plotWidth;
    }
    function yOf(value: real): real {
        return plotY + (maximum - value) / (maximum - minimum) * plotHeight;
    }
    function clockText(time: real): string {
        return Qt.formatTime(new Date(time), "HH:mm:ss");
    }

    Accessible.role: Accessible.Chart
    Accessible.name: lines.length > 0 ? timeLabel + ", " + seriesLabel + ": " + lines[0].valueLabel + (lines.length > 1 ? ", " + lines[1].valueLabel : "") : ""

    Repeater {
        model: chart.ticks

        Item {
            id: tick

            required property real modelData

            y: Math.round(chart.yOf(modelData))

            Rectangle {
                x: chart.plotX
                width: chart.plotWidth
                height: 1
                color: Theme.grid
            }
            TabularText {
                anchors.verticalCenter: parent.top
                x: chart.plotX - 6 - width
                text: NumberText.rounded(tick.modelData)
                color: Theme.textTertiary
                font.pixelSize: Theme.smallestSize
            }
        }
    }
    Rectangle {
        x: chart.plotX
        y: Math.round(chart.plotY + chart.plotHeight)
        width: chart.plotWidth
        height: 1
        color: Theme.gridBase
    }
    Repeater {
        model: 4

        Item {
            id: mark

            required property int index
            readonly property real step: 30000
            readonly property real time: (Math.floor(chart.end / step) - index) * step
            readonly property real place: Math.round(chart.xOf(time))

            x: place
            y: chart.plotY + chart.plotHeight
            // A label that would stand out beyond the chart is left away.
            visible: place - label.width / 2 >= chart.plotX - 12 && place + label.width / 2 <= chart.width + 6

            Rectangle {
                width: 1
                height: 4
                color: Theme.gridBase
            }
            TabularText {
                id: label

                anchors.horizontalCenter: parent.left
                y: 6
                text: chart.clockText(mark.time)
                color: Theme.textTertiary
                font.pixelSize: Theme.smallestSize
            }
        }
    }

    LinePlot {
        id: plot

        x: chart.plotX
        y: chart.plotY
        width: chart.plotWidth
        height: chart.plotHeight
        domain: Qt.rect(chart.start, chart.minimum, chart.timeSpan, chart.maximum - chart.minimum)
    }

    Repeater {
        model: chart.lines

        Rectangle {
            required property ChartLine modelData
            readonly property real value: modelData.last.y

            visible: !modelData.isEmpty && value >= chart.minimum && value <= chart.maximum
            x: chart.xOf(modelData.last.x) - width / 2
            y: chart.yOf(value) - height / 2
            width: 9
            height: 9
            radius: width / 2
            color: modelData.color
            border.width: 1.5
            border.color: Theme.card
        }
    }

    MouseArea {
        id: pointer

        readonly property real time: chart.start + (mouseX - chart.plotX) / chart.plotWidth * chart.timeSpan
        readonly property bool isOverData: containsMouse && mouseX >= chart.plotX && chart.lines.length > 0 && !chart.lines[0].isEmpty

        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        hoverEnabled: true
    }
    Item {
        id: reader

        readonly property real time: visible ? chart.lines[0].nearest(pointer.time).x : 0

        visible: pointer.isOverData

        Rectangle {
            x: Math.round(chart.xOf(reader.time))
            y: chart.plotY
            width: 1
            height: chart.plotHeight
            color: Theme.textTertiary
        }
        Rectangle {
            x: Math.min(Math.max(chart.xOf(reader.time) + 8, chart.plotX), chart.width - width)
            y: chart.plotY
            width: values.width + 16
            height: values.height + 10
            radius: Theme.radiusSmall
            color: Theme.bubble

            Column {
                id: values

                x: 8
                y: 5
                spacing: 1

                TabularText {
                    text: chart.clockText(reader.time)
                    color: Theme.textOnBubble
                    font.pixelSize: Theme.smallestSize
                    font.weight: Font.DemiBold
                }
                Repeater {
                    model: chart.lines

                    TabularText {
                        required property ChartLine modelData

                        text: reader.visible ? modelData.name + " " + NumberText.fixed(modelData.nearest(reader.time).y, chart.decimals) + " " + chart.unit : ""
                        color: Theme.textOnBubble
                        font.pixelSize: Theme.smallestSize
                    }
                }
            }
        }
    }
}
