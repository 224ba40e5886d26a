pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// What the machine consists of.
Column {
    id: content

    required property FanControllerViewModel viewModel
    property bool hidesIdentifiers: false

    signal hidesIdentifiersChosen(bool hides)

    function copyInventory() {
        Clipboard.copy(hardware.inventoryText());
        copied.restart();
    }
    /// All rows below `item`, from top to bottom.
    function rowsBelow(item: Item): var {
        if (item instanceof HardwareRow)
            return [item];
        let rows = [];
        for (let child = 0; child < item.children.length; ++child)
            rows = rows.concat(rowsBelow(item.children[child]));
        return rows;
    }
    function moveFocus(row: HardwareRow, distance: int) {
        const rows = rowsBelow(grid);
        const next = rows[rows.indexOf(row) + distance] as HardwareRow;
        if (next)
            next.takeFocus();
    }

    spacing: 14

    HardwareModel {
        id: hardware

        viewModel: content.viewModel
        hidesIdentifiers: content.hidesIdentifiers
    }
    Shortcut {
        sequence: "Ctrl+Shift+C"
        enabled: cards.count > 0
        onActivated: content.copyInventory()
    }
    /// How long the button says that it has done its work.
    Timer {
        id: copied

        interval: 1500
    }
    ContextMenu {
        id: menu

        property string text

        ContextMenuItem {
            text: "Wert kopieren"
            onTriggered: Clipboard.copy(menu.text)
        }
        ContextMenuItem {
            text: "Alles kopieren"
            onTriggered: content.copyInventory()
        }
    }

    Item {
        id: header

        /// The second line goes below the buttons where they would make it wrap.
        readonly property bool isStacked: width < 760

        width: parent.width
        height: subtitle.y + subtitle.height

        Label {
            id: title

            width: buttons.x - 12
            text: "System-Hardware & Komponenten-Details"
            size: Theme.pageTitleSize
            font.weight: Font.DemiBold
            font.letterSpacing: -0.15
            lineHeightMode: Text.FixedHeight
            lineHeight: 20
            wrapMode: Text.Wrap
        }
        Label {
            id: subtitle

            y: Math.max(title.height + 2, header.isStacked ? 25 : 0)
            width: header.isStacked ? parent.width : buttons.x - 12
            text: "Vollständige Spezifikationen für CPU, Arbeitsspeicher (RAM), Dual-GPU, NVMe SSD, Logic Board und Akku."
            color: Theme.textSecondary
            lineHeightMode: Text.FixedHeight
            lineHeight: 15
            wrapMode: Text.Wrap
        }
        Row {
            id: buttons

            anchors.right: parent.right
            y: header.isStacked ? -3 : Math.round((parent.height - height) / 2)
            spacing: 6

            PushButton {
                id: mask

                enabled: cards.count > 0
                symbol: content.hidesIdentifiers ? "eye.slash" : "eye"
                Accessible.name: content.hidesIdentifiers ? "Seriennummern und UUID zeigen" : "Seriennummern und UUID verbergen"
                onClicked: content.hidesIdentifiersChosen(!content.hidesIdentifiers)

                Hint {
                    visible: mask.hovered
                    text: mask.Accessible.name
                }
            }
            PushButton {
                id: copy

                enabled: cards.count > 0
                symbol: copied.running ? "checkmark.circle.fill" : "doc.on.doc"
                Accessible.name: "Alles kopieren"
                onClicked: content.copyInventory()

                Hint {
                    visible: copy.hovered
                    text: copied.running ? "Kopiert" : copy.Accessible.name
                }
            }
            PushButton {
                symbol: "arrow.clockwise"
                text: "Aktualisieren"
                busy: content.viewModel.isLoadingHardwareInfo
                onClicked: content.viewModel.refreshHardwareSpecs()
            }
        }
    }

    Column {
        width: parent.width
        visible: cards.count === 0
        topPadding: 86
        spacing: 10

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Hardware-Informationen werden aus IOKit & System Profiler geladen..."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
    }
    AdaptiveGrid {
        id: grid

        width: parent.width
        visible: cards.count > 0
        minimumCellWidth: 380
        spacing: 12

        Repeater {
            id: cards

            model: hardware

            HardwareSectionCard {
                onMenuRequested: (text, row, position) => {
                    menu.text = text;
                    menu.popup(row, position);
                }
                onMoveRequested: (row, distance) => content.moveFocus(row, distance)
            }
        }
    }
}
