pragma ComponentBehavior: Bound

import QtQuick
import Ventaro.Style
import Ventaro.Views

/// The content of the main window: the sidebar, and beside it the selected tab under its banners.
FocusScope {
    id: dashboard

    required property FanControllerViewModel viewModel
    /// What there is to say about the machine itself; empty on a real one.
    property string machineNote
    property int selectedTab: DashboardTab.Overview
    property string sensorSearchText
    property bool hidesHardwareIdentifiers: false

    readonly property real sidebarMinimum: 205
    readonly property real sidebarMaximum: 245
    /// What the user has dragged it to.
    property real sidebarWidth: 220
    readonly property real detailMinimum: 415

    focus: true
    // What nothing in focus takes moves the page.
    Keys.forwardTo: [page]

    onSelectedTabChanged: {
        viewModel.isSensorsTabVisible = selectedTab === DashboardTab.Sensors;
        viewModel.isOverviewTabVisible = selectedTab === DashboardTab.Overview;
        if (selectedTab === DashboardTab.Sensors)
            viewModel.refreshTelemetryAsync(true);
        else if (selectedTab === DashboardTab.Hardware)
            viewModel.ensureHardwareSpecsLoaded();
    }

    Repeater {
        model: DashboardTab.titles.length

        Item {
            id: binding

            required property int index

            Shortcut {
                sequence: "Ctrl+" + (binding.index + 1)
                onActivated: dashboard.selectedTab = binding.index
            }
        }
    }

    CurveModel {
        id: curveModel

        viewModel: dashboard.viewModel
    }
    CurveFileDialog {
        id: curveFiles

        onExportChosen: file => curveModel.exportTo(file)
        onImportChosen: file => curveModel.importFrom(file)
    }

    SidebarContent {
        id: sidebar

        width: Math.max(dashboard.sidebarMinimum, Math.min(dashboard.sidebarWidth, dashboard.width - dashboard.detailMinimum))
        height: parent.height
        viewModel: dashboard.viewModel
        machineNote: dashboard.machineNote
        selectedTab: dashboard.selectedTab
        onTabChosen: tab => dashboard.selectedTab = tab
    }
    SplitHandle {
        id: edge

        x: sidebar.width - width
        height: parent.height
        onDragged: distance => {
            const wanted = sidebar.width + distance;
            dashboard.sidebarWidth = Math.min(Math.max(wanted, dashboard.sidebarMinimum), dashboard.sidebarMaximum);
        }
    }

    Rectangle {
        id: detail

        x: sidebar.width
        width: parent.width - x
        height: parent.height
        color: Theme.window

        ScrollPage {
            id: page

            readonly property real padding: 16
            /// Where each tab was left.
            property var places: ({})
            property int shownTab: dashboard.selectedTab
            /// Where the tab is to stand, also while it is too short for that: it takes its full
            /// height a moment after it is shown.
            property real place: 0

            function reachable(y: real): real {
                // Flickable moves before maximumY knows.
                return Math.min(y, Math.max(contentHeight - height, 0));
            }

            anchors.fill: parent
            contentWidth: width
            contentHeight: column.height + 2 * padding
            onShownTabChanged: {
                place = places[shownTab] ?? 0;
                contentY = reachable(place);
            }
            // A new object each time: compiled QML writes into a copy of the old one, Qt 6.4.
            onPlaceChanged: places = Object.assign({}, places, { [shownTab]: place })
            onMaximumYChanged: contentY = reachable(place)
            onContentYChanged: {
                if (contentY !== reachable(place))
                    place = contentY;
            }

            Column {
                id: column

                x: page.padding
                y: page.padding
                width: page.width - 2 * page.padding

                TopBanners {
                    id: banners

                    width: parent.width
                    viewModel: dashboard.viewModel
                    // What comes next must not be done by a key meant for the banner.
                    onFocusDropped: page.forceActiveFocus()
                }
                // One tab at a time. A Loader cannot make what is bound to its surroundings, Qt 6.4.
                Repeater {
                    model: dashboard.selectedTab === DashboardTab.Overview ? 1 : 0

                    OverviewContent {
                        width: column.width
                        viewModel: dashboard.viewModel
                        containerSize: Qt.size(detail.width, detail.height)
                    }
                }
                Repeater {
                    model: dashboard.selectedTab === DashboardTab.SmartCurve ? 1 : 0

                    SmartCurveContent {
                        width: column.width
                        curve: curveModel
                        files: curveFiles
                        containerSize: Qt.size(detail.width, detail.height)
                    }
                }
                Repeater {
                    model: dashboard.selectedTab === DashboardTab.Sensors ? 1 : 0

                    SensorsContent {
                        width: column.width
                        viewModel: dashboard.viewModel
                        searchText: dashboard.sensorSearchText
                        onSearchTextEdited: text => dashboard.sensorSearchText = text
                        onFieldNeeded: {
                            page.revealFocus();
                            page.place = page.contentY;
                        }
                    }
                }
                Repeater {
                    model: dashboard.selectedTab === DashboardTab.Hardware ? 1 : 0

                    HardwareSpecsContent {
                        width: column.width
                        viewModel: dashboard.viewModel
                        hidesIdentifiers: dashboard.hidesHardwareIdentifiers
                        onHidesIdentifiersChosen: hides => dashboard.hidesHardwareIdentifiers = hides
                    }
                }
                Repeater {
                    model: dashboard.selectedTab === DashboardTab.Settings ? 1 : 0

                    SettingsContent {
                        width: column.width
                        viewModel: dashboard.viewModel
                        machineNote: dashboard.machineNote
                    }
                }
            }
        }
    }
}
