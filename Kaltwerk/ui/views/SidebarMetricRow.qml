import QtQuick
import Ventaro.Style

/// What a value is called, and the value.
Item {
    id: row

    property string label
    property string value
    property color valueColor
    property bool isOld: false

    width: parent?.width ?? 0
    height: 14
    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    Label {
        anchors.left: parent.left
        anchors.right: number.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        text: row.label
        color: Theme.textSecondary
        size: Theme.smallestSize
        Accessible.ignored: true
    }
    TabularText {
        id: number

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.value
        color: row.isOld ? Theme.textSecondary : row.valueColor
        font.pixelSize: Theme.smallestSize
        font.weight: Font.Bold
    }
}
