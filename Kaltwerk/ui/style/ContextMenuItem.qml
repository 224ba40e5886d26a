import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// One command of a context menu.
T.MenuItem {
    id: item

    implicitWidth: 182
    implicitHeight: 26
    hoverEnabled: true
    Accessible.name: text
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: item.highlighted ? Theme.accent : "transparent"
    }
    contentItem: Label {
        leftPadding: 8
        rightPadding: 8
        verticalAlignment: Text.AlignVCenter
        text: item.text
        color: item.highlighted ? Theme.textOnAccent : Theme.textPrimary
        size: Theme.bodySize
        Accessible.ignored: true
    }
}
