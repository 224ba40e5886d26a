pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// Every sensor of the machine, in groups, with a filter.
Column {
    id: content

    required property FanControllerViewModel viewModel
    property string searchText

    signal searchTextEdited(string text)
    /// The field is to be seen, which has the focus.
    signal fieldNeeded

    /// To the nearest group from `place` on, in either direction, that has rows.
    function moveFocus(place: int, direction: int) {
        const group = groups.itemAt(place) as SensorSection;
        if (group && group.count === 0)
            moveFocus(place + direction, direction);
        else if (group)
            group.focusRow(direction > 0 ? 0 : group.count - 1);
    }
    function openMenu(row: SensorRow, position: point) {
        menu.key = row.key;
        menu.valueText = row.valueText;
        menu.popup(row, position);
    }

    spacing: 14

    SensorModel {
        id: sensors

        viewModel: content.viewModel
        filter: content.searchText
    }
    Shortcut {
        sequence: "Ctrl+F"
        onActivated: {
            field.forceActiveFocus(Qt.ShortcutFocusReason);
            field.selectAll();
            content.fieldNeeded();
        }
    }
    Shortcut {
        sequence: "Escape"
        enabled: content.searchText !== "" && !menu.visible
        onActivated: {
            if (field.activeFocus || clear.activeFocus)
                content.fieldNeeded();
            content.searchTextEdited("");
        }
    }
    ContextMenu {
        id: menu

        property string key
        property string valueText

        ContextMenuItem {
            text: "Wert kopieren"
            onTriggered: Clipboard.copy(menu.valueText)
        }
        ContextMenuItem {
            text: "SMC-Key kopieren"
            onTriggered: Clipboard.copy(menu.key)
        }
    }

    Item {
        id: header

        readonly property bool isNarrow: width < 560

        width: parent.width
        height: isNarrow ? words.height + 10 + field.height : Math.max(words.height, field.height)

        Column {
            id: words

            width: header.isNarrow ? parent.width : field.x - 12
            spacing: 2

            Label {
                width: parent.width
                text: "AppleSMC Hardware-Sensoren (" + sensors.totalCount + " aktiv)"
                size: Theme.pageTitleSize
                font.weight: Font.DemiBold
                font.letterSpacing: -0.15
                lineHeightMode: Text.FixedHeight
                lineHeight: 20
                wrapMode: Text.Wrap
            }
            Label {
                width: parent.width
                text: "Echtzeit-Messwerte direkt aus dem Apple System Management Controller."
                color: Theme.textSecondary
                lineHeightMode: Text.FixedHeight
                lineHeight: 15
                wrapMode: Text.Wrap
            }
        }
        TextInputField {
            id: field

            anchors.right: parent.right
            y: header.isNarrow ? parent.height - height : Math.round((parent.height - height) / 2)
            width: header.isNarrow ? parent.width : 240
            rightPadding: content.searchText !== "" ? 30 : 10
            placeholderText: "Sensor oder SMC-Key filtern..."
            text: content.searchText
            onTextEdited: {
                content.fieldNeeded();
                content.searchTextEdited(text);
            }

            IconButton {
                id: clear

                anchors.right: parent.right
                anchors.rightMargin: 3
                anchors.verticalCenter: parent.verticalCenter
                visible: content.searchText !== ""
                symbol: "xmark"
                text: "Filter löschen"
                onClicked: {
                    content.searchTextEdited("");
                    content.fieldNeeded();
                }
                onVisibleChanged: {
                    if (!visible && focus)
                        field.forceActiveFocus(Qt.OtherFocusReason);
                }
            }
        }
    }

    Repeater {
        id: groups

        model: sensors

        SensorSection {
            id: group

            required property int index

            width: content.width
            onMenuRequested: (row, position) => content.openMenu(row, position)
            onFocusLeft: distance => content.moveFocus(index + distance, distance)
        }
    }
    Label {
        width: parent.width
        visible: sensors.matchCount === 0
        topPadding: 26
        horizontalAlignment: Text.AlignHCenter
        text: sensors.totalCount === 0 ? "Noch keine Sensorwerte." : "Kein Sensor passt zu „" + content.searchText + "“."
        color: Theme.textSecondary
        size: Theme.bodySize
    }
}
