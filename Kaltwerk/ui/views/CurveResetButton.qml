import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Back to the curve of a first start.
PushButton {
    required property CurveModel curve
    property bool shortLabel: false

    symbol: "arrow.counterclockwise"
    text: shortLabel ? "Standard-Kurve" : "Standard-Kurve (45°C–85°C)"
    onClicked: curve.reset()
}
