import QtQuick
import Ventaro.Style
import Ventaro.Views

Rectangle {
    id: dashboard

    required property FanControllerViewModel viewModel
    property string machineNote

    color: Theme.window

    Text {
        anchors.centerIn: parent
        text: dashboard.viewModel.menuBarSummaryText
        color: Theme.textPrimary
    }
}
