import QtQuick
import Ventaro.Style

/// One option: its words, which wrap, and its switch.
Item {
    id: row

    property alias text: toggle.text
    property alias isOn: toggle.isOn
    property bool isLast: false

    signal clicked

    implicitHeight: Math.max(label.height + 12, 40) + (isLast ? 0 : 1)

    Label {
        id: label

        y: Math.round((row.height - (row.isLast ? 0 : 1) - height) / 2)
        width: toggle.x - 16
        text: toggle.text
        size: Theme.bodySize
        lineHeightMode: Text.FixedHeight
        lineHeight: 16
        wrapMode: Text.Wrap
        Accessible.ignored: true

        TapHandler {
            onTapped: row.clicked()
        }
    }
    ToggleSwitch {
        id: toggle

        anchors.right: parent.right
        anchors.verticalCenter: label.verticalCenter
        onClicked: row.clicked()
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        visible: !row.isLast
        color: Theme.hairline
    }
}
