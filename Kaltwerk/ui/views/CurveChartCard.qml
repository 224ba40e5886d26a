pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The curve as a picture in which every point can be dragged.
Card {
    id: card

    required property CurveModel curve

    readonly property real lowest: 30
    readonly property real highest: 100
    readonly property real ceiling: 105

    Label {
        id: title

        x: 12
        y: 12
        width: hint.x - x - 8
        text: "Kennlinie (°C → Lüfterleistung %)"
        size: Theme.bodySize
        font.weight: Font.DemiBold
    }
    Label {
        id: hint

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.baseline: title.baseline
        text: "Punkte im Graphen ziehbar"
        color: Theme.textSecondary
        size: Theme.smallestSize
    }

    Item {
        id: plot

        readonly property bool isReady: width > 1 && height > 1

        function xOf(celsius: real): real {
            return (celsius - card.lowest) / (card.highest - card.lowest) * width;
        }
        function yOf(percent: real): real {
            return (card.ceiling - percent) / card.ceiling * height;
        }
        /// Left of a point with a label `labelWidth` wide, so that the label is clear of the curve.
        function labelOffset(rank: int, labelWidth: real): real {
            const points = card.curve.sorted;
            const x = xOf(points[rank].x);
            const y = yOf(points[rank].y);
            const lift = 9;
            const margin = 4;
            let left = x - labelWidth / 2;
            if (rank + 1 < points.length && points[rank + 1].y > points[rank].y) {
                const run = (xOf(points[rank + 1].x) - x) / (y - yOf(points[rank + 1].y));
                left = Math.min(left, x + lift * run - margin - labelWidth);
            }
            if (rank > 0 && points[rank - 1].y > points[rank].y) {
                const run = (x - xOf(points[rank - 1].x)) / (y - yOf(points[rank - 1].y));
                left = Math.max(left, x - lift * run + margin);
            }
            return Math.min(Math.max(left, 2), width - labelWidth - 2) - x;
        }
        function drag(x: real, y: real) {
            if (!isReady)
                return;
            const celsius = card.lowest + x / width * (card.highest - card.lowest);
            pointer.row = card.curve.drag(celsius, card.ceiling - y / height * card.ceiling);
        }

        x: 12 + 46
        y: 34 + 22
        width: Math.max(parent.width - x - 12 - 12, 0)
        height: Math.max(parent.height - y - 32 - 12, 0)

        Repeater {
            model: [0, 25, 50, 75, 100]

            Item {
                id: level

                required property int modelData

                y: Math.round(plot.yOf(modelData))

                Rectangle {
                    width: plot.width
                    height: 1
                    color: level.modelData === 0 ? Theme.gridBase : Theme.grid
                }
                TabularText {
                    anchors.verticalCenter: parent.top
                    x: -8 - width
                    text: NumberText.whole(level.modelData)
                    color: Theme.textTertiary
                    font.pixelSize: Theme.smallestSize
                }
            }
        }
        Repeater {
            model: 8

            Item {
                id: degree

                required property int index
                readonly property real celsius: 30 + index * 10

                x: Math.round(plot.xOf(celsius))

                Rectangle {
                    width: 1
                    height: plot.height
                    color: Theme.tint(Theme.grid, Theme.grid.a * 0.7)
                }
                TabularText {
                    anchors.horizontalCenter: parent.left
                    y: plot.height + 4
                    text: NumberText.whole(degree.celsius)
                    color: Theme.textTertiary
                    font.pixelSize: Theme.smallestSize
                }
            }
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            y: plot.height + 19
            text: "Temperatur (°C)"
            color: Theme.textTertiary
            size: Theme.smallestSize
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            anchors.horizontalCenter: parent.left
            anchors.horizontalCenterOffset: -39
            rotation: -90
            text: "Lüfter (%)"
            color: Theme.textTertiary
            size: Theme.smallestSize
        }

        CurveShape {
            anchors.fill: parent
            points: card.curve.sorted
            domain: Qt.rect(card.lowest, 0, card.highest - card.lowest, card.ceiling)
            lineColor: Theme.cyan
            areaColor: Theme.tint(Theme.cyan, Theme.dark ? 0.34 : 0.28)
        }

        Item {
            id: now

            readonly property real celsius: card.curve.currentTemperature
            readonly property bool isInside: celsius >= card.lowest && celsius <= card.highest

            x: Math.round(plot.xOf(celsius))
            visible: isInside

            Repeater {
                model: Math.ceil((plot.height + 4) / 7)

                Rectangle {
                    required property int index

                    y: -4 + index * 7
                    x: -0.75
                    width: 1.5
                    height: Math.min(4, plot.height - y)
                    color: Theme.tint(Theme.orange, 0.60)
                }
            }
            Label {
                x: now.x < 48 ? 5 : -width - 5
                y: -6
                text: "Aktuell"
                color: Theme.orangeText
                size: Theme.smallestSize
                font.weight: Font.DemiBold
            }
            Rectangle {
                id: target

                x: -width / 2
                y: plot.yOf(card.curve.currentPercent) - height / 2
                width: 16
                height: width
                radius: width / 2
                color: Theme.orange
                border.width: 1.5
                border.color: Theme.card
            }
            Label {
                x: now.x + 14 + width > plot.width ? -width - 12 : 15
                y: Math.min(target.y + target.height, plot.height - height)
                text: "Ziel"
                color: Theme.orangeText
                size: Theme.smallestSize
                font.weight: Font.DemiBold
            }
        }

        Repeater {
            id: handles

            model: card.curve.sortedRows

            CurvePointHandle {
                id: handle

                required property int modelData
                required property int index

                curve: card.curve
                row: modelData
                temperature: card.curve.sorted[index]?.x ?? 0
                percent: card.curve.sorted[index]?.y ?? 0
                x: plot.xOf(temperature)
                y: plot.yOf(percent)
                labelX: plot.labelOffset(index, labelWidth)
                isHovered: pointer.containsMouse && !pointer.pressed && pointer.row === row
                isDragged: pointer.pressed && !pointer.isCancelled && pointer.row === row
                onMovedByKey: (degrees, percent) => {
                    const moved = row;
                    card.curve.movePoint(moved, handle.temperature + degrees, handle.percent + percent);
                    handles.focusRow(moved);
                }
            }

            /// The point may have passed another one.
            function focusRow(row: int) {
                for (let rank = 0; rank < count; ++rank) {
                    const candidate = itemAt(rank) as CurvePointHandle;
                    if (candidate && candidate.row === row)
                        candidate.forceActiveFocus(Qt.TabFocusReason);
                }
            }
        }

        MouseArea {
            id: pointer

            property int row: -1
            property bool isCancelled: false

            anchors.fill: parent
            anchors.topMargin: -16
            anchors.bottomMargin: -6
            hoverEnabled: true
            preventStealing: true
            cursorShape: pressed ? Qt.ClosedHandCursor : Qt.OpenHandCursor
            onPressed: mouse => {
                isCancelled = false;
                card.curve.beginEdit();
                forceActiveFocus(Qt.MouseFocusReason);
                plot.drag(mouse.x, mouse.y - 16);
            }
            onPositionChanged: mouse => {
                if (!pressed)
                    row = card.curve.nearestRow(card.lowest + mouse.x / plot.width * (card.highest - card.lowest));
                else if (!isCancelled)
                    plot.drag(mouse.x, mouse.y - 16);
            }
            onReleased: {
                if (!isCancelled)
                    card.curve.endEdit();
            }
            onCanceled: {
                if (!isCancelled)
                    card.curve.endEdit();
            }
            Keys.onEscapePressed: event => {
                if (pressed && !isCancelled) {
                    isCancelled = true;
                    card.curve.cancelEdit();
                } else {
                    event.accepted = false;
                }
            }
        }
    }
}
