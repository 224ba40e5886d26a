import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The temperature now, and what the curve makes of it.
Rectangle {
    id: pill

    required property CurveModel curve

    implicitWidth: row.width + 18
    implicitHeight: row.height + 8
    radius: height / 2
    color: Theme.controlFill
    border.width: 1
    border.color: Theme.controlBorder
    Accessible.role: Accessible.StaticText
    Accessible.name: temperature.text + " → " + speed.text

    Row {
        id: row

        x: 9
        y: 4
        spacing: 6

        TabularText {
            id: temperature

            text: NumberText.fixed(pill.curve.currentTemperature, 1) + " °C"
            color: Theme.orangeText
            font.pixelSize: Theme.captionSize
            font.weight: Font.DemiBold
        }
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow.right"
            size: 9
            color: Theme.textSecondary
        }
        TabularText {
            id: speed

            text: NumberText.whole(pill.curve.currentPercent) + "% (~" + NumberText.whole(pill.curve.currentRPM) + " RPM)"
            color: Theme.cyanText
            font.pixelSize: Theme.captionSize
            font.weight: Font.DemiBold
        }
    }
}
