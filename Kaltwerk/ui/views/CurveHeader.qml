import QtQuick
import Ventaro.Style
import Ventaro.Views

/// What the tab is, which temperature it goes by, and what comes of it now: in two rows where there
/// is room, else in four.
Item {
    id: header

    required property CurveModel curve
    /// The detail column's width, points.
    required property real containerWidth

    readonly property bool isWide: containerWidth >= 680
    readonly property bool hasResetBeside: width >= 686

    implicitHeight: isWide ? source.y + (hasResetBeside ? 26 : 26 + 8 + 26) : state.y + 26

    Row {
        id: title

        height: 20
        spacing: 8

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: "Temperatur-Kurve"
            size: Theme.pageTitleSize
            font.weight: Font.DemiBold
        }
        Capsule {
            anchors.verticalCenter: parent.verticalCenter
            text: "45 RPM Hysterese"
        }
    }
    Label {
        id: subtitle

        y: header.isWide ? 22 : 28 + (26 - height) / 2
        width: (header.isWide ? state.x : reset.x) - 12
        text: header.isWide ? "Dynamische Steuerung beider Lüfter nach gewählter Temperaturquelle." : "Dynamische Steuerung beider Lüfter."
        color: Theme.textSecondary
        wrapMode: header.isWide ? Text.Wrap : Text.NoWrap
        maximumLineCount: 2
    }
    Item {
        id: state

        x: header.isWide ? parent.width - width : 0
        y: header.isWide ? 6 : picker.y + 26 + 10
        width: header.isWide ? pill.width + 12 + activate.width : parent.width
        height: 26

        CurveLiveStatusPill {
            id: pill

            anchors.verticalCenter: parent.verticalCenter
            curve: header.curve
        }
        CurveActivateButton {
            id: activate

            anchors.right: parent.right
            curve: header.curve
        }
    }
    Item {
        id: source

        y: Math.max(subtitle.y + subtitle.height, state.y + 26) + 10
        width: parent.width
        height: 26
        visible: header.isWide

        Label {
            id: caption

            anchors.verticalCenter: parent.verticalCenter
            text: "Sensorquelle:"
            color: Theme.textSecondary
        }
    }
    CurveSensorSegmentedPicker {
        id: picker

        x: header.isWide ? caption.width + 10 : 0
        y: header.isWide ? source.y : 28 + 26 + 10
        width: header.isWide ? Math.min(Math.max(parent.width - x - (header.hasResetBeside ? reset.width + 12 : 0), 394), 420) : parent.width
        compactLabels: !header.isWide
        curve: header.curve
    }
    CurveResetButton {
        id: reset

        anchors.right: parent.right
        y: header.isWide ? source.y + (header.hasResetBeside ? 0 : 26 + 8) : 28
        shortLabel: !header.isWide
        curve: header.curve
    }
}
