import QtQuick
import Ventaro.Style
import Ventaro.Views

TabTest {
    id: test

    readonly property string loading: "Hardware-Informationen werden aus IOKit & System Profiler geladen..."
    readonly property string serial: "Seriennummer: C02SIMULATED"

    Component {
        id: sections

        HardwareSectionCard {
            title: ""
            subtitle: ""
            symbol: ""
            specs: []
            subCards: []
        }
    }

    name: "Hardware"
    tab: DashboardTab.Hardware
    startsLoaded: false
    function refresh(profile) {
        bench.setProfile(profile);
        click("Aktualisieren");
        bench.runTasks();
    }

    function test_loading() {
        verify(shows(loading));
        verify(!bench.named(view, "Aktualisieren").enabled);
        verify(!bench.named(view, "Alles kopieren").enabled);
        bench.runTasks();
        verify(!shows(loading));
        const titles = ["System & Logic Board", "Prozessor (CPU)", "Arbeitsspeicher (RAM)", "Grafikkarten (Dual-GPU & Display)", "Festspeicher (NVMe SSD)", "Akku & Stromversorgung"];
        compare(bench.texts(view).filter(text => titles.indexOf(text) >= 0), titles);
        verify(shows("System-Hardware & Komponenten-Details") && shows("Vollständige Spezifikationen für CPU, Arbeitsspeicher (RAM), Dual-GPU, NVMe SSD, Logic Board und Akku."));
        verify(shows("BANK 0/ChannelA-DIMM0") && shows("0x7340 (Rev. 0x0040)"));
        compare(bench.namelessControls(view), []);
        click("Aktualisieren");
        verify(!bench.named(view, "Aktualisieren").enabled && shows("BANK 0/ChannelA-DIMM0"));
    }
    function test_wrapsAtAnyWidth_data() {
        return [{ tag: "620" }, { tag: "980" }, { tag: "1440" }];
    }
    function test_wrapsAtAnyWidth(row) {
        view.width = Number(row.tag);
        bench.runTasks();
        waitForRendering(view, 300);
        compare(bench.cutTexts(view), []);
    }
    function test_accent_data() {
        return [
            { tag: "orange", color: Theme.orangeText },
            { tag: "green", color: Theme.greenText },
            { tag: "purple", color: Theme.purpleText },
            { tag: "cyan", color: Theme.cyanText },
            { tag: "mint", color: Theme.mintText },
            { tag: "blue", color: Theme.accentText },
            { tag: "Orange", color: Theme.accentText },
            { tag: "toString", color: Theme.accentText },
        ];
    }
    function test_accent(row) {
        const card = sections.createObject(view, { accentName: row.tag });
        compare(card.accent[1], row.color);
        card.destroy();
    }
    function test_refreshChangesWhatIsNew() {
        bench.runTasks();
        const before = bench.named(view, serial);
        refresh("{}");
        verify(!bench.named(view, serial) && shows("AMD Radeon Pro 5500M + Intel UHD Graphics 630"));
        refresh("");
        const after = bench.named(view, serial);
        verify(after !== before);
        refresh("");
        compare(bench.named(view, serial), after, "the same inventory was shown anew");
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
        verify(bench.named(view, serial));
    }
    function test_valuesAreCopied() {
        bench.runTasks();
        waitForRendering(view, 300);
        const value = bench.named(view, serial);
        mouseDoubleClickSequence(value, value.width - 10, 6);
        keyClick(Qt.Key_C, Qt.ControlModifier);
        compare(bench.clipboard(), "C02SIMULATED");
        chooseFromMenu(bench.named(view, "Hersteller: Apple Inc."), "Wert kopieren");
        compare(bench.clipboard(), "Apple Inc.");
    }
    function test_aRowThatGoesWithItsMenuOpen() {
        bench.runTasks();
        waitForRendering(view, 300);
        const value = bench.named(view, serial);
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
    function test_keysReachEveryValue() {
        bench.runTasks();
        bench.named(view, "Aktualisieren").forceActiveFocus(Qt.TabFocusReason);
        const cpu = "Intel(R) Core(TM) i9-9880H CPU @ 2.30GHz";
        for (const [key, value] of [[Qt.Key_Tab, "MacBook Pro"], [Qt.Key_Tab, cpu], [Qt.Key_Up, "00000000-5151-5000-A000-0051AB1ED001"], [Qt.Key_Down, cpu]]) {
            keyClick(key);
            keyClick(Qt.Key_C, Qt.ControlModifier);
            compare(bench.clipboard(), value);
        }
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Menu);
        tryVerify(() => bench.named(window, "Wert kopieren"));
        mouseClick(bench.named(window, "Wert kopieren"));
        compare(bench.clipboard(), "GenuineIntel (Intel Coffee Lake-H Refresh, 14nm++)");
    }
}
