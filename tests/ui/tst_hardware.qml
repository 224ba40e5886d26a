import QtQuick
import Ventaro.Views

TabTest {
    readonly property string loading: "Hardware-Informationen werden aus IOKit & System Profiler geladen..."
    readonly property string serial: "Seriennummer: C02SIMULATED"

    name: "Hardware"
    tab: DashboardTab.Hardware
    startsLoaded: false
    function load() {
        bench.runTasks();
        waitForRendering(view, 300);
    }
    function refresh(profile) {
        bench.setProfile(profile);
        click("Aktualisieren");
        bench.runTasks();
    }

    function test_loading() {
        verify(shows(loading));
        verify(!named("Aktualisieren").enabled && !named("Alles kopieren").enabled);
        load();
        verify(!shows(loading));
        const titles = ["System & Logic Board", "Prozessor (CPU)", "Arbeitsspeicher (RAM)", "Grafikkarten (Dual-GPU & Display)", "Festspeicher (NVMe SSD)", "Akku & Stromversorgung"];
        compare(bench.texts(view).filter(text => titles.indexOf(text) >= 0), titles);
        expectTexts(["System-Hardware & Komponenten-Details", "Vollständige Spezifikationen für CPU, Arbeitsspeicher (RAM), Dual-GPU, NVMe SSD, Logic Board und Akku.", "BANK 0/ChannelA-DIMM0", "0x7340 (Rev. 0x0040)"]);
        for (const width of [620, 980, 1440]) {
            resize(width);
            compare(bench.cutTexts(view), [], width);
        }
        click("Aktualisieren");
        verify(!named("Aktualisieren").enabled && shows("BANK 0/ChannelA-DIMM0"));
    }
    function test_refreshChangesWhatIsNew() {
        bench.runTasks();
        const before = named(serial);
        refresh("{}");
        verify(!bench.named(view, serial) && shows("AMD Radeon Pro 5500M + Intel UHD Graphics 630"));
        refresh("");
        const after = named(serial);
        verify(after !== before);
        refresh("");
        compare(named(serial), after, "the same inventory was shown anew");
    }
    function test_maskAndCopy() {
        bench.runTasks();
        const identifiers = /C02SIMULATED|SIMULATED0|00000000-5151-5000-A000/;
        click("Alles kopieren");
        verify(identifiers.test(bench.clipboard()));
        verify(bench.clipboard().startsWith("System & Logic Board\nMacBook Pro (MacBookPro16,1)\n  Modellname: MacBook Pro\n"));
        click("Seriennummern und UUID verbergen");
        verify(!identifiers.test(bench.texts(view).join()));
        keyClick(Qt.Key_C, Qt.ControlModifier | Qt.ShiftModifier);
        verify(!identifiers.test(bench.clipboard()) && bench.clipboard().indexOf("••••") > 0);
        view.selectedTab = DashboardTab.Overview;
        view.selectedTab = DashboardTab.Hardware;
        verify(!bench.named(view, serial), "the mask went with the tab");
        click("Seriennummern und UUID zeigen");
        verify(shows("C02SIMULATED"));
    }
    function test_valuesAreCopied() {
        load();
        const value = named(serial);
        mouseDoubleClickSequence(value, value.width - 10, 6);
        keyClick(Qt.Key_C, Qt.ControlModifier);
        compare(bench.clipboard(), "C02SIMULATED");
        chooseFromMenu(named("Hersteller: Apple Inc."), "Wert kopieren");
        compare(bench.clipboard(), "Apple Inc.");
        focusOn("Aktualisieren");
        const cpu = "Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz";
        for (const [key, text] of [[Qt.Key_Tab, "MacBook Pro"], [Qt.Key_Tab, cpu], [Qt.Key_Up, "00000000-5151-5000-A000-0051AB1ED001"], [Qt.Key_Down, cpu]]) {
            keyClick(key);
            keyClick(Qt.Key_C, Qt.ControlModifier);
            compare(bench.clipboard(), text);
        }
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Menu);
        tryVerify(() => bench.named(window, "Wert kopieren"));
        mouseClick(bench.named(window, "Wert kopieren"));
        compare(bench.clipboard(), "GenuineIntel (Intel Coffee Lake-H Refresh, 14nm++)");
    }
    function test_aRowThatGoesWithItsMenuOpen() {
        load();
        const value = named(serial);
        mouseClick(value, value.width - 10, 6);
        mouseClick(value, value.width - 10, 6, Qt.RightButton);
        tryVerify(() => bench.named(window, "Befehle"));
        bench.setProfile("{}");
        bench.viewModel.refreshHardwareSpecs();
        bench.runTasks();
        tryVerify(() => !bench.named(window, "Befehle"));
        keyClick(Qt.Key_End);
        const page = bench.scrollPage(view);
        compare(page.contentY, page.maximumY);
    }
}
