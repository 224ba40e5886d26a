import QtQuick
import Ventaro.Style

/// Text that wraps, and that can be selected and copied as it stands. Digits and letters stay the
/// ones they are: "0x7340" has no multiplication sign.
TextEdit {
    /// In pixels, also between two whole ones.
    property real size: Theme.captionSize

    readOnly: true
    selectByMouse: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    color: Theme.textPrimary
    selectionColor: Theme.accent
    selectedTextColor: Theme.textOnAccent
    font.pointSize: Theme.fontPoints(size)
    font.preferShaping: false
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Keys.onEscapePressed: event => {
        event.accepted = selectedText !== "";
        deselect();
    }

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }
}
