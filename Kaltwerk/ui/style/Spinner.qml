import QtQuick
import Ventaro.Style

/// Something is under way.
Item {
    id: spinner

    property real size: 22
    property color color: Theme.textSecondary

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.Indicator
    Accessible.name: "Bitte warten"

    SpinnerWheel {
        anchors.fill: parent
        color: spinner.color

        RotationAnimator on rotation {
            from: 0
            to: 360
            duration: Theme.spinnerTurn
            loops: Animation.Infinite
            running: spinner.visible
        }
    }
}
