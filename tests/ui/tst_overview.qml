import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Views

TabTest {
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
        expectTexts(["Steuerungs-Modus & Schnell-Presets", "Lüfter synchron (%)", "macOS-Auto", "System-Automatik", "Standard macOS SMC-Steuerung", "Temperatur-Kurve", "Dynamisch nach CPU/GPU-Temperatur", "Manuell", "Individuelle RPM pro Lüfter", "Leise", "Minimale Drehzahl (~20%)", "Ausgewogen", "Mittlere Kühlung (~50%)", "Max / Turbo", "Maximale Kühlleistung (100%)", "1836–5616 RPM", "2157", "RPM", "Ziel: 2150 RPM · 8%", "Regler:", "0%", "25%", "50%", "75%", "100%", "Setzen", "Auto", "Live-Verlauf (Letzte 2 Min.)", "CPU & Radeon GPU (°C)", "Lüfterdrehzahl (RPM)", "Links", "Rechts"]);
    }
    function test_profiles() {
        const profiles = { "System-Automatik": ["reset"], Manuell: ["set 0 2150", "set 1 2040"], Leise: ["set 0 2403", "set 1 2225"], Ausgewogen: ["set 0 3726", "set 1 3450"], "Max / Turbo": ["set 0 5616", "set 1 5200"], "Temperatur-Kurve": ["set 0 3291", "set 1 3048"] };
        for (const title of Object.keys(profiles)) {
            click(title);
            compare(bench.requests(), profiles[title], title);
            verify(bench.isChecked(named(title)));
            click("macOS-Auto");
            compare(bench.requests(), ["reset"]);
            verify(bench.isChecked(named("System-Automatik")));
        }
    }

    function test_fanCardFollowsTheFan() {
        for (const [minimum, maximum, current, target, forced, line, fill] of [
            [3000, 3000, 3100, 3000.5, true, "Ziel: 3001 RPM · 0%", "cyan"],
            [1836, 5616, 2157.9, 2150.4, false, "Ziel: 2150 RPM · 9%", "cyan"],
            [1000, 2000, 1550, 1550, true, "Ziel: 1550 RPM · 55%", "orange"],
            [1000, 2000, 1850, 1850, true, "Ziel: 1850 RPM · 85%", "red"],
            [1000, 2000, 2500, 2000, false, "Ziel: 2000 RPM · 100%", "red"],
        ]) {
            bench.setRange(0, minimum, maximum);
            bench.setFan(0, current, target, forced);
            bench.tick();
            expectTexts([minimum + "–" + maximum + " RPM", line, String(Math.trunc(current))]);
            const modes = bench.texts(view).filter(text => text === "Auto" || text === "Manuell");
            compare(modes[1], forced ? "Manuell" : "Auto"); // behind the profile's title
            compare(named("Auslastung " + line.match(/(\d+)%/)[1] + " %").fill, Theme[fill]);
        }
    }

    function compareTargets(left, right) {
        compare([bench.viewModel.manualRPMFan0, bench.viewModel.manualRPMFan1], [left, right]);
    }
    function test_moveWritesAndReleaseApplies() {
        const slider = named(leftSlider);
        const knob = placeOf(slider, 2150);
        mousePress(slider, knob - 5, 11);
        compareTargets(2150, 2040);
        mouseMove(slider, knob + 15, 11); // the knob follows from where it was taken
        fuzzyCompare(bench.viewModel.manualRPMFan0, 2150 + 20 * (5616 - 1836) / (slider.width - 14), 50);
        keyClick(Qt.Key_Right);
        focusOn(rightSlider);
        compare(bench.requests(), [], "a key has ended the drag");
        mouseMove(slider, slider.width + 50, 11);
        mouseRelease(slider, slider.width + 50, 11);
        compare(bench.requests(), ["set 0 5616", "set 1 2040"]);

        mousePress(slider, placeOf(slider, 3000), 11);
        mouseMove(slider, placeOf(slider, 4104), 11);
        compareTargets(4086, 2040); // 45 steps of 50 from 1836
        verify(shows("4086 RPM"), "nothing tells the speed while dragging");
        compare(bench.requests(), []);
        mouseRelease(slider, placeOf(slider, 4104), 11);
        compare(bench.requests(), ["set 0 4086", "set 1 2040"]);
        verify(named("Manuell").isActive);
        compare(bench.accessibleValue(slider), 4086);
    }
    function test_linkedFansGetTheSameShare() {
        click("Lüfter synchron (%)");
        verify(bench.viewModel.linkFansInManualMode);
        const slider = named(leftSlider);
        mouseDrag(slider, placeOf(slider, 3000), 11, 400, 0);
        compareTargets(5616, 5200);
        click("Rechter Lüfter (GPU) auf 25%");
        compareTargets(2781, 2575);
        click("Lüfter synchron (%)");
        click("Rechter Lüfter (GPU) auf 0%");
        compareTargets(2781, 1700);
    }
    function test_presets() {
        bench.setRange(0, 1200, 6000);
        bench.tick();
        for (const [percent, rpm] of [[0, 1200], [25, 2400], [50, 3600], [75, 4800], [100, 6000]]) {
            click("Linker Lüfter (CPU) auf " + percent + "%");
            compare(bench.requests(), ["set 0 " + rpm, "set 1 2040"]);
        }
        bench.viewModel.manualRPMFan1 = 3333;
        click("Rechter Lüfter (GPU) setzen");
        compare(bench.requests(), ["set 0 6000", "set 1 3333"]);
    }
    function test_keysMoveTheSlider() {
        const slider = named(rightSlider);
        focusOn(rightSlider);
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

    function test_fitsEveryWidth() {
        const titles = ["System-Automatik", "Temperatur-Kurve", "Manuell", "Leise", "Ausgewogen", "Max / Turbo"];
        for (const [width, columns, cards] of [[383, 2, 1], [728, 3, 2], [1188, 6, 2], [140, 1, 1]]) {
            resize(width);
            compare(titles.filter(title => topOf(title) === topOf(titles[0])).length, columns, width);
            for (const title of titles) {
                const left = named(title).mapToItem(view, 0, 0).x;
                verify(left >= 0 && left + named(title).width <= width, title);
            }
            compare(topOf(leftSlider) === topOf(rightSlider), cards === 2, width);
        }
    }

    function test_chartShowsTheHistory() {
        for (let step = 0; step < 70; ++step) {
            bench.setTemperatures(40 + step / 2, 40, 20);
            bench.tick();
        }
        const chart = named("Zeit, Sensor: CPU °C, GPU °C");
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
