import QtQuick
import QtTest
import Ventaro.Test
import Ventaro.Views

TabTest {
    id: test

    readonly property var standard: [[45, 0], [60, 30], [72, 60], [85, 100]]

    name: "Curve"
    tab: DashboardTab.SmartCurve
    width: 980
    height: 680

    views: Component {
        DashboardView {
            width: 980
            height: 680
            selectedTab: test.tab
        }
    }

    function curve() {
        return bench.curve().map(point => [point.x, point.y]);
    }
    /// Where the plot shows these data values.
    function place(celsius, percent) {
        const plot = handle(1, 45, 0).parent;
        return plot.mapToItem(view, plot.xOf(celsius), plot.yOf(percent));
    }
    function handle(number, celsius, percent) {
        return bench.named(view, "Stützpunkt " + number + ": " + celsius + " °C, " + percent + " %");
    }

    function test_texts() {
        for (const text of ["Temperatur-Kurve", "45 RPM Hysterese", "Dynamische Steuerung beider Lüfter nach gewählter Temperaturquelle.", "63.4 °C", "38% (~3291 RPM)", "Sensorquelle:", "Max(CPU, Radeon GPU)", "CPU Package (TCXC)", "AMD Radeon GPU (TGDD)", "Standard-Kurve (45°C–85°C)", "Kennlinie (°C → Lüfterleistung %)", "Punkte im Graphen ziehbar", "Temperatur (°C)", "Lüfter (%)", "Aktuell", "Ziel", "60°C · 30%", "Stützpunkte (4 Stufen)", "Links / Rechts RPM", "1836 / 1700 RPM", "5616 / 5200 RPM", "Kurve aktivieren"])
            verify(shows(text), text);
        compare(bench.namelessControls(view), []);
        view.width = 620;
        for (const text of ["Dynamische Steuerung beider Lüfter.", "Max(CPU, GPU)", "CPU (TCXC)", "Radeon GPU", "Standard-Kurve"])
            verify(shows(text), text);
    }
    function test_layout_data() {
        return [
            { tag: "980 x 680", chart: 231, beside: false },
            { tag: "620 x 480", chart: 200, beside: false },
            { tag: "1040 x 680", chart: 360, beside: true, table: 340 },
            { tag: "1039 x 900", chart: 270, beside: false },
            { tag: "1440 x 400", chart: 245, beside: true, table: 420 },
        ];
    }
    function test_layout(row) {
        const [width, height] = row.tag.split(" x ").map(Number);
        view.width = width;
        view.height = height;
        const chart = bench.named(view, "Kennlinie (°C → Lüfterleistung %)").parent;
        const table = bench.named(view, "Stützpunkte (4 Stufen)").parent;
        compare(chart.height, row.chart);
        compare(table.y === chart.y, row.beside);
        if (row.beside) {
            compare(table.width, row.table);
            compare(table.height, chart.height);
        } else {
            compare(table.width, chart.width);
        }
    }

    function test_drag_data() {
        return [
            { tag: "within the page", to: [63, 36.6], curve: [[45, 0], [63, 35], [72, 60], [85, 100]] },
            { tag: "rounded up", to: [62, 38.4], curve: [[45, 0], [62, 40], [72, 60], [85, 100]] },
            { tag: "past a neighbour", to: [80, 50], curve: [[45, 0], [70, 40], [80, 50], [85, 100]] },
            { tag: "above the top", to: [60, 140], curve: [[45, 0], [60, 100], [72, 60], [85, 100]] },
            { tag: "below the bottom", to: [60, -40], curve: [[45, 0], [60, 0], [72, 60], [85, 100]] },
        ];
    }
    function test_drag(row) {
        const from = place(60, 30);
        const to = place(row.to[0], row.to[1]);
        mousePress(view, from.x, from.y);
        compare(bench.requests(), []);
        const steps = 10;
        for (let step = 1; step <= steps; ++step)
            mouseMove(view, from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps);
        compare(bench.savedCurve().length, 0, "saved before the drag ended");
        mouseRelease(view, to.x, to.y);
        compare(bench.savedCurve(), bench.curve());
        compare(bench.requests(), [], "applied in another profile");
        compare(curve(), row.curve);
    }
    function test_dragRoundsAndTakesTheNearest_data() {
        return [
            { tag: "37.4", at: [60, 37.4], row: 1, to: [60, 35] },
            { tag: "37.6", at: [60, 37.6], row: 1, to: [60, 40] },
            { tag: "tie", at: [66, 30], row: 1, to: [66, 30] },
            { tag: "right of all", at: [140, 30], row: 3, to: [95, 30] },
            { tag: "left of all", at: [-10, 30], row: 0, to: [35, 30] },
            { tag: "no plot yet", at: [NaN, 30], row: -1 },
        ];
    }
    function test_dragRoundsAndTakesTheNearest(row) {
        compare(bench.named(view, "Kurve aktivieren").curve.drag(row.at[0], row.at[1]), row.row);
        compare(curve().filter((point, index) => index === row.row), row.to ? [row.to] : []);
    }
    function test_aPressMovesNothing() {
        const at = place(61, 33);
        mousePress(view, at.x, at.y);
        mouseMove(view, at.x + 1, at.y - 2);
        mouseRelease(view, at.x + 1, at.y - 2);
        compare(curve(), standard);
        keyClick(Qt.Key_Left);
        compare(curve()[1], [59, 30], "the point pressed has the focus");
    }
    function test_anEditEndsWithItsTab_data() {
        return [
            { tag: "slider", begin: () => mousePress(bench.named(view, "Temperatur Stützpunkt 2"), 150, 11), end: () => mouseRelease(view) },
            { tag: "drag", begin: () => {
                const at = place(60, 30);
                mousePress(view, at.x, at.y);
                mouseMove(view, at.x + 20, at.y - 30);
            }, end: () => mouseRelease(view) },
            { tag: "key", begin: () => {
                handle(2, 60, 30).forceActiveFocus(Qt.TabFocusReason);
                keyPress(Qt.Key_Right);
            }, end: () => keyRelease(Qt.Key_Right) },
        ];
    }
    function test_anEditEndsWithItsTab(row) {
        click("Kurve aktivieren");
        bench.requests();
        row.begin();
        view.selectedTab = DashboardTab.Settings;
        wait(0);
        compare(bench.savedCurve(), bench.curve());
        compare(bench.requests().length, 2);
        verify(curve()[1][0] > 60);
        row.end();
        view.selectedTab = DashboardTab.SmartCurve;
        verify(bench.named(view, "Rückgängig").enabled);
    }
    function test_aSliderEndsItsEditBeforeADragBegins() {
        bench.named(view, "Temperatur Stützpunkt 4").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        const at = place(60, 30);
        mousePress(view, at.x, at.y);
        compare(bench.savedCurve(), bench.curve());
        mouseMove(view, at.x + 20, at.y);
        keyClick(Qt.Key_Escape);
        compare(curve(), [[45, 0], [60, 30], [72, 60], [86, 100]]);
        mouseRelease(view);
    }
    function test_dragAppliesInTheCurvesProfile() {
        click("Kurve aktivieren");
        compare(bench.requests().length, 2);
        verify(shows("Kurve aktiv"));
        const from = place(60, 30);
        const to = place(60, 50);
        mousePress(view, from.x, from.y);
        mouseMove(view, to.x, to.y);
        compare(bench.requests(), []);
        mouseRelease(view, to.x, to.y);
        compare(bench.requests(), ["set 0 3833", "set 1 3549"]); // 52.8 %
    }
    function test_aDragIsTakenBack_data() {
        return [
            { tag: "Escape", keys: () => keyClick(Qt.Key_Escape) },
            { tag: "Escape elsewhere", keys: () => {
                keyClick(Qt.Key_Tab);
                keyClick(Qt.Key_Escape);
            } },
            { tag: "Ctrl+Z", keys: () => keyClick(Qt.Key_Z, Qt.ControlModifier) },
        ];
    }
    function test_aDragIsTakenBack(row) {
        const from = place(60, 30);
        bench.named(view, "Lüfterleistung Stützpunkt 1").forceActiveFocus();
        keyClick(Qt.Key_End);
        mousePress(view, from.x, from.y);
        const before = [[45, 100], [60, 30], [72, 60], [85, 100]];
        mouseMove(view, from.x + 200, from.y - 60);
        verify(curve()[3][1] < 100);
        row.keys();
        compare(curve(), before);
        mouseMove(view, from.x + 220, from.y - 60);
        mouseRelease(view, from.x + 220, from.y - 60);
        compare(curve(), before);
        compare(bench.savedCurve(), bench.curve());
    }
    function test_undoEndsAnOpenEdit_data() {
        const slider = "Temperatur Stützpunkt 2";
        return [
            { tag: "slider", focus: () => bench.named(view, slider), move: () => keyClick(Qt.Key_Right), rest: () => tryVerify(() => !bench.named(view, slider).isEditing), at: [61, 30] },
            // Past its neighbour, so that its handle is made anew.
            { tag: "key held", focus: () => handle(2, 60, 30), move: () => {
                for (let step = 0; step < 3; ++step)
                    keyPress(Qt.Key_Right, Qt.ShiftModifier);
            }, rest: () => keyRelease(Qt.Key_Right, Qt.ShiftModifier), at: [75, 30] },
        ];
    }
    function test_undoEndsAnOpenEdit(row) {
        click("Kurve aktivieren");
        row.focus().forceActiveFocus(Qt.TabFocusReason);
        row.move();
        row.rest();
        compare(curve()[1], row.at);
        row.move();
        bench.requests();
        keyClick(Qt.Key_Z, Qt.ControlModifier);
        compare(curve()[1], row.at, "more than the open edit was undone");
        compare(bench.requests().length, 2);
        row.rest();
        compare(bench.requests(), []);
        keyClick(Qt.Key_Z, Qt.ControlModifier);
        compare(curve(), standard);
        keyClick(Qt.Key_Z, Qt.ControlModifier | Qt.ShiftModifier);
        compare(curve()[1], row.at);
        keyClick(Qt.Key_Right);
        compare(curve()[1], [row.at[0] + 1, 30], "the focus was lost");
    }
    function test_theFocusStaysWhereItCan() {
        click("Standard-Kurve (45°C–85°C)");
        handle(1, 45, 0).forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Up);
        bench.named(view, "Rückgängig").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        verify(bench.named(view, "Wiederholen").activeFocus);
        keyClick(Qt.Key_Space);
        verify(bench.named(view, "Rückgängig").activeFocus);
        const slider = bench.named(view, "Temperatur Stützpunkt 1");
        slider.forceActiveFocus(Qt.TabFocusReason);
        click("Standard-Kurve (45°C–85°C)");
        compare(bench.named(view, "Temperatur Stützpunkt 1"), slider);
    }
    function test_keysMoveAPoint() {
        handle(2, 60, 30).forceActiveFocus(Qt.TabFocusReason);
        keyPress(Qt.Key_Right);
        compare(curve()[1], [61, 30]);
        compare(bench.savedCurve().length, 0);
        keyRelease(Qt.Key_Right);
        compare(bench.savedCurve().length, 4);
        keyClick(Qt.Key_Up, Qt.ShiftModifier);
        compare(curve()[1], [61, 40]);
        for (let step = 0; step < 3; ++step)
            keyClick(Qt.Key_Right, Qt.ShiftModifier);
        compare(curve()[1], [76, 40], "the focus has not followed the point past its neighbour");
        keyClick(Qt.Key_Z, Qt.ControlModifier);
        compare(curve()[1], [71, 40]);
        keyClick(Qt.Key_Z, Qt.ControlModifier | Qt.ShiftModifier);
        compare(curve()[1], [76, 40]);
        compare(bench.savedCurve(), bench.curve());
    }
    function test_tableEditsPoints() {
        const slider = bench.named(view, "Lüfterleistung Stützpunkt 1");
        mouseClick(slider, slider.width / 2, 11);
        compare(curve()[0], [45, 50]);
        compare(bench.savedCurve().length, 4);
        const typed = (what, keys) => {
            const field = bench.named(view, what + " Stützpunkt 1 eintippen");
            mouseClick(field);
            keyClick(Qt.Key_A, Qt.ControlModifier);
            for (const key of keys)
                keyClick(key);
            keyClick(Qt.Key_Return);
            return field.text;
        };
        typed("Temperatur", "48");
        compare(curve()[0], [48, 50]);
        keyClick(Qt.Key_Z, Qt.ControlModifier);
        compare(curve()[0], [45, 50]);
        keyClick(Qt.Key_Z, Qt.ControlModifier | Qt.ShiftModifier);
        compare(typed("Temperatur", "99"), "48", "beyond the editor's range");
        compare(typed("Temperatur", "x"), "48");
        compare(typed("Lüfterleistung", [Qt.Key_Delete]), "50");
        compare(curve()[0], [48, 50]);
        verify(shows("3726 / 3450 RPM"));
        click("Standard-Kurve (45°C–85°C)");
        compare(curve(), standard);
        compare(bench.requests(), []);
    }
    function test_sourceReapplies() {
        click("AMD Radeon GPU (TGDD)");
        verify(shows("52.1 °C"));
        compare(bench.requests(), []);
        click("Kurve aktivieren");
        bench.requests();
        click("CPU Package (TCXC)");
        compare(bench.requests().length, 2);
        click("CPU Package (TCXC)");
        compare(bench.requests(), [], "the same source again is no change");
    }
    function test_files_data() {
        const point = (celsius, percent) => JSON.stringify({ temperature: celsius, speedPercent: percent });
        const four = [point(40, 10), point(50, 20), point(60, 33), point(70, 90)];
        return [
            { tag: "good", text: "[" + four + "]", problem: "" },
            { tag: "three points", text: "[" + four.slice(1) + "]", problem: "Eine Temperatur-Kurve hat genau vier Stützpunkte." },
            { tag: "too hot", text: "[" + four.slice(1) + "," + point(96, 0) + "]", problem: "Jede Temperatur (°C) muss eine ganze Zahl von 35 bis 95 sein." },
            { tag: "half a percent", text: "[" + four.slice(1) + "," + point(90, 0.5) + "]", problem: "Jede Lüfterleistung (%) muss eine ganze Zahl von 0 bis 100 sein." },
            { tag: "no curve", text: "{\"a\": 1}", problem: "Die Datei enthält keine Temperatur-Kurve. Sie müsste eine Liste von Stützpunkten sein." },
            { tag: "no percent", text: "[{\"temperature\": 40}]", problem: "Die Datei enthält keine Temperatur-Kurve. Das Feld „speedPercent“ fehlt." },
            { tag: "too large", text: "[".padEnd(70000), problem: "Die Datei ist zu groß für eine Temperatur-Kurve." },
        ];
    }
    function test_files(row) {
        const choose = (command, file) => {
            click(command);
            verify(bench.chooseFile(file));
            test.Window.window.requestActivate();
            tryVerify(() => test.Window.active);
        };
        choose("Importieren …", bench.file(row.text));
        if (row.problem !== "") {
            verify(shows(row.problem));
            view.width = 620;
            waitForRendering(view, 300);
            compare(bench.cutTexts(view), []);
            compare(curve(), standard);
            compare(bench.savedCurve().length, 0);
            return;
        }
        compare(curve(), [[40, 10], [50, 20], [60, 33], [70, 90]]);
        const file = bench.file("").toString().replace("curve", "exported");
        choose("Exportieren …", file);
        click("Standard-Kurve (45°C–85°C)");
        choose("Importieren …", file);
        compare(curve()[2], [60, 33]);
        compare(bench.savedCurve(), bench.curve());
    }
}
