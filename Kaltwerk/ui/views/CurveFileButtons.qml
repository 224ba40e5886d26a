import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Steps back and forth, and a file for the curve.
Column {
    id: buttons

    required property CurveModel curve
    required property CurveFileDialog files

    spacing: 8

    Item {
        width: parent.width
        height: 26

        Row {
            spacing: 6

            // One that has nothing left to do leaves the focus to the other.
            PushButton {
                id: undo

                text: "Rückgängig"
                enabled: buttons.curve.canUndo
                onClicked: buttons.curve.undo()
                onEnabledChanged: {
                    if (!enabled && focus)
                        redo.forceActiveFocus(Qt.OtherFocusReason);
                }
            }
            PushButton {
                id: redo

                text: "Wiederholen"
                enabled: buttons.curve.canRedo
                onClicked: buttons.curve.redo()
                onEnabledChanged: {
                    if (!enabled && focus)
                        undo.forceActiveFocus(Qt.OtherFocusReason);
                }
            }
        }
        Row {
            anchors.right: parent.right
            spacing: 6

            PushButton {
                text: "Importieren …"
                onClicked: buttons.files.chooseImport(buttons.Window.window)
            }
            PushButton {
                text: "Exportieren …"
                onClicked: buttons.files.chooseExport(buttons.Window.window)
            }
        }
    }
    Label {
        width: parent.width
        visible: text !== ""
        text: buttons.curve.problem
        color: Theme.redText
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }
}
