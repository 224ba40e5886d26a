import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// A page that scrolls by wheel, keys and bar, and that drags within it do not move.
Flickable {
    id: page

    /// Whether what gets the focus comes into view.
    property bool followsFocus: true
    /// What has come into view last for its focus. A window that returns to the front, and a button
    /// that is enabled again, get the focus back, but the page stays where it is.
    property Item lastFocus
    readonly property real maximumY: Math.max(contentHeight - height, 0)

    function scrollBy(distance: real) {
        contentY = Math.min(Math.max(contentY + distance, 0), maximumY);
    }
    /// Brings `item` into view, with some of what surrounds it.
    function reveal(item: Item) {
        const margin = 24;
        const top = item.mapToItem(contentItem, 0, 0).y - margin;
        const bottom = top + item.height + 2 * margin;
        if (top < contentY)
            scrollBy(top - contentY);
        else if (bottom > contentY + height)
            scrollBy(bottom - contentY - height);
    }
    /// Whether the page lies in `item`, which has the focus as long as no control has it.
    function isWithin(item: Item): bool {
        for (let around = page.parent; around; around = around.parent) {
            if (around === item)
                return true;
        }
        return false;
    }
    /// Brings what has the focus into view, if it lies on the page.
    function revealFocus() {
        const item = Window.activeFocusItem;
        for (let parent = item; parent; parent = parent.parent) {
            if (parent === contentItem) {
                reveal(item);
                return;
            }
        }
    }

    interactive: false
    clip: true
    // What grows shorter may leave the page below its end.
    onMaximumYChanged: scrollBy(0)

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_PageDown:
            page.scrollBy(page.height * 0.9);
            break;
        case Qt.Key_PageUp:
            page.scrollBy(-page.height * 0.9);
            break;
        case Qt.Key_Home:
            page.scrollBy(-page.contentY);
            break;
        case Qt.Key_End:
            page.scrollBy(page.maximumY);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            const perNotch = 60;
            page.scrollBy(event.pixelDelta.y !== 0 ? -event.pixelDelta.y : -event.angleDelta.y / 120 * perNotch);
        }
    }
    Connections {
        target: page.Window.window
        function onActiveFocusItemChanged() {
            const item = page.Window.activeFocusItem;
            if (!item || item === page.lastFocus || page.isWithin(item))
                return;
            page.lastFocus = item;
            // What has just been pressed stays under the pointer.
            if (page.followsFocus && !MouseButtons.arePressed())
                page.revealFocus();
        }
    }

    T.ScrollBar.vertical: OverlayScrollBar {
        parent: page
        anchors.right: page.right
        height: page.height
        moving: rest.running
    }
    onContentYChanged: rest.restart()
    Timer {
        id: rest

        interval: Theme.scrollBarStays
    }
}
