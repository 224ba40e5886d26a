import QtQuick
import Ventaro.Style

/// A level between nothing and all.
Item {
    id: bar

    /// 0 to 1.
    property real fraction: 0
    property color fill: Theme.cyan

    implicitHeight: 6
    Accessible.role: Accessible.ProgressBar

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.track
    }
    Rectangle {
        id: level

        property real shown: bar.fraction

        visible: shown > 0
        width: Math.max(parent.height, Math.round(parent.width * shown))
        height: parent.height
        radius: height / 2
        color: bar.fill

        Behavior on shown {
            // A small change would only keep the screen busy.
            enabled: Window.active && Math.abs(bar.fraction - level.shown) >= 0.02
            NumberAnimation {
                duration: Theme.bar
                easing.type: Easing.OutCubic
            }
        }
    }
}
