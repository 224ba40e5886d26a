import QtQuick
import Ventaro.Style

/// A box over the full width that comes and goes. It keeps the distance to what follows itself, so
/// that nothing is left of it when it is gone. What it ends with is put into it.
Item {
    id: banner

    property bool shown: false
    property string symbol
    property color symbolColor
    property color fill
    property string text
    property bool isBold: false
    /// Kept free for what stands at the right end.
    property real trailingWidth: 0
    readonly property real gap: 8
    default property alias trailing: end.data

    readonly property real fullHeight: box.height + gap

    width: parent?.width ?? 0
    height: shown ? fullHeight : 0
    opacity: shown ? 1 : 0
    visible: height > 0
    enabled: shown
    clip: height < fullHeight
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Behavior on height {
        // What is known before the window is there simply stands there.
        enabled: banner.Window.visibility !== Window.Hidden
        NumberAnimation {
            duration: Theme.banner
            easing.type: Easing.OutCubic
        }
    }
    Behavior on opacity {
        enabled: banner.Window.visibility !== Window.Hidden
        NumberAnimation {
            duration: Theme.banner
            easing.type: Easing.OutCubic
        }
    }

    Rectangle {
        id: box

        width: parent.width
        height: Math.max(message.height + 16, 38)
        radius: Theme.radiusCard
        color: banner.fill

        SymbolIcon {
            id: icon

            x: 12
            anchors.verticalCenter: parent.verticalCenter
            name: banner.symbol
            size: 17
            color: banner.symbolColor
        }
        Label {
            id: message

            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            width: box.width - x - 12 - (banner.trailingWidth > 0 ? banner.trailingWidth + 10 : 0)
            text: banner.text
            font.weight: banner.isBold ? Font.Bold : Font.Normal
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            Accessible.ignored: true
        }
        Item {
            id: end

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            width: banner.trailingWidth
            height: childrenRect.height
        }
    }
}
