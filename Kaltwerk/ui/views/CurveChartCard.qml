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
    /// Puts the points back that are being dragged; whether any are.
    function cancelDrag(): bool {
        return pointer.cancel();
    }

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
        /// Left of a point with a label `labelWidth` wide, so that the label is clear of the curve
        /// and of the dot for now.
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
            const reach = 10;
            const isBesideTarget = now.isInside && Math.abs(y - 18 - now.targetY) < 8 + reach;
            if (isBesideTarget && left < now.x + reach && left + labelWidth > now.x - reach)
                left = now.x < x ? now.x + reach : now.x - reach - labelWidth;
            return Math.min(Math.max(left, 2), width - labelWidth - 2) - x;
        }
        /// Whether the label of a point reaches into this part of the plot.
        function isLabelled(left: real, right: real, top: real, bottom: real): bool {
            const points = card.curve.sorted;
            for (let rank = 0; rank < handles.count; ++rank) {
                const handle = handles.itemAt(rank) as CurvePointHandle;
                if (!handle || rank >= points.length)
                    continue;
                const labelLeft = xOf(points[rank].x) + labelOffset(rank, handle.labelWidth);
                const labelTop = yOf(points[rank].y) - 26;
                if (labelLeft < right && labelLeft + handle.labelWidth > left && labelTop < bottom && labelTop + 16 > top)
                    return true;
            }
            return false;
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
            anchors.margins: -margin
            points: card.curve.sorted
            domain: Qt.rect(card.lowest, 0, card.highest - card.lowest, card.ceiling)
            lineColor: Theme.cyan
            areaColor: Theme.tint(Theme.cyan, Theme.dark ? 0.34 : 0.28)
        }

        Item {
            id: now

            readonly property real celsius: card.curve.currentTemperature
            readonly property bool isInside: celsius >= card.lowest && celsius <= card.highest
            readonly property real targetY: plot.yOf(card.curve.currentPercent)

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
            Rectangle {
                id: target

                x: -width / 2
                y: now.targetY - height / 2
                width: 16
                height: width
                radius: width / 2
                color: Theme.orange
                border.width: 1.5
                border.color: Theme.card
            }
        }
        // Over the labels of the points.
        Item {
            x: now.x
            z: 1
            visible: now.isInside

            Label {
                readonly property real leftPlace: -width - 5
                readonly property real rightPlace: 5
                readonly property bool isRight: now.x < 48 || (isTaken(leftPlace) && !isTaken(rightPlace))

                function isTaken(place: real): bool {
                    return plot.isLabelled(now.x + place, now.x + place + width, y, y + height);
                }

                x: isRight ? rightPlace : leftPlace
                y: -6
                text: "Aktuell"
                color: Theme.orangeText
                size: Theme.smallestSize
                font.weight: Font.DemiBold
            }
            CurveChip {
                x: now.x + 9 + width > plot.width ? -width - 9 : 9
                y: Math.min(now.targetY + 5, plot.height - height)
                text: "Ziel"
                textColor: Theme.orangeText
                weight: Font.DemiBold
            }
        }

        Repeater {
            id: handles

            /// Whether a key that has moved a point is still down.
            property bool isMovedByKey: false
            /// The handle that has the focus, and the point it had then.
            property CurvePointHandle focused: null
            property int focusedRow: -1

            model: card.curve.sorted.length

            CurvePointHandle {
                id: handle

                required property int index

                curve: card.curve
                row: card.curve.sortedRows[index] ?? -1
                temperature: card.curve.sorted[index]?.x ?? 0
                percent: card.curve.sorted[index]?.y ?? 0
                x: plot.xOf(temperature) - width / 2
                y: plot.yOf(percent) - height / 2
                labelX: plot.labelOffset(index, labelWidth)
                z: isHovered || isDragged || activeFocus ? 1 : 0
                isHovered: pointer.containsMouse && !pointer.isDragging && pointer.row === row
                isDragged: pointer.isDragging && pointer.row === row
                onActiveFocusChanged: handles.noteFocus(handle)
                onMovedByKey: (degrees, percent) => handles.moveByKey(row, handle.temperature + degrees, handle.percent + percent)
                onKeyEnded: handles.endKey()
            }

            function itemOf(row: int): CurvePointHandle {
                return itemAt(card.curve.rankOf(row)) as CurvePointHandle;
            }
            function noteFocus(handle: CurvePointHandle) {
                if (handle.activeFocus) {
                    focused = handle;
                    focusedRow = handle.row;
                } else if (focused === handle) {
                    focused = null;
                }
            }
            /// A point that passes another one changes its handle, and takes the focus along.
            function moveFocus() {
                const row = focusedRow;
                const next = itemOf(row);
                if (!focused || !next || next === focused)
                    return;
                if (focused.showsFocus)
                    next.forceActiveFocus(Qt.TabFocusReason);
                else
                    next.takeFocusByMouse();
                focusedRow = row;
            }
            function moveByKey(row: int, celsius: real, percent: real) {
                // Its handle may lose the focus by it.
                isMovedByKey = false;
                card.curve.movePoint(row, celsius, percent);
                isMovedByKey = true;
            }
            function endKey() {
                if (isMovedByKey) {
                    isMovedByKey = false;
                    card.curve.endEdit();
                }
            }
        }
        Connections {
            target: card.curve
            function onCurveChanged() {
                handles.moveFocus();
            }
        }

        MouseArea {
            id: pointer

            property int row: -1
            property point origin
            property bool isDragging: false
            property bool isCancelled: false

            function rowAt(x: real): int {
                return card.curve.nearestRow(card.lowest + x / plot.width * (card.highest - card.lowest));
            }
            function end() {
                if (isDragging) {
                    isDragging = false;
                    card.curve.endEdit();
                }
                handles.itemOf(row)?.takeFocusByMouse();
            }
            function cancel(): bool {
                const wasDragging = isDragging;
                isDragging = false;
                isCancelled = pressed;
                if (wasDragging)
                    card.curve.cancelEdit();
                return wasDragging;
            }

            anchors.fill: parent
            anchors.topMargin: -16
            anchors.bottomMargin: -6
            hoverEnabled: true
            preventStealing: true
            cursorShape: pressed ? Qt.ClosedHandCursor : Qt.OpenHandCursor
            onPressed: mouse => {
                // Whoever has the focus ends its own edit first.
                forceActiveFocus(Qt.MouseFocusReason);
                isCancelled = false;
                origin = Qt.point(mouse.x, mouse.y);
                row = rowAt(mouse.x);
            }
            onPositionChanged: mouse => {
                // A mere click moves nothing.
                const tremble = 3;
                if (pressed && !isCancelled && !isDragging && Math.hypot(mouse.x - origin.x, mouse.y - origin.y) >= tremble) {
                    isDragging = true;
                    card.curve.beginEdit();
                }
                if (isDragging)
                    plot.drag(mouse.x, mouse.y - 16);
                else if (!pressed)
                    row = rowAt(mouse.x);
            }
            onReleased: end()
            onCanceled: end()
        }
        Shortcut {
            sequence: "Escape"
            enabled: pointer.pressed
            onActivated: pointer.cancel()
        }
    }
}
