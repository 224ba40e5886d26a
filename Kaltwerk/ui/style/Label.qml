import QtQuick
import Ventaro.Style

/// Text as it stands: what comes from the machine or the helper is never taken for mark-up.
Text {
    /// In pixels, also between two whole ones.
    property real size: Theme.captionSize

    color: Theme.textPrimary
    font.pointSize: Theme.fontPoints(size)
    textFormat: Text.PlainText
    elide: Text.ElideRight
}
