import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A short list of commands beside the pointer.
T.Menu {
    id: menu

    implicitWidth: implicitBackgroundWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 4
    margins: 4

    delegate: ContextMenuItem {}
    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }
    background: Rectangle {
        implicitWidth: 190
        radius: Theme.radiusTile
        color: Theme.popover
        border.width: 1
        border.color: Theme.popoverBorder
    }
}
