import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// Lies over the page, and fades once the page rests.
T.ScrollBar {
    id: bar

    /// The page moves, or has just moved.
    property bool moving: false

    implicitWidth: 12
    padding: 3
    minimumSize: height > 0 ? 28 / height : 0
    hoverEnabled: true
    visible: size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        radius: 3
        color: bar.hovered || bar.pressed ? Theme.scrollThumbHover : Theme.scrollThumb
        opacity: bar.moving || bar.hovered || bar.pressed ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.scrollBarFade
            }
        }
    }
}
