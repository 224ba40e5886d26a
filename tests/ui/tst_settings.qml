import QtQuick
import Ventaro.Views

TabTest {
    readonly property string autostart: "Ventaro beim Start von macOS automatisch ausführen (Autostart)"

    name: "Settings"
    views: Component {
        SettingsContent {
            width: 588
        }
    }

    function test_wraps() {
        bench.setHelperAnswers(false);
        for (const [width, note, machine] of [[383, "", "MacBook Pro"], [588, "Simuliertes MacBook Pro", "Simuliertes MacBook Pro"], [588, "Kein AppleSMC gefunden", "Kein AppleSMC gefunden"]]) {
            view.machineNote = note;
            resize(width);
            compare(bench.cutTexts(view), [], width);
            const button = named("Helper installieren");
            const card = button.parent;
            verify(button.y + button.height < card.height && button.x + button.width < card.width, width);
            named("Binary: /Library/PrivilegedHelperTools/com.ventaro.helper · Socket: /var/run/com.ventaro.helper.sock");
            expectTexts(["Privilegierter Hintergrund-Helper & Einstellungen", "Auf dem MacBook Pro 16\" (2019) mit Apple T2 Security Chip akzeptiert der AppleSMC-Kernel-Treiber Schreibbefehle für F0Md/F1Md (Manueller Modus) und F0Tg/F1Tg (Ziel-RPM) ausschließlich von Prozessen mit Root-Rechten. Durch den LaunchDaemon ist keine erneute Passworteingabe beim App-Start nötig.", "Autostart & Sicherheits-Optionen", "Ventaro 0.1.0 · Helper-Protokoll 1 · " + machine]);
        }
    }
    function test_helper() {
        for (const [button, isActive, state] of [["Helper deinstallieren", true, "Hintergrund-Helper ist aktiv"], ["Helper installieren", false, "Hintergrund-Helper nicht installiert"]]) {
            bench.viewModel.dismissStatusMessage();
            bench.setHelperAnswers(isActive);
            verify(shows(state));
            click(button);
            compare(bench.waitingTasks(), 1);
            compare(named(button).enabled, isActive, "an installation shows that it is under way");
            bench.runTasks(); // without anybody to ask, both fail
            verify(bench.viewModel.isErrorStatus);
            verify(shows(state) && named(button).enabled);
        }
    }
    function test_switches() {
        const options = { launchAtLogin: autostart, startMinimized: "Beim Autostart minimiert in der Menüleiste starten (ohne Hauptfenster)", resetToAutoOnQuit: "Beim Beenden der App Lüfter automatisch auf macOS-Standard (Auto) zurücksetzen" };
        const before = Object.keys(options).map(property => bench.viewModel[property]);
        for (const property of Object.keys(options)) {
            const option = named(options[property]);
            for (const way of ["mouse", "assistive technology", "mouse"]) {
                const expected = !bench.viewModel[property];
                if (way === "mouse")
                    mouseClick(option);
                else
                    verify(bench.act(option, "Toggle"));
                compare([bench.viewModel[property], bench.isChecked(option)], [expected, expected]);
            }
        }
        view.destroy();
        wait(0);
        bench.restart();
        compare(Object.keys(options).map(property => !bench.viewModel[property]), before, "not kept");
        show();
    }
    function test_switchFollowsTheController() {
        bench.blockLoginItem();
        const option = named(autostart);
        bench.act(option, "Toggle");
        verify(bench.viewModel.isErrorStatus && bench.viewModel.launchAtLogin);
        compare(bench.isChecked(option), bench.viewModel.launchAtLogin);
        bench.viewModel.setLaunchAtLogin(false);
        verify(!bench.isChecked(option));
    }
}
