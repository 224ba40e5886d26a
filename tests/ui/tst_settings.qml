import QtQuick
import Ventaro.Views

TabTest {
    id: test

    readonly property string autostart: "Ventaro beim Start von macOS automatisch ausführen (Autostart)"

    name: "Settings"
    views: Component {
        SettingsContent {
            width: 588
        }
    }

    function test_wraps_data() {
        return [
            { tag: "narrow", width: 383, note: "", machine: "MacBook Pro" },
            { tag: "wide", width: 588, note: "Simuliertes MacBook Pro", machine: "Simuliertes MacBook Pro" },
            { tag: "no SMC", width: 588, note: "Kein AppleSMC gefunden", machine: "Kein AppleSMC gefunden" },
        ];
    }
    function test_wraps(row) {
        view.width = row.width;
        view.machineNote = row.note;
        bench.setHelperAnswers(false);
        waitForRendering(view, 300);
        compare(bench.cutTexts(view), []);
        compare(bench.namelessControls(view), []);
        const button = bench.named(view, "Helper installieren");
        const card = button.parent;
        verify(button.y + button.height < card.height && button.x + button.width < card.width);
        verify(bench.named(view, "Binary: /Library/PrivilegedHelperTools/com.ventaro.helper · Socket: /var/run/com.ventaro.helper.sock"));
        for (const text of ["Privilegierter Hintergrund-Helper & Einstellungen", "Auf dem MacBook Pro 16\" (2019) mit Apple T2 Security Chip akzeptiert der AppleSMC-Kernel-Treiber Schreibbefehle für F0Md/F1Md (Manueller Modus) und F0Tg/F1Tg (Ziel-RPM) ausschließlich von Prozessen mit Root-Rechten. Durch den LaunchDaemon ist keine erneute Passworteingabe beim App-Start nötig.", "Autostart & Sicherheits-Optionen", "Ventaro 0.1.0 · Helper-Protokoll 1 · " + row.machine])
            verify(shows(text), text);
    }
    function test_helper_data() {
        return [
            { tag: "Helper deinstallieren", active: true, state: "Hintergrund-Helper ist aktiv" },
            { tag: "Helper installieren", active: false, state: "Hintergrund-Helper nicht installiert" },
        ];
    }
    function test_helper(row) {
        bench.setHelperAnswers(row.active);
        verify(shows(row.state));
        click(row.tag);
        compare(bench.waitingTasks(), 1);
        compare(bench.named(view, row.tag).enabled, row.active, "an installation shows that it is under way");
        bench.runTasks(); // without anybody to ask, both fail
        verify(bench.viewModel.isErrorStatus);
        verify(shows(row.state) && bench.named(view, row.tag).enabled);
    }
    function test_switches_data() {
        return [
            { tag: autostart, property: "launchAtLogin" },
            { tag: "Beim Autostart minimiert in der Menüleiste starten (ohne Hauptfenster)", property: "startMinimized" },
            { tag: "Beim Beenden der App Lüfter automatisch auf macOS-Standard (Auto) zurücksetzen", property: "resetToAutoOnQuit" },
        ];
    }
    function test_switches(row) {
        const before = bench.viewModel[row.property];
        const option = bench.named(view, row.tag);
        for (const expected of [!before, before, !before]) {
            if (expected === before)
                verify(bench.act(option, "Toggle"));
            else
                mouseClick(option);
            compare(bench.viewModel[row.property], expected);
            compare(bench.isChecked(option), expected);
        }
        view.destroy();
        wait(0);
        bench.restart();
        compare(bench.viewModel[row.property], !before, "not kept");
        show();
    }
    function test_switchFollowsTheController() {
        bench.blockLoginItem();
        const option = bench.named(view, autostart);
        bench.act(option, "Toggle");
        verify(bench.viewModel.isErrorStatus && bench.viewModel.launchAtLogin);
        compare(bench.isChecked(option), bench.viewModel.launchAtLogin);
        bench.viewModel.setLaunchAtLogin(false);
        verify(!bench.isChecked(option));
    }
}
