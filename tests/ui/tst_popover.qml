import QtQuick
import QtTest
import Ventaro.Views

TabTest {
    name: "Popover"
    width: 330
    height: 600

    views: Component {
        MenuBarPopoverView {}
    }
    SignalSpy {
        id: spy
    }

    function test_showsTheMachine() {
        expectTexts(["Ventaro", "CPU Max", "Radeon GPU", "Power", "63 °C", "52 °C", "31.8 W", "Linker Lüfter (CPU)", "2157 RPM", "2043 RPM", "Schnellwahl", "Beim macOS-Start automatisch öffnen", "Beenden"]);
        compare(bench.texts(view).filter(text => text === "System-Automatik").length, 3);
        fuzzyCompare(view.implicitHeight, 484, 6);
    }
    function test_profiles() {
        for (const [title, requests] of [["Max / Turbo", ["set 0 5616", "set 1 5200"]], ["Leise", ["set 0 2403", "set 1 2225"]], ["System-Automatik", ["reset"]]]) {
            click(title);
            compare(bench.requests(), requests);
            compare(bench.texts(view)[1], title);
        }
    }
    function test_helperRow() {
        const height = view.implicitHeight;
        const row = "Root-Helper einmalig aktivieren";
        verify(!bench.named(view, row));
        bench.setHelperAnswers(false);
        waitForRendering(view, 300);
        fuzzyCompare(view.implicitHeight, height + 46, 1);
        click(row);
        verify(bench.viewModel.isInstallingHelper);
        click(row);
        compare(bench.waitingTasks(), 1, "pressed twice, installed twice");
    }
    function test_switchShowsWhatIs() {
        const login = named("Beim macOS-Start automatisch öffnen");
        for (const isOn of [true, false]) {
            mouseClick(login);
            compare([bench.viewModel.launchAtLogin, login.isOn, bench.isChecked(login)], [isOn, isOn, isOn]);
        }
    }
    function test_whatTheShellIsAsked() {
        const leave = () => keyClick(Qt.Key_Escape);
        focusOn("Leise");
        for (const [signal, ask] of [["closeRequested", leave], ["openDashboardRequested", () => click("Dashboard")], ["quitRequested", () => click("Beenden")], ["actionStarted", () => click("Leise")]]) {
            spy.target = view;
            spy.signalName = signal;
            spy.clear();
            compare(bench.requests(), [], "before " + signal);
            ask();
            compare(spy.count, 1, signal);
        }
    }
}
