import QtQuick
import Ventaro.Views

TabTest {
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
        return named("Sensor oder SMC-Key filtern...");
    }
    function find() {
        keyClick(Qt.Key_F, Qt.ControlModifier);
    }

    function test_showsEverySensorInItsGroup() {
        expectTexts(["AppleSMC Hardware-Sensoren (41 aktiv)", "Echtzeit-Messwerte direkt aus dem Apple System Management Controller."]);
        compare(keys().length, 41);
        compare(titles(), groups);
        compare(bench.cutTexts(view), []);
    }
    function test_filter() {
        const isTurkish = Qt.locale().name.startsWith("tr");
        const found = { tc0: ["TC0F", "TC0E", "TC0P"], tGdD: ["TGDD"], "proximity ": ["TG0P", "TG1P"], "CPU-seite": ["Th1H"], " cpu": [], "nothing like it": [], "intel uhd": isTurkish ? [] : ["TCGC"], "INTEL UHD": ["TCGC"] };
        for (const text of Object.keys(found)) {
            view.sensorSearchText = text;
            compare(keys(), found[text], text);
            compare(titles().length, found[text].length > 0 ? 1 : 0, "a title without sensors");
            compare(shows("Kein Sensor passt zu „" + text + "“."), found[text].length === 0);
            verify(shows("AppleSMC Hardware-Sensoren (41 aktiv)"));
            compare(field().text, text);
            view.sensorSearchText = "";
            compare(keys().length, 41);
        }
    }
    function test_valuesChangeInTheirPlace() {
        const page = bench.scrollPage(view);
        const hot = named(hottest);
        const other = named("CPU Die (Filter), TC0F: 42.7 °C");
        page.scrollBy(300);
        bench.setTemperatures(97.25, 52.1, 31.8);
        bench.tick();
        compare(hot.valueText, "97.2 °C");
        compare(named("CPU Die (Filter), TC0F: 42.7 °C"), other);
        compare(page.contentY, 300);
    }
    function test_keys() {
        find();
        verify(field().activeFocus);
        press("tc");
        compare(view.sensorSearchText, "tc");
        press([Qt.Key_Tab, Qt.Key_Tab]);
        verify(named(hottest).activeFocus);
        keyClick(Qt.Key_Up);
        keyClick(Qt.Key_C, Qt.ControlModifier);
        compare(bench.clipboard(), "63.4 °C");
        keyClick(Qt.Key_Escape);
        compare(view.sensorSearchText, "");
        compare(field().text, "");
        keyClick(Qt.Key_Menu);
        tryVerify(() => bench.named(window, "Befehle"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => named(hottest).activeFocus, 1000, "the menu took the focus with it");
        press(Array(14).fill(Qt.Key_Down));
        verify(named("AMD Radeon Pro GPU Die, TGDD: 52.1 °C").activeFocus, "the arrows end at the group");
    }
    function test_menuCopies() {
        find();
        const page = bench.scrollPage(view);
        page.scrollBy(60);
        for (const [command, text] of [["Wert kopieren", "63.4 °C"], ["SMC-Key kopieren", "TCXC"]]) {
            chooseFromMenu(named(hottest), command);
            compare(bench.clipboard(), text);
            tryVerify(() => field().activeFocus);
            compare(page.contentY, 60, "the page went to the field");
        }
    }
    function test_theFieldInUseIsSeen() {
        const page = bench.scrollPage(view);
        const keys = (...keys) => () => press(keys);
        for (const [filter, use] of [["", find], ["", keys("t")], ["tc0", keys(Qt.Key_Escape)], ["tc0", () => click("Filter löschen")], ["tc0", keys(Qt.Key_Tab, Qt.Key_Escape)]]) {
            view.sensorSearchText = "";
            find();
            page.scrollBy(300 - page.contentY);
            view.sensorSearchText = filter;
            tryCompare(page, "contentY", filter ? 0 : 300);
            use();
            waitForRendering(view, 300);
            verify(field().activeFocus && field().mapToItem(view, 0, 0).y >= 0, use);
        }
    }
}
