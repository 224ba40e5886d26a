import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Makes the curve drive the fans, or says that it does.
PushButton {
    required property CurveModel curve

    kind: curve.isActive ? PushButton.Tinted : PushButton.Prominent
    symbol: curve.isActive ? "checkmark.circle.fill" : "play.fill"
    text: curve.isActive ? "Kurve aktiv" : "Kurve aktivieren"
    font.weight: Font.DemiBold
    onClicked: curve.activate()
}
