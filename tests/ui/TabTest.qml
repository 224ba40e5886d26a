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
            width: test.width
            height: test.height
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

    function show(properties = {}) {
        view = views.createObject(test, Object.assign({ viewModel: bench.viewModel }, properties));
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
    function resize(width, height = view.height) {
        view.width = width;
        view.height = height;
        waitForRendering(view, 300);
    }
    function named(name) {
        const item = bench.named(view, name);
        verify(item, name + " is not to be seen");
        return item;
    }
    /// As far down as it is in the view.
    function topOf(name) {
        return named(name).mapToItem(view, 0, 0).y;
    }
    function click(name) {
        mouseClick(named(name));
    }
    /// Brings the focus there, as a key does.
    function focusOn(name) {
        named(name).forceActiveFocus(Qt.TabFocusReason);
    }
    /// Each of the keys, or letters, after the other.
    function press(keys, modifiers = Qt.NoModifier) {
        for (const key of keys)
            keyClick(key, modifiers);
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
    /// All of them are there, and every control has a name.
    function expectTexts(texts) {
        compare(texts.filter(text => !shows(text)), []);
        compare(bench.namelessControls(view), []);
    }
}
