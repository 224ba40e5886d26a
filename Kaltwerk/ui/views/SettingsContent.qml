pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The helper with root rights, and how the program starts and ends.
Column {
    id: content

    required property FanControllerViewModel viewModel
    /// What there is to say about the machine; empty on a real one.
    property string machineNote

    readonly property bool isNarrow: width < 520

    spacing: 14

    Column {
        width: parent.width
        spacing: 6

        Label {
            width: parent.width
            text: "Privilegierter Hintergrund-Helper & Einstellungen"
            size: Theme.pageTitleSize
            font.weight: Font.DemiBold
            font.letterSpacing: -0.15
            lineHeightMode: Text.FixedHeight
            lineHeight: 20
            wrapMode: Text.Wrap
        }
        Label {
            width: Math.min(parent.width, 680)
            text: "Auf dem MacBook Pro 16\" (2019) mit Apple T2 Security Chip akzeptiert der AppleSMC-Kernel-Treiber Schreibbefehle für F0Md/F1Md (Manueller Modus) und F0Tg/F1Tg (Ziel-RPM) ausschließlich von Prozessen mit Root-Rechten. Durch den LaunchDaemon ist keine erneute Passworteingabe beim App-Start nötig."
            color: Theme.textSecondary
            size: Theme.bodySize
            lineHeightMode: Text.FixedHeight
            lineHeight: 17
            wrapMode: Text.Wrap
        }
    }

    Card {
        id: status

        readonly property real inset: 13
        readonly property bool isActive: content.viewModel.isHelperInstalled

        width: parent.width
        height: 2 * inset + words.height + (content.isNarrow ? 8 + install.height : 0)

        SymbolIcon {
            id: shield

            x: status.inset
            y: content.isNarrow ? status.inset : (parent.height - height) / 2
            name: status.isActive ? "checkmark.shield.fill" : "exclamationmark.shield.fill"
            size: content.isNarrow ? 26 : 32
            color: status.isActive ? Theme.green : Theme.orange
        }
        Item {
            id: words

            readonly property real pathsTop: content.isNarrow ? shield.height + 8 : state.height + 3

            x: content.isNarrow ? status.inset : shield.x + shield.width + 12
            y: status.inset
            width: (content.isNarrow ? parent.width - status.inset : install.x - 12) - x
            height: pathsTop + paths.height

            Label {
                id: state

                x: content.isNarrow ? shield.width + 10 : 0
                y: content.isNarrow ? (shield.height - height) / 2 : 0
                width: parent.width - x
                text: status.isActive ? "Hintergrund-Helper ist aktiv" : "Hintergrund-Helper nicht installiert"
                size: Theme.sectionSize
                font.weight: Font.DemiBold
                lineHeightMode: Text.FixedHeight
                lineHeight: 18
                wrapMode: Text.Wrap
            }
            // In two pieces, so that no line ends within a path while both would fit one below the
            // other.
            Flow {
                id: paths

                y: words.pathsTop
                width: parent.width
                Accessible.role: Accessible.StaticText
                Accessible.name: binary.text + socket.text

                Label {
                    id: binary

                    width: Math.min(implicitWidth, paths.width)
                    text: "Binary: " + ProgramFacts.helperBinary + " · "
                    color: Theme.textSecondary
                    size: 9.5
                    lineHeightMode: Text.FixedHeight
                    lineHeight: 14
                    wrapMode: Text.Wrap
                    font.family: Theme.monoFamily
                    font.preferShaping: false
                    Accessible.ignored: true
                }
                Label {
                    id: socket

                    width: Math.min(implicitWidth, paths.width)
                    text: "Socket: " + ProgramFacts.helperSocket
                    color: Theme.textSecondary
                    size: 9.5
                    lineHeightMode: Text.FixedHeight
                    lineHeight: 14
                    wrapMode: Text.Wrap
                    font.family: Theme.monoFamily
                    font.preferShaping: false
                    Accessible.ignored: true
                }
            }
        }
        PushButton {
            id: install

            anchors.right: parent.right
            anchors.rightMargin: status.inset
            y: content.isNarrow ? words.y + words.height + 8 : Math.round((parent.height - height) / 2)
            kind: status.isActive ? PushButton.Bordered : PushButton.Prominent
            symbol: status.isActive ? "trash" : "lock.open.fill"
            text: status.isActive ? "Helper deinstallieren" : "Helper installieren"
            busy: content.viewModel.isInstallingHelper
            onClicked: {
                if (status.isActive)
                    content.viewModel.uninstallHelper();
                else
                    content.viewModel.installHelper();
            }
        }
    }

    Column {
        width: parent.width
        spacing: 8

        Label {
            width: parent.width
            text: "Autostart & Sicherheits-Optionen"
            size: Theme.sectionSize
            font.weight: Font.DemiBold
            lineHeightMode: Text.FixedHeight
            lineHeight: 18
        }
        Card {
            width: parent.width
            height: options.height + 2

            Column {
                id: options

                x: 13
                y: 1
                width: parent.width - 26

                SettingsSwitchRow {
                    width: parent.width
                    text: "Ventaro beim Start von macOS automatisch ausführen (Autostart)"
                    isOn: content.viewModel.launchAtLogin
                    onClicked: content.viewModel.setLaunchAtLogin(!isOn)
                }
                SettingsSwitchRow {
                    width: parent.width
                    text: "Beim Autostart minimiert in der Menüleiste starten (ohne Hauptfenster)"
                    isOn: content.viewModel.startMinimized
                    onClicked: content.viewModel.setStartMinimized(!isOn)
                }
                SettingsSwitchRow {
                    width: parent.width
                    isLast: true
                    text: "Beim Beenden der App Lüfter automatisch auf macOS-Standard (Auto) zurücksetzen"
                    isOn: content.viewModel.resetToAutoOnQuit
                    onClicked: {
                        content.viewModel.resetToAutoOnQuit = !isOn;
                        content.viewModel.saveSettings();
                    }
                }
            }
        }
    }

    SelectableText {
        width: parent.width
        text: "Ventaro " + ProgramFacts.version + " · Helper-Protokoll " + ProgramFacts.helperProtocol + " · " + (content.machineNote || "MacBook Pro")
        color: Theme.textTertiary
    }
}
