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

            PushButton {
                text: "Rückgängig"
                enabled: buttons.curve.canUndo
                onClicked: buttons.curve.undo()
            }
            PushButton {
                text: "Wiederholen"
                enabled: buttons.curve.canRedo
                onClicked: buttons.curve.redo()
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
