import QtQuick
import Ventaro.Style

/// A label and its value, which wraps and can be selected.
Item {
    id: row

    property string label
    property alias value: valueText.text
    property real size: Theme.captionSize
    property real lineHeight: 15

    signal menuRequested(string text, point position)

    implicitHeight: Math.max(valueText.height, labelText.height)

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
    }
    SelectableText {
        id: valueText

        anchors.right: parent.right
        width: parent.width - labelText.width - 16
        horizontalAlignment: TextEdit.AlignRight
        size: row.size
        Accessible.name: row.label + ": " + text

        TapHandler {
            acceptedButtons: Qt.RightButton
            gesturePolicy: TapHandler.WithinBounds
            onTapped: point => row.menuRequested(valueText.selectedText || valueText.text, valueText.mapToItem(row, point.position))
        }
    }
}
