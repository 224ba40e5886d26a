import QtQuick
import QtQuick.Templates as T
import Ventaro.Style

/// Two points wide, two points outside of its parent, whose corners have the radius `around`.
Rectangle {
    id: ring

    property real around: Theme.radiusControl
    /// The control to which a key has brought the focus when the ring is visible. What is no control
    /// says itself when it is.
    property T.Control control
    /// Unlike the control's own `visualFocus` this outlives a window's going to the back.
    property bool isByKey: false

    visible: isByKey && (control?.activeFocus ?? false)
    anchors.fill: parent
    anchors.margins: -4
    radius: around + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus

    Connections {
        target: ring.control
        function onFocusReasonChanged() {
            switch (ring.control.focusReason) {
            case Qt.TabFocusReason:
            case Qt.BacktabFocusReason:
            case Qt.ShortcutFocusReason:
                ring.isByKey = true;
                break;
            case Qt.MouseFocusReason:
                ring.isByKey = false;
                break;
            }
        }
    }
}
