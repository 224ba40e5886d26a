import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Test
import Ventaro.Views

/// Tests of a view on a machine of its own, as a rule of a tab in the smallest dashboard.
TestCase {
    id: test

    property int tab
    property TestBench bench
    property Item view
    property Component views: Component {
        DashboardView {
            width: 620
            height: 480
            selectedTab: test.tab
        }
    }
    /// Whether tests begin when all is read that the tab asks for.
    property bool startsLoaded: true
    readonly property Item window: Window.contentItem

    when: windowShown
    visible: true
    width: 620
    height: 480

    Component {
        id: benches

        TestBench {}
    }

    function show() {
        view = views.createObject(test, { viewModel: bench.viewModel });
    }
    function init() {
        // Nothing slides away from under the mouse.
        Appearance.reducedMotion = true;
        bench = benches.createObject(test);
        bench.setProfile();
        show();
        if (startsLoaded)
            bench.runTasks();
        waitForRendering(view);
    }
    function cleanup() {
        view.destroy();
        bench.destroy();
        wait(0);
    }
    function click(name) {
        const item = bench.named(view, name);
        verify(item, name + " is not to be seen");
        mouseClick(item);
    }
    function chooseFromMenu(item, command) {
        mouseClick(item, item.width - 10, 6, Qt.RightButton);
        tryVerify(() => bench.named(window, command));
        mouseClick(bench.named(window, command));
        tryVerify(() => !bench.named(window, command));
    }
    function shows(text) {
        return bench.texts(view).indexOf(text) >= 0;
    }
}
