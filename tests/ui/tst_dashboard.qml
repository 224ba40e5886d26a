import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Test
import Ventaro.Views

TabTest {
    id: test

    name: "Dashboard"
    width: 980
    height: 680

    views: Component {
        DashboardView {
            width: 980
            height: 680
        }
    }

    function test_sidebarShowsTheMachine() {
        for (const text of ["Dashboard & Lüfter", "Temperatur-Kurve", "Alle Sensoren", "Hardware & Specs", "Helper & Info", "CPU Max", "Radeon GPU", "Lüfter Links", "Lüfter Rechts", "Leistung", "Ventaro", "MBP 16\" · i9-9880H · 5500M", "LIVE-STATUS", "Root aktiv", "63.4 °C", "52.1 °C", "2157 RPM", "2043 RPM", "31.8 W"])
            verify(shows(text), text);
        compare(bench.namelessControls(view), []);
    }
    function test_colourFollowsTheTemperature_data() {
        return [
            { tag: "54.9", band: TemperatureColor.Green },
            { tag: "55.0", band: TemperatureColor.Yellow },
            { tag: "70.0", band: TemperatureColor.Orange },
            { tag: "84.9", band: TemperatureColor.Orange },
            { tag: "85.0", band: TemperatureColor.Red },
        ];
    }
    function test_colourFollowsTheTemperature(row) {
        // As near to the limit as the sensor's own numbers come.
        bench.setTemperatures(Number(row.tag), 20, 10);
        bench.tick();
        const colors = [Theme.greenText, Theme.yellowText, Theme.orangeText, Theme.redText];
        compare(bench.named(view, "CPU Max: " + row.tag + " °C").valueColor, colors[row.band]);
    }

    function test_bannersComeAndGo() {
        const missing = "Hintergrund-Helper für SMC-Schreibzugriff noch nicht installiert.";
        const conflict = "Hinweis: 'Macs Fan Control' läuft parallel. Bitte dort auf 'Automatisch' stellen oder beenden, um SMC-Konflikte zu vermeiden.";
        verify(!shows(missing) && !shows(conflict));
        const title = bench.named(view, "Steuerungs-Modus & Schnell-Presets");
        const top = title.mapToItem(view, 0, 0).y;
        verify(top < 24, "the page does not begin with the tab");

        bench.setHelperAnswers(false);
        bench.setConflict(true);
        tryVerify(() => shows(missing) && shows(conflict) && shows("Lese-Modus"));
        compare(bench.waitingTasks(), 0);
        waitForRendering(view, 300);
        click("Helper installieren");
        verify(bench.viewModel.isInstallingHelper);
        const button = bench.named(view, "Helper installieren");
        verify(!button.enabled && button.width === 146, "the busy button keeps its width");
        mouseClick(button);
        compare(bench.waitingTasks(), 1);

        bench.runTasks(); // without anybody to ask, the installation fails
        tryVerify(() => bench.named(view, "Meldung schließen"));
        verify(bench.viewModel.isErrorStatus && shows(bench.viewModel.statusMessage));
        const dismiss = bench.named(view, "Meldung schließen");
        dismiss.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        verify(!bench.viewModel.hasStatusMessage);
        verify(bench.scrollPage(view).activeFocus, "the focus went with the banner");

        button.forceActiveFocus(Qt.TabFocusReason);
        bench.setHelperAnswers(true);
        keyClick(Qt.Key_Space);
        verify(!bench.viewModel.isInstallingHelper, "by a button that is going");
        bench.setConflict(false);
        tryVerify(() => title.mapToItem(view, 0, 0).y === top);
    }

    Window {
        id: other

        transientParent: null
    }
    function test_thePageStaysWhileTheWindowIsAway() {
        const page = bench.scrollPage(view);
        click("macOS-Auto");
        view.width = 620;
        view.height = 480;
        page.scrollBy(100);
        other.visible = true;
        other.requestActivate();
        tryVerify(() => !test.Window.window.activeFocusItem);
        other.visible = false;
        test.Window.window.requestActivate();
        tryVerify(() => bench.named(view, "macOS-Auto").activeFocus);
        compare(page.contentY, 100);
        bench.named(view, "Lüfter synchron (%)").forceActiveFocus(Qt.TabFocusReason);
        verify(page.contentY < 100);
    }

    function test_tabs() {
        verify(bench.viewModel.isOverviewTabVisible);
        compare(bench.waitingTasks(), 0, "showing the dashboard is no change of tab");
        click("Alle Sensoren");
        verify(bench.viewModel.isSensorsTabVisible && !bench.viewModel.isOverviewTabVisible);
        compare(bench.waitingTasks(), 1, "no readout of all sensors");
        click("Alle Sensoren");
        compare(bench.waitingTasks(), 1, "the same tab again is no change");
        bench.runTasks();

        click("Hardware & Specs");
        verify(!bench.viewModel.isSensorsTabVisible);
        verify(bench.viewModel.isLoadingHardwareInfo);
        click("Temperatur-Kurve");
        click("Hardware & Specs");
        bench.runTasks();
        const runs = bench.profilerRuns();
        verify(runs > 0);
        click("Helper & Info");
        click("Hardware & Specs");
        bench.runTasks();
        compare(bench.profilerRuns(), runs, "the inventory was loaded twice");
    }
    function test_keysChangeTheTab() {
        for (let tab = 4; tab >= 0; --tab) {
            keyClick(Qt.Key_1 + tab, Qt.ControlModifier);
            compare(view.selectedTab, tab);
        }
        verify(bench.act(bench.named(view, "Temperatur-Kurve"), "Press"));
        compare(view.selectedTab, DashboardTab.SmartCurve);
        bench.named(view, "Bereiche").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Up);
        compare(view.selectedTab, DashboardTab.Overview);
        keyClick(Qt.Key_Down);
        compare(view.selectedTab, DashboardTab.SmartCurve);
        keyClick(Qt.Key_Tab);
        verify(bench.named(view, "Breite der Seitenleiste").activeFocus, "the list is more than one stop");
    }

    function test_sidebarKeepsToItsLimits_data() {
        return [
            { tag: "usual", window: 980, drag: 0, width: 220 },
            { tag: "wide", window: 980, drag: 100, width: 245 },
            { tag: "narrow", window: 980, drag: -100, width: 205 },
            { tag: "small window", window: 620, drag: 0, width: 205 },
            { tag: "small window, dragged", window: 620, drag: 30, width: 205 },
        ];
    }
    function test_sidebarKeepsToItsLimits(row) {
        view.width = row.window;
        const edge = bench.named(view, "Breite der Seitenleiste");
        if (row.drag !== 0)
            mouseDrag(edge, 0, 300, row.drag, 0);
        compare(edge.x + edge.width, row.width);
    }
    function test_scrollsAndKeepsThePlacePerTab() {
        view.width = 620;
        view.height = 480;
        waitForRendering(view, 300);
        const slider = bench.named(view, "Regler Linker Lüfter (CPU)");
        const before = slider.mapToItem(view, 0, 0).y;
        const target = bench.viewModel.manualRPMFan0;
        mouseWheel(slider, 50, 10, 0, -240);
        const scrolled = slider.mapToItem(view, 0, 0).y;
        verify(scrolled < before, "the wheel over a slider does not scroll");
        compare(bench.viewModel.manualRPMFan0, target);
        for (const key of [Qt.Key_2, Qt.Key_3, Qt.Key_1]) {
            keyClick(key, Qt.ControlModifier);
            waitForRendering(view, 300);
        }
        compare(bench.named(view, "Regler Linker Lüfter (CPU)").mapToItem(view, 0, 0).y, scrolled);
        bench.named(view, "Linker Lüfter (CPU) setzen").forceActiveFocus(Qt.TabFocusReason);
        const button = bench.named(view, "Linker Lüfter (CPU) setzen").mapToItem(view, 0, 0).y;
        verify(button >= 0 && button < 460, "the focus is out of sight");
    }
    function test_whatIsPressedStaysUnderThePointer() {
        view.width = 620;
        view.height = 480;
        waitForRendering(view, 300);
        const page = bench.scrollPage(view);
        const button = bench.named(view, "Rechter Lüfter (GPU) auf 100%");
        page.scrollBy(button.mapToItem(page, 0, button.height / 2).y - page.height);
        const place = page.contentY;
        mousePress(button, 5, 5);
        verify(button.activeFocus && place > 0);
        compare(page.contentY, place);
        mouseRelease(button, 5, 5);
        verify(bench.requests().indexOf("set 1 5200") >= 0, "the click was lost");
    }
    function test_anEditEndsWithItsTab() {
        bench.named(view, "Regler Linker Lüfter (CPU)").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_2, Qt.ControlModifier);
        compare(bench.requests(), ["set 0 2186", "set 1 2040"], "the speed that was shown was never set");
    }
    function test_keysScrollThePage() {
        view.height = 480;
        const title = bench.named(view, "Steuerungs-Modus & Schnell-Presets");
        const before = title.mapToItem(view, 0, 0).y;
        bench.named(view, "Bereiche").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_PageDown);
        verify(title.mapToItem(view, 0, 0).y < before);
    }
    function test_withoutASmc() {
        view.destroy();
        bench.setRange(0, 0, 0);
        view = views.createObject(test, {
            viewModel: bench.viewModel,
            machineNote: "Kein AppleSMC gefunden",
            width: 980,
            height: 680
        });
        verify(shows("Kein AppleSMC gefunden"));
    }
}
