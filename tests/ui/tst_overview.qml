import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Test
import Ventaro.Views

TabTest {
    id: test

    readonly property string leftSlider: "Regler Linker Lüfter (CPU)"
    readonly property string rightSlider: "Regler Rechter Lüfter (GPU)"

    name: "Overview"
    width: 760
    height: 900

    views: Component {
        OverviewContent {
            width: 728
            containerSize: Qt.size(760, 680)
        }
    }

    /// The place on a slider's track where `value` is.
    function placeOf(slider, value) {
        const knob = 14;
        return knob / 2 + (value - slider.from) / (slider.to - slider.from) * (slider.width - knob);
    }

    function test_texts() {
        for (const text of ["Steuerungs-Modus & Schnell-Presets", "Lüfter synchron (%)", "macOS-Auto", "System-Automatik", "Standard macOS SMC-Steuerung", "Temperatur-Kurve", "Dynamisch nach CPU/GPU-Temperatur", "Manuell", "Individuelle RPM pro Lüfter", "Leise", "Minimale Drehzahl (~20%)", "Ausgewogen", "Mittlere Kühlung (~50%)", "Max / Turbo", "Maximale Kühlleistung (100%)", "1836–5616 RPM", "2157", "RPM", "Ziel: 2150 RPM · 8%", "Regler:", "0%", "25%", "50%", "75%", "100%", "Setzen", "Auto", "Live-Verlauf (Letzte 2 Min.)", "CPU & Radeon GPU (°C)", "Lüfterdrehzahl (RPM)", "Links", "Rechts"])
            verify(shows(text), text);
        compare(bench.namelessControls(view), []);
    }
    function test_profiles_data() {
        return [
            { tag: "System-Automatik", requests: ["reset"] },
            { tag: "Temperatur-Kurve" },
            { tag: "Manuell", requests: ["set 0 2150", "set 1 2040"] },
            { tag: "Leise", requests: ["set 0 2403", "set 1 2225"] },
            { tag: "Ausgewogen", requests: ["set 0 3726", "set 1 3450"] },
            { tag: "Max / Turbo", requests: ["set 0 5616", "set 1 5200"] },
        ];
    }
    function test_profiles(row) {
        click(row.tag);
        const requests = bench.requests();
        if (row.requests)
            compare(requests, row.requests);
        else
            compare(requests.length, 2, requests.join());
        verify(bench.isChecked(bench.named(view, row.tag)));
        click("macOS-Auto");
        compare(bench.requests(), ["reset"]);
        verify(bench.isChecked(bench.named(view, "System-Automatik")));
    }

    function test_fanCardFollowsTheFan_data() {
        return [
            { tag: "empty range", range: [3000, 3000], current: 3100, target: 3000.5, forced: true, badge: "Manuell", line: "Ziel: 3001 RPM · 0%", fill: "cyan" },
            { tag: "light", range: [1836, 5616], current: 2157.9, target: 2150.4, forced: false, badge: "Auto", line: "Ziel: 2150 RPM · 9%", fill: "cyan" },
            { tag: "heavy", range: [1000, 2000], current: 1550, target: 1550, forced: true, badge: "Manuell", line: "Ziel: 1550 RPM · 55%", fill: "orange" },
            { tag: "full", range: [1000, 2000], current: 1850, target: 1850, forced: true, badge: "Manuell", line: "Ziel: 1850 RPM · 85%", fill: "red" },
            { tag: "beyond", range: [1000, 2000], current: 2500, target: 2000, forced: false, badge: "Auto", line: "Ziel: 2000 RPM · 100%", fill: "red" },
        ];
    }
    function test_fanCardFollowsTheFan(row) {
        bench.setRange(0, row.range[0], row.range[1]);
        bench.setFan(0, row.current, row.target, row.forced);
        bench.tick();
        const text = row.range[0] + "–" + row.range[1] + " RPM";
        verify(shows(text), text);
        verify(shows(row.line), bench.texts(view).join("\n"));
        verify(shows(row.badge));
        verify(shows(String(Math.trunc(row.current))));
        const percent = row.line.match(/(\d+)%/)[1];
        compare(bench.named(view, "Auslastung " + percent + " %").fill, Theme[row.fill]);
    }

    function test_moveWritesAndReleaseApplies() {
        const slider = bench.named(view, leftSlider);
        mousePress(slider, placeOf(slider, 3000), 11);
        mouseMove(slider, placeOf(slider, 4104), 11);
        compare(bench.viewModel.manualRPMFan0, 4086); // 45 steps of 50 from 1836
        verify(shows("4086 RPM"), "nothing tells the speed while dragging");
        compare(bench.viewModel.manualRPMFan1, 2040);
        compare(bench.requests(), []);
        mouseRelease(slider, placeOf(slider, 4104), 11);
        compare(bench.requests(), ["set 0 4086", "set 1 2040"]);
        verify(bench.named(view, "Manuell").isActive);
        compare(bench.accessibleValue(slider), 4086);

        mouseDrag(slider, placeOf(slider, 4086), 11, 400, 0);
        compare(bench.viewModel.manualRPMFan0, 5616, "the end of the range is out of reach");
    }
    function test_takingHoldOfTheKnobMovesNothing() {
        const slider = bench.named(view, leftSlider);
        const knob = placeOf(slider, 2150);
        mousePress(slider, knob - 5, 11);
        compare(bench.viewModel.manualRPMFan0, 2150);
        mouseMove(slider, knob + 15, 11); // the knob follows from where it was taken
        const perPoint = (5616 - 1836) / (slider.width - 14);
        fuzzyCompare(bench.viewModel.manualRPMFan0, 2150 + 20 * perPoint, 50);
        mouseRelease(slider, knob + 15, 11);
    }
    function test_aKeyWithinADragDoesNotEndIt() {
        const slider = bench.named(view, leftSlider);
        mousePress(slider, placeOf(slider, 2150), 11);
        keyClick(Qt.Key_Right);
        bench.named(view, rightSlider).forceActiveFocus(Qt.TabFocusReason);
        compare(bench.requests(), []);
        mouseMove(slider, slider.width + 50, 11);
        mouseRelease(slider, slider.width + 50, 11);
        compare(bench.requests(), ["set 0 5616", "set 1 2040"]);
    }
    function test_linkedFansGetTheSameShare() {
        click("Lüfter synchron (%)");
        verify(bench.viewModel.linkFansInManualMode);
        const slider = bench.named(view, leftSlider);
        mouseDrag(slider, placeOf(slider, 3000), 11, 400, 0);
        compare(bench.viewModel.manualRPMFan0, 5616);
        compare(bench.viewModel.manualRPMFan1, 5200);
        click("Rechter Lüfter (GPU) auf 25%");
        compare(bench.viewModel.manualRPMFan1, 2575);
        compare(bench.viewModel.manualRPMFan0, 2781);
        click("Lüfter synchron (%)");
        click("Rechter Lüfter (GPU) auf 0%");
        compare(bench.viewModel.manualRPMFan0, 2781);
    }
    function test_presets_data() {
        return [
            { tag: "0%", rpm: 1200 },
            { tag: "25%", rpm: 2400 },
            { tag: "50%", rpm: 3600 },
            { tag: "75%", rpm: 4800 },
            { tag: "100%", rpm: 6000 },
        ];
    }
    function test_presets(row) {
        bench.setRange(0, 1200, 6000);
        bench.tick();
        click("Linker Lüfter (CPU) auf " + row.tag);
        compare(bench.requests(), ["set 0 " + row.rpm, "set 1 2040"]);
    }
    function test_applyButtonSendsWhatIsSet() {
        bench.viewModel.manualRPMFan1 = 3333;
        click("Rechter Lüfter (GPU) setzen");
        compare(bench.requests(), ["set 0 2150", "set 1 3333"]);
    }
    function test_keysMoveTheSlider() {
        const slider = bench.named(view, rightSlider);
        slider.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        compare(bench.viewModel.manualRPMFan1, 2100); // on the grid of 50 from 1700
        keyClick(Qt.Key_PageUp);
        compare(bench.viewModel.manualRPMFan1, 2600);
        compare(bench.requests(), [], "applied before the keys came to rest");
        tryVerify(() => bench.waitingTasks() > 0);
        compare(bench.requests(), ["set 0 2150", "set 1 2600"]);
        keyClick(Qt.Key_End);
        compare(bench.viewModel.manualRPMFan1, 5200);
        mouseWheel(slider, 50, 10, 0, -120);
        compare(bench.viewModel.manualRPMFan1, 5150, "the wheel does not turn the slider in focus");
    }

    function test_fitsEveryWidth_data() {
        return [
            { tag: "383", columns: 2, cards: 1 },
            { tag: "728", columns: 3, cards: 2 },
            { tag: "1188", columns: 6, cards: 2 },
            { tag: "140", columns: 1, cards: 1 },
        ];
    }
    function test_fitsEveryWidth(row) {
        view.width = Number(row.tag);
        const titles = ["System-Automatik", "Temperatur-Kurve", "Manuell", "Leise", "Ausgewogen", "Max / Turbo"];
        const cards = titles.map(title => bench.named(view, title));
        const top = cards[0].mapToItem(view, 0, 0).y;
        compare(cards.filter(card => card.mapToItem(view, 0, 0).y === top).length, row.columns);
        for (const card of cards) {
            const left = card.mapToItem(view, 0, 0).x;
            verify(left >= 0 && left + card.width <= view.width);
        }
        const left = bench.named(view, leftSlider).mapToItem(view, 0, 0);
        const right = bench.named(view, rightSlider).mapToItem(view, 0, 0);
        compare(left.y === right.y, row.cards === 2);
    }

    function test_chartShowsTheHistory() {
        for (let step = 0; step < 70; ++step) {
            bench.setTemperatures(40 + step / 2, 40, 20);
            bench.tick();
        }
        const chart = bench.named(view, "Zeit, Sensor: CPU °C, GPU °C");
        const points = chart.lines[0].points;
        compare(points.length, 60);
        compare(points[59].y, 74.5);
        compare(points[59].x - points[0].x, 118000);
        compare(chart.end, points[59].x);
        mouseMove(chart, chart.xOf(points[30].x) + 1, 60);
        tryVerify(() => shows("CPU " + points[30].y.toFixed(1) + " °C"));
        compare(chart.height, 150); // 22 % of 680
    }
}
