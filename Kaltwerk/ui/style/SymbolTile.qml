import QtQuick
import Ventaro.Style

/// A symbol on a rounded square.
Rectangle {
    property alias symbol: icon.name
    property alias symbolSize: icon.size
    property alias symbolColor: icon.color

    implicitWidth: 28
    implicitHeight: 28
    radius: Theme.radiusTile

    SymbolIcon {
        id: icon

        anchors.centerIn: parent
        size: 17
    }
}
