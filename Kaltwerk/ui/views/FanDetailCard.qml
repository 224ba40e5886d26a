pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// One fan: what it does, and what it shall do by hand.
Card {
    id: card

    required property FanControllerViewModel viewModel
    required property FanModel fans
    required property int fanId
    required property string name
    required property real currentRPM
    required property real targetRPM
    required property real minRPM
    required property real maxRPM
    required property bool isForced
    required property real loadFraction
    required property int loadBand

    readonly property list<int> presets: [0, 25, 50, 75, 100]
    readonly property real manualRPM: fanId === 0 ? viewModel.manualRPMFan0 : viewModel.manualRPMFan1

    implicitHeight: content.height + 24

    Column {
        id: content

        x: 12
        y: 12
        width: parent.width - 24

        Item {
            width: parent.width
            height: 32

            SymbolIcon {
                id: fan

                anchors.verticalCenter: parent.verticalCenter
                name: "fanblades.fill"
                size: 22
                color: Theme.cyan
            }
            Column {
                anchors.left: fan.right
                anchors.leftMargin: 9
                anchors.right: badge.left
                anchors.rightMargin: 8
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: card.name
                    size: Theme.sectionSize
                    font.weight: Font.DemiBold
                }
                TabularText {
                    text: NumberText.whole(card.minRPM) + "–" + NumberText.whole(card.maxRPM) + " RPM"
                    color: Theme.textSecondary
                    font.pixelSize: Theme.smallestSize
                }
            }
            Capsule {
                id: badge

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: card.isForced ? "Manuell" : "Auto"
                textColor: card.isForced ? Theme.orangeText : Theme.greenText
                color: Theme.tint(card.isForced ? Theme.orange : Theme.green, 0.20)
            }
        }
        Item {
            width: parent.width
            height: 38

            TabularText {
                id: speed

                anchors.bottom: parent.bottom
                text: NumberText.whole(card.currentRPM)
                color: Theme.textPrimary
                font.pixelSize: Theme.speedSize
                font.weight: Font.DemiBold
                font.letterSpacing: -0.5
                Accessible.role: Accessible.StaticText
                Accessible.name: text + " RPM"
            }
            Label {
                anchors.left: speed.right
                anchors.leftMargin: 6
                anchors.baseline: speed.baseline
                text: "RPM"
                color: Theme.textSecondary
                size: Theme.bodySize
                font.weight: Font.Medium
            }
        }
        TabularText {
            text: "Ziel: " + NumberText.rounded(card.targetRPM) + " RPM · " + NumberText.rounded(100 * card.loadFraction) + "%"
            color: Theme.textSecondary
            font.pixelSize: Theme.captionSize
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            width: parent.width
            height: 22

            Bar {
                y: 8
                width: parent.width
                fraction: card.loadFraction
                fill: card.loadBand === FanModel.Full ? Theme.red : card.loadBand === FanModel.Heavy ? Theme.orange : Theme.cyan
                Accessible.name: "Auslastung " + NumberText.rounded(100 * card.loadFraction) + " %"
            }
        }
        Item {
            width: parent.width
            height: 22

            Label {
                id: caption

                anchors.verticalCenter: parent.verticalCenter
                text: "Regler:"
                color: Theme.textSecondary
                Accessible.ignored: true
            }
            SmallSlider {
                id: slider

                anchors.left: caption.right
                anchors.leftMargin: 8
                anchors.right: parent.right
                from: card.minRPM
                to: card.maxRPM
                stepSize: 50
                value: card.manualRPM
                valueText: NumberText.whole(value) + " RPM"
                Accessible.name: "Regler " + card.name
                onMoved: rpm => card.fans.setManualTarget(card.fanId, rpm)
                onReleased: card.viewModel.applyManualSpeeds()
            }
        }
        Item {
            width: parent.width
            height: 28

            Row {
                id: row

                readonly property real room: Math.min(parent.width - apply.width - 12, 280)

                y: 6
                spacing: 4

                Repeater {
                    model: card.presets

                    PushButton {
                        required property int modelData

                        width: Math.floor((row.room - 4 * row.spacing) / 5)
                        small: true
                        text: modelData + "%"
                        Accessible.name: card.name + " auf " + text
                        onClicked: card.fans.applyPreset(card.fanId, modelData)
                    }
                }
            }
            PushButton {
                id: apply

                anchors.right: parent.right
                y: 6
                width: 56
                kind: PushButton.Prominent
                small: true
                fontSize: 10
                text: "Setzen"
                Accessible.name: card.name + " setzen"
                onClicked: card.viewModel.applyManualSpeeds()
            }
        }
    }
}
