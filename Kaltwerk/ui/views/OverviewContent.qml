pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The first tab: the profiles, the fans, and how the last two minutes went.
Column {
    id: overview

    required property FanControllerViewModel viewModel
    /// The detail column's size, points.
    required property size containerSize

    spacing: 14

    ProfileModel {
        id: profiles

        viewModel: overview.viewModel
    }
    FanModel {
        id: fanModel

        viewModel: overview.viewModel
    }

    Column {
        width: parent.width
        spacing: 8

        Item {
            id: header

            readonly property bool isNarrow: width < 540

            width: parent.width
            height: isNarrow ? 18 + 12 + 26 : 26

            Label {
                id: title

                y: header.isNarrow ? 0 : (parent.height - height) / 2
                width: header.isNarrow ? parent.width : synchronous.x - 12
                text: "Steuerungs-Modus & Schnell-Presets"
                size: Theme.sectionSize
                font.weight: Font.DemiBold
            }
            Row {
                id: synchronous

                x: header.isNarrow ? 0 : reset.x - width - 14
                y: parent.height - 26
                height: 26
                spacing: 8

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: link.text
                    Accessible.ignored: true

                    TapHandler {
                        onTapped: link.clicked()
                    }
                }
                ToggleSwitch {
                    id: link

                    anchors.verticalCenter: parent.verticalCenter
                    small: true
                    text: "Lüfter synchron (%)"
                    isOn: overview.viewModel.linkFansInManualMode
                    onClicked: overview.viewModel.linkFansInManualMode = !isOn
                }
            }
            PushButton {
                id: reset

                anchors.right: parent.right
                anchors.bottom: parent.bottom
                symbol: "arrow.counterclockwise"
                text: "macOS-Auto"
                onClicked: overview.viewModel.returnToAutomatic()
            }
        }
        AdaptiveGrid {
            width: parent.width
            minimumCellWidth: 155
            spacing: 8

            Repeater {
                model: profiles

                ProfileCard {
                    id: card

                    required property int index

                    onClicked: profiles.select(card.index)
                }
            }
        }
    }

    AdaptiveGrid {
        width: parent.width
        visible: cards.count > 0
        minimumCellWidth: 300
        spacing: 12

        Repeater {
            id: cards

            model: fanModel

            FanDetailCard {
                viewModel: overview.viewModel
                fans: fanModel
            }
        }
    }
    Card {
        width: parent.width
        height: 64
        visible: cards.count === 0

        Label {
            anchors.centerIn: parent
            width: parent.width - 24
            horizontalAlignment: Text.AlignHCenter
            text: "Keine Lüfter gefunden"
            color: Theme.textSecondary
            size: Theme.bodySize
        }
    }

    LiveTelemetryChartSection {
        width: parent.width
        viewModel: overview.viewModel
        containerSize: overview.containerSize
    }
}
