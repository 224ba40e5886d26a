pragma Singleton

import QtQuick

/// The tabs of the dashboard, in the order of the sidebar.
QtObject {
    enum Case {
        Overview,
        SmartCurve,
        Sensors,
        Hardware,
        Settings
    }

    readonly property list<string> titles: ["Dashboard & Lüfter", "Temperatur-Kurve", "Alle Sensoren", "Hardware & Specs", "Helper & Info"]
    readonly property list<string> symbols: ["fan.desk.fill", "chart.xyaxis.line", "thermometer.medium", "cpu.fill", "gearshape.2.fill"]
}
