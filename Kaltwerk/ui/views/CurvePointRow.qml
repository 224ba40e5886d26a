import QtQuick
import Ventaro.Style
import Ventaro.Views

/// One point: its temperature and power, each by slider or typed, and what speeds come of it.
Rectangle {
    id: row

    required property CurveModel curve
    required property int index
    required property real temperature
    required property real percent
    required property real leftRPM
    required property real rightRPM
    property bool isOneLine: true

    readonly property real end: speeds.x - 10
    readonly property real half: (end - 37 - 12) / 2
    readonly property real lineOffset: isOneLine ? 0 : Math.min(height * 0.2, 13)

    radius: Theme.radiusTile
    color: Theme.rowTint

    Rectangle {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        radius: 9
        color: Theme.tint(Theme.accentFill, 0.16)

        Label {
            anchors.centerIn: parent
            text: row.index + 1
            color: Theme.accentText
            size: Theme.smallestSize
            font.weight: Font.DemiBold
        }
    }
    CurveValueControl {
        x: 37
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -row.lineOffset
        width: row.isOneLine ? row.half : row.end - x
        symbol: "thermometer.medium"
        symbolColor: Theme.orange
        name: "Temperatur Stützpunkt " + (row.index + 1)
        unit: "°C"
        from: row.curve.minimumTemperature
        to: row.curve.maximumTemperature
        stepSize: 1
        value: row.temperature
        onBegun: row.curve.beginEdit()
        onMoved: value => row.curve.movePoint(row.index, value, row.percent)
        onEnded: row.curve.endEdit()
        onUndoAsked: row.curve.undo()
        onRedoAsked: row.curve.redo()
    }
    CurveValueControl {
        x: row.isOneLine ? 37 + row.half + 12 : 37
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: row.lineOffset
        width: row.isOneLine ? row.half : row.end - x
        symbol: "fan.fill"
        symbolColor: Theme.cyan
        name: "Lüfterleistung Stützpunkt " + (row.index + 1)
        unit: "%"
        from: 0
        to: 100
        stepSize: row.curve.percentStep
        value: row.percent
        onBegun: row.curve.beginEdit()
        onMoved: value => row.curve.movePoint(row.index, row.temperature, value)
        onEnded: row.curve.endEdit()
        onUndoAsked: row.curve.undo()
        onRedoAsked: row.curve.redo()
    }
    TabularText {
        id: speeds

        x: parent.width - 10 - Math.max(width, 104)
        width: Math.max(implicitWidth, 104)
        anchors.verticalCenter: parent.verticalCenter
        text: NumberText.whole(row.leftRPM) + " / " + NumberText.whole(row.rightRPM) + " RPM"
        color: Theme.textPrimary
        font.pixelSize: Theme.captionSize
    }
}
