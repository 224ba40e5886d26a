import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A short list of commands beside the pointer.
T.Menu {
    id: menu

    /// What had the focus before, and gets it back.
    property Item focusBefore
    /// The page that the menu belongs to.
    property ScrollPage page

    function rememberFocus() {
        focusBefore = parent.Window.activeFocusItem;
        let around = parent;
        while (around && !(around instanceof ScrollPage))
            around = around.parent;
        page = around as ScrollPage;
    }
    function giveFocusBack() {
        // The eye is where the menu was.
        if (page)
            page.followsFocus = false;
        // What had it may have gone meanwhile.
        const heir = focusBefore?.Window.window ? focusBefore : page;
        heir?.forceActiveFocus(Qt.PopupFocusReason);
        if (page)
            page.followsFocus = true;
    }

    implicitWidth: implicitBackgroundWidth
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 4
    margins: 4
    Component.onCompleted: contentItem.parent.Accessible.name = "Befehle"
    onAboutToShow: rememberFocus()
    onClosed: giveFocusBack()
    // A page may go with its menu open, and the focus with both.
    Component.onDestruction: {
        if (visible)
            page?.forceActiveFocus(Qt.PopupFocusReason);
    }

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
