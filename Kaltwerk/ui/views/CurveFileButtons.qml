import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Steps back and forth, and a file for the curve.
Item {
    id: buttons

    required property CurveModel curve

    implicitHeight: 26

    CurveFileDialog {
        id: dialog

        onExportChosen: file => problem.text = buttons.curve.exportTo(file)
        onImportChosen: file => problem.text = buttons.curve.importFrom(file)
    }
    Row {
        id: steps

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
    Label {
        id: problem

        anchors.left: steps.right
        anchors.leftMargin: 12
        anchors.right: files.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        color: Theme.redText
        wrapMode: Text.Wrap
        maximumLineCount: 2
    }
    Row {
        id: files

        anchors.right: parent.right
        spacing: 6

        PushButton {
            text: "Importieren …"
            onClicked: dialog.chooseImport()
        }
        PushButton {
            text: "Exportieren …"
            onClicked: dialog.chooseExport()
        }
    }
}
