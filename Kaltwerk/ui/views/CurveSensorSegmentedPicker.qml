import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Which temperature drives the curve.
SegmentedPicker {
    required property CurveModel curve
    property bool compactLabels: false

    labels: compactLabels ? ["Max(CPU, GPU)", "CPU (TCXC)", "Radeon GPU"] : ["Max(CPU, Radeon GPU)", "CPU Package (TCXC)", "AMD Radeon GPU (TGDD)"]
    currentIndex: curve.source
    Accessible.name: "Sensorquelle"
    onChosen: index => curve.chooseSource(index)
}
