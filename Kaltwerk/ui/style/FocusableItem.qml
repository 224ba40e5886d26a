import QtQuick

/// An item that takes the keyboard's focus, and shows it unless the mouse has brought it. A window
/// that goes to the back and returns changes nothing about that.
Item {
    readonly property bool showsFocus: activeFocus && !isFocusedByMouse
    property bool isFocusedByMouse: false

    function takeFocusByMouse() {
        forceActiveFocus(Qt.MouseFocusReason);
        isFocusedByMouse = focus;
    }

    activeFocusOnTab: true
    onFocusChanged: isFocusedByMouse = isFocusedByMouse && focus
}
