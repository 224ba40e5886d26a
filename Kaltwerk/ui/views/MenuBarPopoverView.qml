pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Ventaro.Style
import Ventaro.Views

/// What drops down from the status item: the machine at a glance, and a profile with one click.
FocusScope {
    id: popover

    required property FanControllerViewModel viewModel
    /// What is to be said about the machine.
    property string machineNote

    /// The user wants the dashboard, the end of the program, or this to go away.
    signal openDashboardRequested
    signal quitRequested
    signal closeRequested
    /// The user has had the controller do something.
    signal actionStarted

    implicitWidth: 330
    implicitHeight: content.height + 28
    focus: true
    Keys.onEscapePressed: closeRequested()

    ProfileModel {
        id: profiles

        viewModel: popover.viewModel
    }
    FanModel {
        id: fans

        viewModel: popover.viewModel
    }

    Rectangle {
        anchors.fill: parent
        radius: 12
        color: Theme.popover
        border.width: 1
        border.color: Theme.popoverBorder
    }

    Column {
        id: content

        x: 14
        y: 14
        width: parent.width - 28
        spacing: 12

        Item {
            width: parent.width
            height: 32

            SymbolIcon {
                id: fan

                anchors.verticalCenter: parent.verticalCenter
                name: "fan.desk.fill"
                size: 28
                color: Theme.cyan
            }
            Column {
                anchors.left: fan.right
                anchors.leftMargin: 10
                anchors.right: dashboard.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: "Ventaro"
                    size: Theme.productSize
                    font.weight: Font.Bold
                }
                Label {
                    width: parent.width
                    text: profiles.activeTitle + (popover.viewModel.isProfileInForce ? "" : " · nicht in Kraft")
                    color: popover.viewModel.isProfileInForce ? Theme.textSecondary : Theme.orangeText
                }
            }
            PushButton {
                id: dashboard

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                height: 24
                kind: PushButton.Prominent
                small: true
                symbol: "macwindow"
                text: "Dashboard"
                font.weight: Font.Bold
                onClicked: popover.openDashboardRequested()
            }
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: popover.viewModel.isSmcLost ? "SMC antwortet nicht" : popover.machineNote
            size: Theme.smallestSize
            color: popover.viewModel.isSmcLost ? Theme.redText : Theme.textSecondary
        }
        T.AbstractButton {
            id: activate

            width: parent.width
            height: 34
            visible: !popover.viewModel.isHelperInstalled
            enabled: visible && !popover.viewModel.isInstallingHelper
            text: "Root-Helper einmalig aktivieren"
            hoverEnabled: true
            focusPolicy: Qt.StrongFocus
            Accessible.name: text
            Accessible.onPressAction: {
                if (enabled)
                    clicked();
            }
            onClicked: {
                popover.actionStarted();
                popover.viewModel.installHelper();
            }

            background: Rectangle {
                radius: Theme.radiusTile
                color: Theme.tint(Theme.orange, activate.down ? 0.26 : activate.hovered ? 0.20 : 0.14)

                FocusRing {
                    around: parent.radius
                    control: activate
                }
            }
            contentItem: Item {
                opacity: activate.enabled ? 1 : Theme.busyOpacity

                SymbolIcon {
                    id: shield

                    x: 10
                    anchors.verticalCenter: parent.verticalCenter
                    name: "lock.shield.fill"
                    size: 16
                    color: Theme.orangeText
                }
                Label {
                    anchors.left: shield.right
                    anchors.leftMargin: 8
                    anchors.right: chevron.left
                    anchors.rightMargin: 8
                    anchors.verticalCenter: parent.verticalCenter
                    text: activate.text
                    size: Theme.bodySize
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
                SymbolIcon {
                    id: chevron

                    anchors.right: parent.right
                    anchors.rightMargin: 10
                    anchors.verticalCenter: parent.verticalCenter
                    visible: activate.enabled
                    name: "chevron.right"
                    size: 12
                    color: Theme.textSecondary
                }
                Spinner {
                    anchors.centerIn: chevron
                    visible: !activate.enabled
                    size: 14
                }
            }
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.divider
        }
        AdaptiveGrid {
            width: parent.width
            minimumCellWidth: 80
            spacing: 8

            TelemetryBadge {
                title: "CPU Max"
                value: (popover.viewModel.isCpuTempKnown ? NumberText.fixed(popover.viewModel.cpuMaxTemp, 0) : "–") + " °C"
                symbol: "cpu"
                tintColor: Theme.orange
                symbolColor: Theme.orangeText
            }
            TelemetryBadge {
                title: "Radeon GPU"
                value: (popover.viewModel.isGpuTempKnown ? NumberText.fixed(popover.viewModel.gpuMaxTemp, 0) : "–") + " °C"
                symbol: "display"
                tintColor: Theme.purple
                symbolColor: Theme.purpleText
            }
            TelemetryBadge {
                title: "Power"
                value: NumberText.fixed(popover.viewModel.systemPowerWatts, 1) + " W"
                symbol: "bolt.fill"
                tintColor: Theme.green
                symbolColor: Theme.greenText
            }
        }
        Column {
            width: parent.width
            visible: rows.count > 0
            spacing: 8

            Repeater {
                id: rows

                model: fans

                Rectangle {
                    id: row

                    required property string name
                    required property real currentRPM
                    required property real loadFraction

                    width: content.width
                    height: 46
                    radius: Theme.radiusCard
                    color: Theme.blockTint
                    Accessible.role: Accessible.StaticText
                    Accessible.name: name + ": " + speed.text

                    Label {
                        x: 10
                        y: 10
                        width: speed.x - 18
                        text: row.name
                        size: Theme.bodySize
                        font.weight: Font.Medium
                        Accessible.ignored: true
                    }
                    TabularText {
                        id: speed

                        anchors.right: parent.right
                        anchors.rightMargin: 10
                        y: 10
                        text: NumberText.whole(row.currentRPM) + " RPM"
                        color: Theme.cyanText
                        font.pixelSize: Theme.bodySize
                        font.weight: Font.DemiBold
                    }
                    Bar {
                        x: 10
                        y: 32
                        width: parent.width - 20
                        height: 4
                        fraction: row.loadFraction
                        Accessible.ignored: true
                    }
                }
            }
        }
        Column {
            width: parent.width
            spacing: 8

            Label {
                text: "Schnellwahl"
                color: Theme.textSecondary
                font.weight: Font.DemiBold
            }
            AdaptiveGrid {
                width: parent.width
                minimumCellWidth: 140
                spacing: 6

                Repeater {
                    model: profiles

                    ChoiceButton {
                        id: choice

                        required property int index
                        required property string title
                        required property string symbol
                        required property bool isActive

                        implicitHeight: 30
                        text: title
                        isOn: isActive
                        onClicked: {
                            popover.actionStarted();
                            profiles.select(index);
                        }

                        background: Rectangle {
                            radius: Theme.radiusControl
                            color: choice.isActive ? (choice.down ? Theme.accentPressed : choice.hovered ? Theme.accentHover : Theme.accent) : choice.down ? Theme.controlPressed : choice.hovered ? Theme.controlHover : Theme.popoverTile

                            FocusRing {
                                around: parent.radius
                                control: choice
                            }
                        }
                        contentItem: Item {
                            SymbolIcon {
                                id: mark

                                x: 9
                                anchors.verticalCenter: parent.verticalCenter
                                name: choice.symbol
                                size: 15
                                color: choice.isActive ? Theme.textOnAccent : Theme.textPrimary
                            }
                            Label {
                                anchors.left: mark.right
                                anchors.leftMargin: 7
                                anchors.right: parent.right
                                anchors.rightMargin: 6
                                anchors.verticalCenter: parent.verticalCenter
                                text: choice.text
                                color: choice.isActive ? Theme.textOnAccent : Theme.textPrimary
                                font.weight: choice.isActive ? Font.DemiBold : Font.Medium
                                Accessible.ignored: true
                            }
                        }
                    }
                }
            }
        }
        Item {
            width: parent.width
            height: 20

            Label {
                anchors.left: parent.left
                anchors.right: login.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter
                text: login.text
                Accessible.ignored: true

                TapHandler {
                    onTapped: login.clicked()
                }
            }
            ToggleSwitch {
                id: login

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                small: true
                text: "Beim macOS-Start automatisch öffnen"
                isOn: popover.viewModel.launchAtLogin
                onClicked: {
                    popover.actionStarted();
                    popover.viewModel.setLaunchAtLogin(!isOn);
                }
            }
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.divider
        }
        Item {
            width: parent.width
            height: 26

            PushButton {
                anchors.left: parent.left
                symbol: "arrow.counterclockwise"
                text: "System-Automatik"
                fontSize: 11
                onClicked: {
                    popover.actionStarted();
                    popover.viewModel.returnToAutomatic();
                }
            }
            PushButton {
                anchors.right: parent.right
                symbol: "power"
                text: "Beenden"
                fontSize: 11
                onClicked: popover.quitRequested()
            }
        }
    }
}
