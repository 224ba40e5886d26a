import QtQuick

/// An item that takes the keyboard's focus, and shows it unless the mouse has brought it.
Item {
    readonly property bool showsFocus: activeFocus && !isFocusedByMouse
    property bool isFocusedByMouse: false

    function takeFocusByMouse() {
        isFocusedByMouse = true;
        forceActiveFocus(Qt.MouseFocusReason);
    }

    activeFocusOnTab: true
    onActiveFocusChanged: isFocusedByMouse = isFocusedByMouse && activeFocus
}
