pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ventaro.Style
import Ventaro.Views

/// The product, the tabs, and the machine's state in five lines.
Rectangle {
    id: sidebar

    required property FanControllerViewModel viewModel
    property string machineNote
    property int selectedTab

    signal tabChosen(int tab)

    /// Of what is not known nothing is said, least of all that it is cool.
    function celsiusText(isKnown: bool, celsius: real): string {
        return (isKnown ? NumberText.fixed(celsius, 1) : "–") + " °C";
    }
    function bandColor(isKnown: bool, celsius: real): color {
        if (!isKnown)
            return Theme.textSecondary;
        switch (TemperatureColor.band(celsius)) {
        case TemperatureColor.Red:
            return Theme.redText;
        case TemperatureColor.Orange:
            return Theme.orangeText;
        case TemperatureColor.Yellow:
            return Theme.yellowText;
        default:
            return Theme.greenText;
        }
    }

    color: Theme.sidebar

    FanModel {
        id: fans

        property real left: 0
        property real right: 0

        viewModel: sidebar.viewModel
        onReadingsChanged: {
            left = currentRPM(0);
            right = currentRPM(1);
        }
    }

    Item {
        id: header

        x: 12
        y: 16
        width: parent.width - 24
        height: 36

        GradientTile {
            id: brand

            width: 36
            height: 36
            radius: 10
            from: Theme.accent
            to: Theme.brandEnd

            SymbolIcon {
                anchors.centerIn: parent
                name: "laptopcomputer"
                size: 19
                color: "#FFFFFF"
            }
        }
        Column {
            anchors.left: brand.right
            anchors.leftMargin: 9
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter

            Label {
                width: parent.width
                text: "Ventaro"
                size: Theme.productSize
                font.weight: Font.Bold
            }
            Label {
                width: parent.width
                text: "MBP 16\" · i9-9880H · 5500M"
                color: Theme.textSecondary
                size: Theme.smallestSize
            }
        }
    }

    FocusableItem {
        id: tabs

        function move(offset: int) {
            const next = sidebar.selectedTab + offset;
            if (next >= 0 && next < DashboardTab.titles.length)
                sidebar.tabChosen(next);
        }

        x: 12
        anchors.top: header.bottom
        anchors.topMargin: 12
        width: parent.width - 24
        // The list is one stop on the way through the window.
        Accessible.role: Accessible.PageTabList
        Accessible.name: "Bereiche"
        Keys.onUpPressed: move(-1)
        Keys.onDownPressed: move(1)

        height: rows.height

        Column {
            id: rows

            width: parent.width
            spacing: 2

            Repeater {
                model: DashboardTab.titles

                T.TabButton {
                    id: row

                    required property int index
                    required property string modelData
                    readonly property bool isOn: index === sidebar.selectedTab
                    readonly property bool isProminent: isOn && Window.active

                    width: tabs.width
                    height: 30
                    text: modelData
                    autoExclusive: false
                    checked: isOn
                    hoverEnabled: true
                    focusPolicy: Qt.NoFocus
                    Accessible.name: text
                    Accessible.onPressAction: clicked()
                    onClicked: {
                        // The template has just checked itself.
                        checked = Qt.binding(() => row.isOn);
                        tabs.takeFocusByMouse();
                        sidebar.tabChosen(index);
                    }

                    background: Rectangle {
                        radius: Theme.radiusControl
                        color: row.isProminent ? Theme.accent : row.isOn || row.down ? Theme.controlPressed : row.hovered ? Theme.controlFill : "transparent"

                        Rectangle {
                            anchors.fill: parent
                            anchors.margins: 2
                            visible: tabs.showsFocus && row.isOn
                            radius: Theme.radiusControl - 2
                            color: "transparent"
                            border.width: 2
                            border.color: row.isProminent ? "#FFFFFF" : Theme.focus
                        }
                    }
                    contentItem: Item {
                        SymbolIcon {
                            id: symbol

                            x: 8
                            anchors.verticalCenter: parent.verticalCenter
                            name: DashboardTab.symbols[row.index]
                            size: 16
                            color: row.isProminent ? Theme.textOnAccent : row.isOn ? Theme.textPrimary : Theme.accentText
                        }
                        Label {
                            anchors.left: symbol.right
                            anchors.leftMargin: 8
                            anchors.right: parent.right
                            anchors.rightMargin: 8
                            anchors.verticalCenter: parent.verticalCenter
                            text: row.text
                            color: row.isProminent ? Theme.textOnAccent : Theme.textPrimary
                            size: 12.5
                            font.weight: Font.Medium
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }

    Label {
        anchors.bottom: divider.top
        anchors.bottomMargin: 10
        x: 12
        width: parent.width - 24
        visible: text !== "" && y > tabs.y + tabs.height + 4
        text: sidebar.viewModel.isSmcLost ? "SMC antwortet nicht" : sidebar.machineNote
        color: sidebar.viewModel.isSmcLost ? Theme.redText : Theme.textSecondary
        size: Theme.smallestSize
    }
    Rectangle {
        id: divider

        anchors.bottom: live.top
        anchors.bottomMargin: 12
        x: 12
        width: parent.width - 24
        height: 1
        color: Theme.divider
    }

    Rectangle {
        id: live

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        x: 12
        width: parent.width - 24
        height: metrics.height + 24
        radius: Theme.radiusCard
        color: Theme.blockTint

        Column {
            id: metrics

            x: 12
            y: 12
            width: parent.width - 24
            spacing: 6

            Item {
                width: parent.width
                height: 14

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: sidebar.viewModel.staleSeconds > 0 ? "VOR " + sidebar.viewModel.staleSeconds + " S" : "LIVE-STATUS"
                    color: sidebar.viewModel.staleSeconds > 0 ? Theme.orangeText : Theme.textSecondary
                    size: Theme.smallestSize
                    font.weight: Font.Bold
                }
                Rectangle {
                    anchors.right: state.left
                    anchors.rightMargin: 5
                    anchors.verticalCenter: parent.verticalCenter
                    width: 7
                    height: 7
                    radius: 3.5
                    color: sidebar.viewModel.isHelperInstalled ? Theme.green : Theme.orange
                }
                Label {
                    id: state

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: sidebar.viewModel.isHelperInstalled ? "Root aktiv" : "Lese-Modus"
                    size: Theme.smallestSize
                }
            }
            SidebarMetricRow {
                isOld: sidebar.viewModel.staleSeconds > 0
                label: "CPU Max"
                value: sidebar.celsiusText(sidebar.viewModel.isCpuTempKnown, sidebar.viewModel.cpuMaxTemp)
                valueColor: sidebar.bandColor(sidebar.viewModel.isCpuTempKnown, sidebar.viewModel.cpuMaxTemp)
            }
            SidebarMetricRow {
                isOld: sidebar.viewModel.staleSeconds > 0
                label: "Radeon GPU"
                value: sidebar.celsiusText(sidebar.viewModel.isGpuTempKnown, sidebar.viewModel.gpuMaxTemp)
                valueColor: sidebar.bandColor(sidebar.viewModel.isGpuTempKnown, sidebar.viewModel.gpuMaxTemp)
            }
            SidebarMetricRow {
                isOld: sidebar.viewModel.staleSeconds > 0
                label: "Lüfter Links"
                value: NumberText.whole(fans.left) + " RPM"
                valueColor: Theme.cyanText
            }
            SidebarMetricRow {
                isOld: sidebar.viewModel.staleSeconds > 0
                label: "Lüfter Rechts"
                value: NumberText.whole(fans.right) + " RPM"
                valueColor: Theme.cyanText
            }
            SidebarMetricRow {
                isOld: sidebar.viewModel.staleSeconds > 0
                label: "Leistung"
                value: NumberText.fixed(sidebar.viewModel.systemPowerWatts, 1) + " W"
                valueColor: Theme.textPrimary
            }
        }
    }
}
