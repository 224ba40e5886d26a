import QtQuick
import Ventaro.Style
import Ventaro.Views

/// What the user ought to know whatever tab is open.
Column {
    id: banners

    required property FanControllerViewModel viewModel

    /// The control that has the focus is about to go.
    signal focusDropped

    bottomPadding: missing.shown || outdated.shown || conflict.shown || foreign.shown || guard.shown || message.shown ? 6 : 0

    Banner {
        id: missing

        shown: !banners.viewModel.isHelperInstalled
        symbol: "lock.shield.fill"
        symbolColor: Theme.orangeText
        fill: Theme.tint(Theme.orange, 0.14)
        text: "Hintergrund-Helper für SMC-Schreibzugriff noch nicht installiert."
        isBold: true
        trailingWidth: install.width

        PushButton {
            id: install

            width: 146
            kind: PushButton.Orange
            symbol: "key.fill"
            text: "Helper installieren"
            fontSize: 11
            font.weight: Font.Bold
            busy: banners.viewModel.isInstallingHelper
            onClicked: banners.viewModel.installHelper()
        }
    }
    Banner {
        id: outdated

        shown: banners.viewModel.isHelperInstalled && banners.viewModel.isHelperOutdated
        symbol: "lock.shield.fill"
        symbolColor: Theme.orangeText
        fill: Theme.tint(Theme.orange, 0.14)
        text: "Der Hintergrund-Helper gehört zu einer anderen Version von Ventaro."
        trailingWidth: renew.width

        PushButton {
            id: renew

            width: 146
            kind: PushButton.Orange
            symbol: "key.fill"
            text: "Helper erneuern"
            fontSize: 11
            font.weight: Font.Bold
            busy: banners.viewModel.isInstallingHelper
            onClicked: banners.viewModel.installHelper()
        }
    }
    Banner {
        id: guard

        // Kept while the banner goes.
        property string lastText

        shown: banners.viewModel.guardText !== ""
        symbol: "exclamationmark.triangle.fill"
        symbolColor: Theme.redText
        fill: Theme.tint(Theme.red, 0.10)
        text: banners.viewModel.guardText || lastText
        onShownChanged: lastText = banners.viewModel.guardText || lastText
    }
    Banner {
        id: foreign

        shown: banners.viewModel.areFansForcedByOthers
        symbol: "exclamationmark.triangle.fill"
        symbolColor: Theme.yellowText
        fill: Theme.tint(Theme.yellow, 0.12)
        text: "Die Lüfter stehen auf fester Drehzahl, werden aber nicht von hier gesteuert."
        trailingWidth: free.width

        PushButton {
            id: free

            width: 146
            symbol: "arrow.counterclockwise"
            text: "Auf Automatik"
            fontSize: 11
            onClicked: banners.viewModel.returnToAutomatic()
        }
    }
    Banner {
        id: conflict

        shown: banners.viewModel.competingProcessDetected
        symbol: "exclamationmark.triangle.fill"
        symbolColor: Theme.yellowText
        fill: Theme.tint(Theme.yellow, 0.12)
        text: "Hinweis: 'Macs Fan Control' läuft parallel. Bitte dort auf 'Automatisch' stellen oder beenden, um SMC-Konflikte zu vermeiden."
    }
    Banner {
        id: message

        // Kept while the banner goes.
        property string lastText
        property bool wasError: false

        function remember() {
            if (!banners.viewModel.hasStatusMessage)
                return;
            lastText = banners.viewModel.statusMessage;
            wasError = banners.viewModel.isErrorStatus;
        }

        shown: banners.viewModel.hasStatusMessage
        symbol: wasError ? "xmark.octagon.fill" : "checkmark.circle.fill"
        symbolColor: wasError ? Theme.redText : Theme.greenText
        fill: Theme.tint(wasError ? Theme.red : Theme.green, 0.10)
        text: lastText
        trailingWidth: actions.width
        Component.onCompleted: remember()

        Connections {
            target: banners.viewModel
            function onStatusMessageChanged() {
                message.remember();
            }
            function onIsErrorStatusChanged() {
                message.remember();
            }
        }
        Row {
            id: actions

            spacing: 8

            PushButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: banners.viewModel.canTakeOver
                text: "Übernehmen"
                fontSize: 11
                onClicked: banners.viewModel.takeOverControl()
            }
            IconButton {
                id: dismiss

                anchors.verticalCenter: parent.verticalCenter
                symbol: "xmark"
                text: "Meldung schließen"
                onClicked: {
                    if (activeFocus)
                        banners.focusDropped();
                    banners.viewModel.dismissStatusMessage();
                }
            }
        }
    }
}
