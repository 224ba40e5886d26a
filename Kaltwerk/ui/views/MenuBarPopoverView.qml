import QtQuick
import Ventaro.Style
import Ventaro.Views

Rectangle {
    id: popover

    required property FanControllerViewModel viewModel

    signal openDashboardRequested
    signal quitRequested
    signal closeRequested
    signal actionStarted

    implicitWidth: 330
    implicitHeight: 484
    color: Theme.popover

    Keys.onEscapePressed: closeRequested()
}
