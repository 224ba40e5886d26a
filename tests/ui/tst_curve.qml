import QtQuick
import QtTest
import Ventaro.Views

TabTest {
    id: test

    readonly property var standard: [[45, 0], [60, 30], [72, 60], [85, 100]]
    readonly property string reset: "Standard-Kurve (45°C–85°C)"
    property Item plot

    name: "Curve"
    tab: DashboardTab.SmartCurve
    width: 980
    height: 680

    function curve() {
        return bench.curve().map(point => [point.x, point.y]);
    }
    function handle(number, celsius, percent) {
        return "Stützpunkt " + number + ": " + celsius + " °C, " + percent + " %";
    }
    /// Has the mouse act where the plot shows these data values, or so many pixels beside them.
    function mouse(action, celsius, percent, right = 0, down = 0) {
        plot = plot ?? named(handle(1, 45, 0)).parent;
        const at = plot.mapToItem(view, plot.xOf(celsius), plot.yOf(percent));
        action(view, at.x + right, at.y + down);
    }
    readonly property var undo: () => keyClick(Qt.Key_Z, Qt.ControlModifier)
    readonly property var redo: () => keyClick(Qt.Key_Z, Qt.ControlModifier | Qt.ShiftModifier)
    function activate() {
        click("Kurve aktivieren");
        compare(bench.requests().length, 2);
        verify(shows("Kurve aktiv"));
    }

    function test_texts() {
        expectTexts(["Temperatur-Kurve", "45 RPM Hysterese", "Dynamische Steuerung beider Lüfter nach gewählter Temperaturquelle.", "63.4 °C", "38% (~3291 RPM)", "Sensorquelle:", "Max(CPU, Radeon GPU)", "CPU Package (TCXC)", "AMD Radeon GPU (TGDD)", "Standard-Kurve (45°C–85°C)", "Kennlinie (°C → Lüfterleistung %)", "Punkte im Graphen ziehbar", "Temperatur (°C)", "Lüfter (%)", "Aktuell", "Ziel", "60°C · 30%", "Stützpunkte (4 Stufen)", "Links / Rechts RPM", "1836 / 1700 RPM", "5616 / 5200 RPM", "Kurve aktivieren"]);
        view.width = 620;
        expectTexts(["Dynamische Steuerung beider Lüfter.", "Max(CPU, GPU)", "CPU (TCXC)", "Radeon GPU", "Standard-Kurve"]);
    }
    function test_layout() {
        // The width of the table, if it is beside the chart.
        for (const [width, height, chartHeight, besideIt] of [[980, 680, 231], [620, 480, 200], [1040, 680, 360, 340], [1039, 900, 270], [1440, 400, 245, 420]]) {
            resize(width, height);
            const chart = named("Kennlinie (°C → Lüfterleistung %)").parent;
            const table = named("Stützpunkte (4 Stufen)").parent;
            compare([chart.height, table.y === chart.y, table.width], [chartHeight, !!besideIt, besideIt ?? chart.width], width);
            verify(!besideIt || table.height === chart.height, width);
        }
    }

    function test_drag_data() {
        return [
            { tag: "within the page", to: [63, 36.6], curve: [[45, 0], [63, 35], [72, 60], [85, 100]] },
            { tag: "rounded up", to: [62, 38.4], curve: [[45, 0], [62, 40], [72, 60], [85, 100]] },
            { tag: "past a neighbour", to: [80, 50], curve: [[45, 0], [70, 40], [80, 50], [85, 100]] },
            { tag: "above the top", to: [60, 140], curve: [[45, 0], [60, 100], [72, 60], [85, 100]] },
            { tag: "below the bottom", to: [60, -40], curve: [[45, 0], [60, 0], [72, 60], [85, 100]] },
            { tag: "in use", to: [60, 50], curve: [[45, 0], [60, 50], [72, 60], [85, 100]], requests: ["set 0 3833", "set 1 3549"] }, // 52.8 %
        ];
    }
    function test_drag(row) {
        if (row.requests)
            activate();
        const saved = bench.savedCurve();
        mouse(mousePress, 60, 30);
        const steps = 10;
        for (let step = 1; step <= steps; ++step)
            mouse(mouseMove, 60 + (row.to[0] - 60) * step / steps, 30 + (row.to[1] - 30) * step / steps);
        compare(bench.requests(), []);
        compare(bench.savedCurve(), saved, "saved before the drag ended");
        mouse(mouseRelease, ...row.to);
        compare(bench.savedCurve(), bench.curve());
        compare(bench.requests(), row.requests ?? []);
        compare(curve(), row.curve);
    }
    function test_dragRoundsAndTakesTheNearest() {
        // Below and above half a step, between two points, right and left of all, and no plot yet.
        for (const [at, row, to] of [[[60, 37.4], 1, [60, 35]], [[60, 37.6], 1, [60, 40]], [[66, 30], 1, [66, 30]], [[140, 30], 3, [95, 30]], [[-10, 30], 0, [35, 30]], [[NaN, 30], -1]]) {
            click(reset);
            compare(named("Kurve aktivieren").curve.drag(...at), row, at);
            compare(curve(), standard.map((point, index) => index === row ? to : point), at);
        }
    }
    function test_aPressMovesNothing() {
        mouse(mousePress, 61, 33);
        mouse(mouseMove, 61, 33, 1, -2);
        mouse(mouseRelease, 61, 33, 1, -2);
        compare(curve(), standard);
        keyClick(Qt.Key_Left);
        compare(curve()[1], [59, 30], "the point pressed has the focus");
    }
    function test_anEditEndsWithItsTab_data() {
        return [
            { tag: "slider", begin: () => mousePress(named("Temperatur Stützpunkt 2"), 150, 11), end: () => mouseRelease(view) },
            { tag: "drag", begin: () => {
                mouse(mousePress, 60, 30);
                mouse(mouseMove, 60, 30, 20, -30);
            }, end: () => mouseRelease(view) },
            { tag: "key", begin: () => {
                focusOn(handle(2, 60, 30));
                keyPress(Qt.Key_Right);
            }, end: () => keyRelease(Qt.Key_Right) },
        ];
    }
    function test_anEditEndsWithItsTab(row) {
        activate();
        row.begin();
        view.selectedTab = DashboardTab.Settings;
        wait(0);
        compare(bench.savedCurve(), bench.curve());
        compare(bench.requests().length, 2);
        verify(curve()[1][0] > 60);
        row.end();
        view.selectedTab = DashboardTab.SmartCurve;
        verify(named("Rückgängig").enabled);
    }
    function test_aDragIsTakenBack() {
        const before = [[45, 100], [60, 30], [72, 60], [85, 100]];
        plot = named(handle(1, 45, 0)).parent;
        focusOn("Lüfterleistung Stützpunkt 1");
        keyClick(Qt.Key_End);
        for (const way of ["Escape", "Escape elsewhere", "Ctrl+Z"]) {
            mouse(mousePress, 60, 30);
            compare(bench.savedCurve(), bench.curve(), "the slider's edit has not ended");
            mouse(mouseMove, 60, 30, 200, -60);
            verify(curve()[3][1] < 100);
            if (way === "Ctrl+Z")
                undo();
            else
                press(way === "Escape" ? [Qt.Key_Escape] : [Qt.Key_Tab, Qt.Key_Escape]);
            compare(curve(), before, way);
            mouse(mouseMove, 60, 30, 220, -60);
            mouse(mouseRelease, 60, 30, 220, -60);
            compare(curve(), before, way);
            compare(bench.savedCurve(), bench.curve());
        }
    }
    function test_undoEndsAnOpenEdit_data() {
        const slider = "Temperatur Stützpunkt 2";
        return [
            { tag: "slider", focus: () => focusOn(slider), move: () => keyClick(Qt.Key_Right), rest: () => tryVerify(() => !named(slider).isEditing), at: [61, 30] },
            // Past its neighbour.
            { tag: "key held", focus: () => focusOn(handle(2, 60, 30)), move: () => {
                for (let step = 0; step < 3; ++step)
                    keyPress(Qt.Key_Right, Qt.ShiftModifier);
            }, rest: () => keyRelease(Qt.Key_Right, Qt.ShiftModifier), at: [75, 30] },
        ];
    }
    function test_undoEndsAnOpenEdit(row) {
        activate();
        row.focus();
        row.move();
        row.rest();
        compare(curve()[1], row.at);
        row.move();
        bench.requests();
        undo();
        compare(curve()[1], row.at, "more than the open edit was undone");
        compare(bench.requests().length, 2);
        row.rest();
        compare(bench.requests(), []);
        undo();
        compare(curve(), standard);
        redo();
        compare(curve()[1], row.at);
        keyClick(Qt.Key_Right);
        compare(curve()[1], [row.at[0] + 1, 30], "the focus was lost");
    }
    function test_theFocusStaysWhereItCan() {
        click(reset);
        focusOn(handle(1, 45, 0));
        keyClick(Qt.Key_Up);
        focusOn("Rückgängig");
        for (const next of ["Wiederholen", "Rückgängig"]) {
            keyClick(Qt.Key_Space);
            verify(named(next).activeFocus);
        }
        const slider = named("Temperatur Stützpunkt 1");
        focusOn("Temperatur Stützpunkt 1");
        click(reset);
        compare(named("Temperatur Stützpunkt 1"), slider);
    }
    function test_keysMoveAPoint() {
        focusOn(handle(2, 60, 30));
        keyPress(Qt.Key_Right);
        compare(curve()[1], [61, 30]);
        compare(bench.savedCurve().length, 0);
        keyRelease(Qt.Key_Right);
        compare(bench.savedCurve().length, 4);
        keyClick(Qt.Key_Up, Qt.ShiftModifier);
        press([Qt.Key_Right, Qt.Key_Right, Qt.Key_Right], Qt.ShiftModifier);
        compare(curve()[1], [76, 40], "the focus has not followed the point past its neighbour");
        undo();
        compare(curve()[1], [71, 40]);
        redo();
        compare(curve()[1], [76, 40]);
        compare(bench.savedCurve(), bench.curve());
    }
    function test_tableEditsPoints() {
        const slider = named("Lüfterleistung Stützpunkt 1");
        mouseClick(slider, slider.width / 2, 11);
        compare(curve()[0], [45, 50]);
        compare(bench.savedCurve().length, 4);
        const typed = (what, keys) => {
            const field = named(what + " Stützpunkt 1 eintippen");
            mouseClick(field);
            keyClick(Qt.Key_A, Qt.ControlModifier);
            press([...keys, Qt.Key_Return]);
            return field.text;
        };
        typed("Temperatur", "48");
        compare(curve()[0], [48, 50]);
        undo();
        compare(curve()[0], [45, 50]);
        redo();
        compare(typed("Temperatur", "99"), "48", "beyond the editor's range");
        compare(typed("Temperatur", "x"), "48");
        compare(typed("Lüfterleistung", [Qt.Key_Delete]), "50");
        compare(curve()[0], [48, 50]);
        verify(shows("3726 / 3450 RPM"));
        click(reset);
        compare(curve(), standard);
        compare(bench.requests(), []);
    }
    function test_sourceReapplies() {
        click("AMD Radeon GPU (TGDD)");
        verify(shows("52.1 °C"));
        compare(bench.requests(), []);
        activate();
        click("CPU Package (TCXC)");
        compare(bench.requests().length, 2);
        click("CPU Package (TCXC)");
        compare(bench.requests(), [], "the same source again is no change");
    }
    function test_files() {
        const choose = (command, file) => {
            click(command);
            verify(bench.chooseFile(file));
            test.Window.window.requestActivate();
            tryVerify(() => test.Window.active);
        };
        const listOf = (...points) => JSON.stringify(points.map(point => ({ temperature: point[0], speedPercent: point[1] })));
        const three = [[50, 20], [60, 33], [70, 90]];
        const problems = [
            [listOf(...three), "Eine Temperatur-Kurve hat genau vier Stützpunkte."],
            [listOf(...three, [96, 0]), "Jede Temperatur (°C) muss eine ganze Zahl von 35 bis 95 sein."],
            [listOf(...three, [90, 0.5]), "Jede Lüfterleistung (%) muss eine ganze Zahl von 0 bis 100 sein."],
            ["{\"a\": 1}", "Die Datei enthält keine Temperatur-Kurve. Sie müsste eine Liste von Stützpunkten sein."],
            ["[{\"temperature\": 40}]", "Die Datei enthält keine Temperatur-Kurve. Das Feld „speedPercent“ fehlt."],
            ["[".padEnd(70000), "Die Datei ist zu groß für eine Temperatur-Kurve."],
        ];
        for (const [text, problem] of problems) {
            choose("Importieren …", bench.file(text));
            verify(shows(problem), problem);
            resize(620);
            compare(bench.cutTexts(view), []);
            resize(980);
        }
        compare(curve(), standard);
        compare(bench.savedCurve().length, 0);

        choose("Importieren …", bench.file(listOf([40, 10], ...three)));
        compare(curve(), [[40, 10], ...three]);
        const file = bench.file("").toString().replace("curve", "exported");
        choose("Exportieren …", file);
        click(reset);
        choose("Importieren …", file);
        compare(curve()[2], [60, 33]);
        compare(bench.savedCurve(), bench.curve());
    }
}
