import QtQuick
import QtTest
import Ventaro.Test
import Ventaro.Views

TabTest {
    id: test

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
        for (const text of ["Ventaro", "CPU Max", "Radeon GPU", "Power", "63 °C", "52 °C", "31.8 W", "Linker Lüfter (CPU)", "2157 RPM", "2043 RPM", "Schnellwahl", "Beim macOS-Start automatisch öffnen", "Beenden"])
            verify(shows(text), text);
        compare(bench.texts(view).filter(text => text === "System-Automatik").length, 3);
        compare(bench.namelessControls(view), []);
        fuzzyCompare(view.implicitHeight, 484, 6);
    }
    function test_profiles() {
        for (const [title, requests] of [["Max / Turbo", ["set 0 5616", "set 1 5200"]], ["Leise", ["set 0 2403", "set 1 2225"]]]) {
            click(title);
            compare(bench.requests(), requests);
            compare(bench.texts(view)[1], title);
        }
        click("System-Automatik");
        compare(bench.requests(), ["reset"]);
    }
    function test_helperRow() {
        const height = view.implicitHeight;
        verify(!bench.named(view, "Root-Helper einmalig aktivieren"));
        bench.setHelperAnswers(false);
        waitForRendering(view, 300);
        fuzzyCompare(view.implicitHeight, height + 46, 1);
        click("Root-Helper einmalig aktivieren");
        verify(bench.viewModel.isInstallingHelper);
        click("Root-Helper einmalig aktivieren");
        compare(bench.waitingTasks(), 1, "pressed twice, installed twice");
    }
    function test_switchShowsWhatIs() {
        const login = bench.named(view, "Beim macOS-Start automatisch öffnen");
        verify(!login.isOn);
        mouseClick(login);
        verify(bench.viewModel.launchAtLogin && bench.isChecked(login));
        mouseClick(login);
        verify(!bench.viewModel.launchAtLogin && !login.isOn);
    }
    function test_whatTheShellIsAsked_data() {
        return [
            { tag: "Dashboard", signal: "openDashboardRequested", actions: 0 },
            { tag: "Beenden", signal: "quitRequested", actions: 0 },
            { tag: "Leise", signal: "actionStarted" },
        ];
    }
    function test_whatTheShellIsAsked(row) {
        spy.target = view;
        spy.clear();
        spy.signalName = row.signal;
        click(row.tag);
        compare(spy.count, 1);
        if (row.actions === 0)
            compare(bench.requests(), []);
    }
    function test_escapeCloses() {
        spy.target = view;
        spy.clear();
        spy.signalName = "closeRequested";
        bench.named(view, "Leise").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Escape);
        compare(spy.count, 1);
    }
}
