import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Views

TabTest {
    readonly property string heading: "Steuerungs-Modus & Schnell-Presets"
    readonly property string edge: "Breite der Seitenleiste"

    name: "Dashboard"
    width: 980
    height: 680

    function test_sidebarShowsTheMachine() {
        expectTexts(["Dashboard & Lüfter", "Temperatur-Kurve", "Alle Sensoren", "Hardware & Specs", "Helper & Info", "CPU Max", "Radeon GPU", "Lüfter Links", "Lüfter Rechts", "Leistung", "Ventaro", "MBP 16\" · i9-9880H · 5500M", "LIVE-STATUS", "Root aktiv", "63.4 °C", "52.1 °C", "2157 RPM", "2043 RPM", "31.8 W"]);
        // The colour is another one as near to the limit as the sensor's own numbers come.
        for (const [celsius, color] of [["54.9", Theme.greenText], ["70.0", Theme.orangeText], ["55.0", Theme.yellowText], ["84.9", Theme.orangeText], ["54.0", Theme.greenText], ["85.0", Theme.redText]]) {
            bench.setTemperatures(Number(celsius), 20, 10);
            bench.tick();
            compare(named("CPU Max: " + celsius + " °C").valueColor, color);
        }
        view.destroy();
        bench.setRange(0, 0, 0);
        show({ machineNote: "Kein AppleSMC gefunden" });
        verify(shows("Kein AppleSMC gefunden"));
    }

    function test_bannersComeAndGo() {
        const missing = "Hintergrund-Helper für SMC-Schreibzugriff noch nicht installiert.";
        const conflict = "Hinweis: 'Macs Fan Control' läuft parallel. Bitte dort auf 'Automatisch' stellen oder beenden, um SMC-Konflikte zu vermeiden.";
        verify(!shows(missing) && !shows(conflict));
        const top = topOf(heading);
        verify(top < 24, "the page does not begin with the tab");

        bench.setHelperAnswers(false);
        bench.setConflict(true);
        tryVerify(() => shows(missing) && shows(conflict) && shows("Lese-Modus"));
        compare(bench.waitingTasks(), 0);
        waitForRendering(view, 300);
        click("Helper installieren");
        verify(bench.viewModel.isInstallingHelper);
        const button = named("Helper installieren");
        verify(!button.enabled && button.width === 146, "the busy button keeps its width");
        mouseClick(button);
        compare(bench.waitingTasks(), 1);

        bench.runTasks(); // without anybody to ask, the installation fails
        tryVerify(() => bench.named(view, "Meldung schließen"));
        verify(bench.viewModel.isErrorStatus && shows(bench.viewModel.statusMessage));
        focusOn("Meldung schließen");
        keyClick(Qt.Key_Space);
        verify(!bench.viewModel.hasStatusMessage);
        verify(bench.scrollPage(view).activeFocus, "the focus went with the banner");

        focusOn("Helper installieren");
        bench.setHelperAnswers(true);
        keyClick(Qt.Key_Space);
        verify(!bench.viewModel.isInstallingHelper, "by a button that is going");
        bench.setConflict(false);
        tryVerify(() => topOf(heading) === top);
    }

    function test_whatIsNotSoIsNotShown() {
        bench.setTemperatures(-127, 52.1, 10);
        bench.tick(); // a sweep, which finds another sensor
        bench.tick();
        compare(named("CPU Max: – °C").valueColor, Theme.textSecondary);
        verify(shows("52.1 °C"));
        bench.setTemperatures(60, 52.1, 10);

        const foreign = "Die Lüfter stehen auf fester Drehzahl, werden aber nicht von hier gesteuert.";
        bench.setFan(0, 3000, 3000, true);
        bench.tick();
        verify(!shows(foreign), "one readout may be the end of something");
        bench.tick();
        tryVerify(() => shows(foreign) && shows("Nicht in Kraft"));
        click("Auf Automatik");
        compare(bench.requests(), ["reset"]);
        bench.setFan(0, 3000, 3000, false);
        bench.tick();
        tryVerify(() => !shows(foreign) && !shows("Nicht in Kraft"));

        bench.setHelper("0.0.9", true);
        tryVerify(() => shows("Helper erneuern") && shows(bench.viewModel.guardText));
        verify(bench.viewModel.guardText.startsWith("Der Rechner war zu heiß"));
        bench.setHelperAnswers(true);
        tryVerify(() => !shows("Helper erneuern") && bench.viewModel.guardText === "");
    }

    function test_thePageStaysWhileTheWindowIsAway() {
        const page = bench.scrollPage(view);
        click("macOS-Auto");
        resize(620, 480);
        page.scrollBy(100);
        bench.leaveAndReturn(view);
        tryVerify(() => named("macOS-Auto").activeFocus);
        compare(page.contentY, 100);
        focusOn("Lüfter synchron (%)");
        verify(page.contentY < 100);
    }

    function test_tabs() {
        verify(bench.viewModel.isOverviewTabVisible);
        compare(bench.waitingTasks(), 0, "showing the dashboard is no change of tab");
        for (const repeat of ["no readout of all sensors", "the same tab again is no change"]) {
            click("Alle Sensoren");
            verify(bench.viewModel.isSensorsTabVisible && !bench.viewModel.isOverviewTabVisible);
            compare(bench.waitingTasks(), 1, repeat);
        }
        bench.runTasks();

        click("Hardware & Specs");
        verify(!bench.viewModel.isSensorsTabVisible && bench.viewModel.isLoadingHardwareInfo);
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
        verify(bench.act(named("Temperatur-Kurve"), "Press"));
        compare(view.selectedTab, DashboardTab.SmartCurve);
        focusOn("Bereiche");
        keyClick(Qt.Key_Up);
        compare(view.selectedTab, DashboardTab.Overview);
        keyClick(Qt.Key_Down);
        compare(view.selectedTab, DashboardTab.SmartCurve);
        keyClick(Qt.Key_Tab);
        verify(named(edge).activeFocus, "the list is more than one stop");
    }

    function test_sidebarKeepsToItsLimits() {
        for (const [width, drag, expected] of [[980, 0, 220], [980, 100, 245], [980, -100, 205], [620, 0, 205], [620, 30, 205]]) {
            resize(width);
            if (drag !== 0)
                mouseDrag(named(edge), 0, 300, drag, 0);
            compare(named(edge).x + named(edge).width, expected, "dragged by " + drag + " at " + width);
        }
    }
    function test_scrollsAndKeepsThePlacePerTab() {
        resize(620, 480);
        const slider = "Regler Linker Lüfter (CPU)";
        const before = topOf(slider);
        const target = bench.viewModel.manualRPMFan0;
        mouseWheel(named(slider), 50, 10, 0, -240);
        const scrolled = topOf(slider);
        verify(scrolled < before, "the wheel over a slider does not scroll");
        compare(bench.viewModel.manualRPMFan0, target);
        for (const key of [Qt.Key_2, Qt.Key_3, Qt.Key_1]) {
            keyClick(key, Qt.ControlModifier);
            waitForRendering(view, 300);
        }
        compare(topOf(slider), scrolled);
        focusOn("Linker Lüfter (CPU) setzen");
        const button = topOf("Linker Lüfter (CPU) setzen");
        verify(button >= 0 && button < 460, "the focus is out of sight");
        const top = topOf(slider);
        focusOn("Bereiche");
        keyClick(Qt.Key_PageDown);
        verify(topOf(slider) < top);
    }
    function test_whatIsPressedStaysUnderThePointer() {
        resize(620, 480);
        const page = bench.scrollPage(view);
        const button = named("Rechter Lüfter (GPU) auf 100%");
        page.scrollBy(button.mapToItem(page, 0, button.height / 2).y - page.height);
        const place = page.contentY;
        mousePress(button, 5, 5);
        verify(button.activeFocus && place > 0);
        compare(page.contentY, place);
        mouseRelease(button, 5, 5);
        verify(bench.requests().indexOf("set 1 5200") >= 0, "the click was lost");
    }
    function test_anEditEndsWithItsTab() {
        focusOn("Regler Linker Lüfter (CPU)");
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_2, Qt.ControlModifier);
        compare(bench.requests(), ["set 0 2186", "set 1 2040"], "the speed that was shown was never set");
    }
}
