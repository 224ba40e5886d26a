import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Test
import Ventaro.Views

TestCase {
    id: test

    property TestBench bench
    property DashboardView view
    readonly property string loading: "Hardware-Informationen werden aus IOKit & System Profiler geladen..."
    readonly property string serial: "Seriennummer: C02SIMULATED"

    name: "Hardware"
    when: windowShown
    visible: true
    width: 620
    height: 480

    Component {
        id: benches

        TestBench {}
    }
    Component {
        id: views

        DashboardView {
            width: 620
            height: 480
        }
    }
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

    function init() {
        bench = benches.createObject(test);
        bench.setProfile();
        view = views.createObject(test, {
            viewModel: bench.viewModel
        });
        view.selectedTab = DashboardTab.Hardware;
    }
    function cleanup() {
        view.destroy();
        bench.destroy();
        wait(0);
    }
    function shows(text) {
        return bench.texts(view).indexOf(text) >= 0;
    }
    function refresh(profile) {
        bench.setProfile(profile);
        mouseClick(bench.named(view, "Aktualisieren"));
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
        verify(shows("BANK 0/ChannelA-DIMM0") && shows("0x7340 (Rev. 0x0040)"));
        compare(bench.namelessControls(view), []);
        mouseClick(bench.named(view, "Aktualisieren"));
        verify(!bench.named(view, "Aktualisieren").enabled && shows("BANK 0/ChannelA-DIMM0"));
    }
    function test_wrapsAtAnyWidth_data() {
        return [{ tag: "620" }, { tag: "980" }, { tag: "1440" }];
    }
    function test_wrapsAtAnyWidth(row) {
        view.width = Number(row.tag);
        bench.runTasks();
        waitForRendering(view);
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
        mouseClick(bench.named(view, "Alles kopieren"));
        verify(identifiers.test(bench.clipboard()));
        verify(bench.clipboard().startsWith("System & Logic Board\nMacBook Pro (MacBookPro16,1)\n  Modellname: MacBook Pro\n"));
        mouseClick(bench.named(view, "Seriennummern und UUID verbergen"));
        verify(!identifiers.test(bench.texts(view).join()));
        keyClick(Qt.Key_C, Qt.ControlModifier | Qt.ShiftModifier);
        verify(!identifiers.test(bench.clipboard()) && bench.clipboard().indexOf("••••") > 0);
        view.selectedTab = DashboardTab.Overview;
        view.selectedTab = DashboardTab.Hardware;
        verify(!bench.named(view, serial), "the mask went with the tab");
        mouseClick(bench.named(view, "Seriennummern und UUID zeigen"));
        verify(bench.named(view, serial));
    }
    function test_valuesAreCopied() {
        bench.runTasks();
        waitForRendering(view);
        const value = bench.named(view, serial);
        mouseDoubleClickSequence(value, value.width - 10, 6);
        keyClick(Qt.Key_C, Qt.ControlModifier);
        compare(bench.clipboard(), "C02SIMULATED");
        mouseClick(bench.named(view, "Hersteller: Apple Inc."), 200, 6, Qt.RightButton);
        const window = view.Window.window.contentItem;
        tryVerify(() => bench.named(window, "Wert kopieren"));
        mouseClick(bench.named(window, "Wert kopieren"));
        compare(bench.clipboard(), "Apple Inc.");
    }
}
