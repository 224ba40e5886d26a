import QtQuick
import Ventaro.Views

TabTest {
    id: test

    readonly property string hottest: "CPU PECI Package (Max), TCXC: 63.4 °C"
    readonly property list<string> groups: ["CPU", "GPU", "KÜHLSYSTEM & GEHÄUSE", "BOARD & SSD", "AKKU", "LEISTUNG (WATT)"]

    name: "Sensors"
    tab: DashboardTab.Sensors
    function titles() {
        return bench.texts(view).filter(text => groups.indexOf(text) >= 0);
    }
    function keys() {
        return bench.texts(view).filter(text => /^[TPVI][A-Za-z0-9]{3}$/.test(text));
    }
    function field() {
        return bench.named(view, "Sensor oder SMC-Key filtern...");
    }

    function test_showsEverySensorInItsGroup() {
        verify(shows("AppleSMC Hardware-Sensoren (41 aktiv)"));
        verify(shows("Echtzeit-Messwerte direkt aus dem Apple System Management Controller."));
        compare(keys().length, 41);
        compare(titles(), groups);
        compare(bench.cutTexts(view), []);
        compare(bench.namelessControls(view), []);
    }
    function test_filter_data() {
        const isTurkish = Qt.locale().name.startsWith("tr");
        return [
            { tag: "tc0", keys: ["TC0F", "TC0E", "TC0P"] },
            { tag: "tGdD", keys: ["TGDD"] },
            { tag: "proximity ", keys: ["TG0P", "TG1P"] },
            { tag: "CPU-seite", keys: ["Th1H"] },
            { tag: " cpu", keys: [] },
            { tag: "nothing like it", keys: [] },
            { tag: "intel uhd", keys: isTurkish ? [] : ["TCGC"] },
            { tag: "INTEL UHD", keys: ["TCGC"] },
        ];
    }
    function test_filter(row) {
        view.sensorSearchText = row.tag;
        compare(keys(), row.keys);
        compare(titles().length, row.keys.length > 0 ? 1 : 0, "a title without sensors");
        compare(shows("Kein Sensor passt zu „" + row.tag + "“."), row.keys.length === 0);
        verify(shows("AppleSMC Hardware-Sensoren (41 aktiv)"));
        compare(field().text, row.tag);
        view.sensorSearchText = "";
        compare(keys().length, 41);
    }
    function test_valuesChangeInTheirPlace() {
        const page = bench.scrollPage(view);
        const hot = bench.named(view, hottest);
        const other = bench.named(view, "CPU Die (Filter), TC0F: 42.7 °C");
        page.scrollBy(300);
        bench.setTemperatures(97.25, 52.1, 31.8);
        bench.tick();
        compare(hot.valueText, "97.2 °C");
        compare(bench.named(view, "CPU Die (Filter), TC0F: 42.7 °C"), other);
        compare(page.contentY, 300);
    }
    function test_keys() {
        keyClick(Qt.Key_F, Qt.ControlModifier);
        verify(field().activeFocus);
        keyClick("t");
        keyClick("c");
        compare(view.sensorSearchText, "tc");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Tab);
        verify(bench.named(view, hottest).activeFocus);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_C, Qt.ControlModifier);
        compare(bench.clipboard(), "63.4 °C");
        keyClick(Qt.Key_Escape);
        compare(view.sensorSearchText, "");
        compare(field().text, "");
        keyClick(Qt.Key_Menu);
        tryVerify(() => bench.named(window, "Befehle"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => bench.named(view, hottest).activeFocus, 1000, "the menu took the focus with it");
        for (let row = 0; row < 14; ++row)
            keyClick(Qt.Key_Down);
        verify(bench.named(view, "AMD Radeon Pro GPU Die, TGDD: 52.1 °C").activeFocus, "the arrows end at the group");
    }
    function test_menuCopies_data() {
        return [{ tag: "Wert kopieren", text: "63.4 °C" }, { tag: "SMC-Key kopieren", text: "TCXC" }];
    }
    function test_menuCopies(row) {
        keyClick(Qt.Key_F, Qt.ControlModifier);
        const page = bench.scrollPage(view);
        page.scrollBy(60);
        chooseFromMenu(bench.named(view, hottest), row.tag);
        compare(bench.clipboard(), row.text);
        tryVerify(() => field().activeFocus);
        compare(page.contentY, 60, "the page went to the field");
    }
    function test_theFieldInUseIsSeen_data() {
        return [
            { tag: "Ctrl+F", use: () => keyClick(Qt.Key_F, Qt.ControlModifier) },
            { tag: "typing", use: () => keyClick("t") },
            { tag: "Escape", filter: "tc0", use: () => keyClick(Qt.Key_Escape) },
            { tag: "button", filter: "tc0", use: () => click("Filter löschen") },
            { tag: "Escape on the button", filter: "tc0", use: () => {
                keyClick(Qt.Key_Tab);
                keyClick(Qt.Key_Escape);
            } },
        ];
    }
    function test_theFieldInUseIsSeen(row) {
        const page = bench.scrollPage(view);
        keyClick(Qt.Key_F, Qt.ControlModifier);
        page.scrollBy(300);
        view.sensorSearchText = row.filter ?? "";
        tryVerify(() => page.contentY === (row.filter ? 0 : 300));
        row.use();
        waitForRendering(view, 300);
        verify(field().activeFocus && field().mapToItem(view, 0, 0).y >= 0);
    }
}
