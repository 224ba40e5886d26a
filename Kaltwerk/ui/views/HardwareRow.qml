import QtQuick
import Ventaro.Style
import Ventaro.Views

/// A label and its value, which wraps, takes the focus and can be selected.
Item {
    id: row

    property string label
    property alias value: valueText.text
    property real size: Theme.captionSize
    property real lineHeight: 15
    /// The first row stands for its list on the way through the window, the arrows do the rest.
    property bool isFirst: false

    signal menuRequested(string text, point position)
    signal moveRequested(int distance)

    function takeFocus() {
        valueText.forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitHeight: Math.max(valueText.height, labelText.height)

    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        anchors.leftMargin: -6
        anchors.rightMargin: -6
        visible: valueText.activeFocus && !valueText.isFocusedByMouse
        radius: Theme.radiusSmall
        color: "transparent"
        border.width: 2
        border.color: Theme.focus
    }
    Label {
        id: labelText

        width: Math.min(implicitWidth, Math.floor(parent.width * 0.46))
        text: row.label
        color: Theme.textSecondary
        size: row.size
        lineHeightMode: Text.FixedHeight
        lineHeight: row.lineHeight
        wrapMode: Text.Wrap
        font.preferShaping: false
        Accessible.ignored: true
    }
    SelectableText {
        id: valueText

        property bool isFocusedByMouse: false
        readonly property string textToCopy: selectedText || text

        anchors.right: parent.right
        width: parent.width - labelText.width - 16
        horizontalAlignment: TextEdit.AlignRight
        size: row.size
        activeFocusOnTab: row.isFirst
        Accessible.name: row.label + ": " + text
        Accessible.focusable: true
        onFocusChanged: isFocusedByMouse = focus && MouseButtons.arePressed()
        Keys.onUpPressed: row.moveRequested(-1)
        Keys.onDownPressed: row.moveRequested(1)
        Keys.onMenuPressed: row.menuRequested(textToCopy, Qt.point(x + width - contentWidth, height))
        Keys.onPressed: event => {
            event.accepted = event.key === Qt.Key_C && event.modifiers === Qt.ControlModifier;
            if (event.accepted)
                Clipboard.copy(textToCopy);
        }

        TapHandler {
            acceptedButtons: Qt.RightButton
            gesturePolicy: TapHandler.WithinBounds
            onTapped: point => row.menuRequested(valueText.textToCopy, valueText.mapToItem(row, point.position))
        }
    }
}
