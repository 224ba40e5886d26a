import QtQuick
import QtTest
import Ventaro.Style
import Ventaro.Test

TestCase {
    id: test

    name: "Style"
    when: windowShown
    visible: true
    width: 400
    height: 200

    /// `top` laid over `bottom`.
    function over(top, bottom) {
        const mix = channel => top[channel] * top.a + bottom[channel] * (1 - top.a);
        return Qt.rgba(mix("r"), mix("g"), mix("b"), 1);
    }
    /// The relative luminance of WCAG 2.
    function luminance(color) {
        const linear = value => value <= 0.04045 ? value / 12.92 : Math.pow((value + 0.055) / 1.055, 2.4);
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }
    function contrast(a, b) {
        const values = [luminance(a), luminance(b)].sort((x, y) => y - x);
        return (values[0] + 0.05) / (values[1] + 0.05);
    }

    function test_contrast_data() {
        return [{ tag: "light", dark: false }, { tag: "dark", dark: true }];
    }
    function test_contrast(row) {
        Appearance.dark = row.dark;
        const t = Theme;
        const block = over(t.blockTint, t.sidebar);
        const fanRow = over(t.blockTint, t.popover);
        const banner = (base, opacity) => over(t.tint(base, opacity), t.window);
        const pairs = [];
        for (const ground of [t.window, t.sidebar, t.card, t.popover, block, fanRow, over(t.controlFill, t.window), over(t.controlPressed, t.window), banner(t.orange, 0.14), banner(t.yellow, 0.12), banner(t.red, 0.10), banner(t.green, 0.10)])
            pairs.push([t.textPrimary, ground]);
        for (const ground of [t.window, t.sidebar, t.card, t.popover, block, over(t.tint(t.accentFill, 0.10), t.card), over(t.tint(t.orange, 0.10), t.popover), over(t.tint(t.purple, 0.10), t.popover), over(t.tint(t.green, 0.10), t.popover)])
            pairs.push([t.textSecondary, ground]);
        for (const color of [t.greenText, t.yellowText, t.orangeText, t.redText, t.cyanText])
            pairs.push([color, block]);
        pairs.push([t.textTertiary, t.card], [t.textTertiary, t.window], [t.textTertiary, t.field], [t.cyanText, fanRow], [t.accentText, t.card]);
        pairs.push([t.orangeText, over(t.tint(t.orange, 0.20), t.card)], [t.greenText, over(t.tint(t.green, 0.20), t.card)]);
        for (const fill of [t.accent, t.accentHover, t.accentPressed])
            pairs.push([t.textOnAccent, fill]);
        for (const fill of [t.orangeButton, t.orangeButtonHover, t.orangeButtonPressed])
            pairs.push([t.textOnOrange, fill]);
        pairs.push([t.textOnBubble, t.bubble], [t.textPrimary, t.segmentSelected]);
        for (const [text, ground] of pairs)
            verify(contrast(text, ground) >= 4.5, text + " on " + ground + ": " + contrast(text, ground).toFixed(2));
        Appearance.dark = false;
    }

    SmallSlider {
        id: slider

        property real asked

        width: 200
        from: 0
        to: 120
        stepSize: 50
        value: 57
        onMoved: value => asked = value
    }
    function test_snapping_data() {
        return [
            { tag: "-5", to: 0 }, { tag: "24", to: 0 }, { tag: "26", to: 50 }, { tag: "99", to: 100 },
            { tag: "109", to: 100 }, { tag: "111", to: 120 }, { tag: "500", to: 120 },
        ];
    }
    function test_snapping(row) {
        compare(slider.snapped(Number(row.tag)), row.to);
        compare(slider.value, 57, "moved by being shown");
    }

    TabularText {
        id: digits

        y: 50
        color: "black"
        font.pixelSize: 16
    }
    function test_digitsDoNotDance() {
        digits.text = "1111 RPM";
        const width = digits.implicitWidth;
        digits.text = "0000 RPM";
        compare(digits.implicitWidth, width);
    }

    SymbolIcon {
        id: icon

        y: 100
        width: 24
        height: 24
        name: "circle.fill"
        color: "#FF0000"
    }
    function test_symbolsTakeTheirColour() {
        compare(grabImage(icon).pixel(12, 12), Qt.color("#FF0000"));
        icon.color = "#0000FF";
        compare(grabImage(icon).pixel(12, 12), Qt.color("#0000FF"));
    }

    LinePlot {
        id: plot

        x: 50
        y: 100
        width: 40
        height: 20
        lines: [
            ChartLine {
                color: "#00FF00"
                points: [Qt.point(0, 10), Qt.point(40, 10)]
            },
            ChartLine {
                id: line
            }
        ]
    }
    function test_lines_data() {
        const at = (...values) => values.map(([x, y]) => Qt.point(x, y));
        return [
            { tag: "from beyond the left edge", points: at([-1e12, 10], [30, 10]), drawn: [0, 29], clear: [35] },
            { tag: "of nothing", points: at([0, NaN]), drawn: [], clear: [0, 20, 39] },
            { tag: "without a value in between", points: at([0, 10], [10, 10], [20, NaN], [30, 10], [40, 10]), drawn: [5, 35], clear: [15, 20, 25] },
            { tag: "without values at the ends", points: at([0, Infinity], [10, 10], [20, 10], [40, -Infinity]), drawn: [15], clear: [5, 25] },
            { tag: "from far above", points: at([0, 1e300], [20, 10], [40, 10]), drawn: [25, 39], clear: [10] },
        ];
    }
    function test_lines(row) {
        const hasColor = (x, y) => grabImage(plot).pixel(x, y) === line.color;
        plot.domain = Qt.rect(0, 0, 40, 20);
        line.points = row.points;
        for (const color of ["#FF0000", "#0000FF"]) {
            line.color = color;
            for (const x of row.drawn)
                verify(hasColor(x, 10), x + " is not " + color);
            for (const x of row.clear)
                verify(!hasColor(x, 10), x + " is " + color);
        }
        plot.domain = Qt.rect(0, -5, 40, 20);
        for (const x of row.drawn)
            verify(hasColor(x, 5) && !hasColor(x, 10), "did not follow the domain");
        line.points = [];
        for (const x of row.drawn)
            verify(!hasColor(x, 5), "stayed without points");
    }
    function test_nearestPoint_data() {
        return [{ tag: "-3", x: 0 }, { tag: "5", x: 0 }, { tag: "5.1", x: 10 }, { tag: "14.9", x: 10 }, { tag: "99", x: 20 }];
    }
    function test_nearestPoint(row) {
        line.points = [Qt.point(0, 10), Qt.point(10, 10), Qt.point(20, 90)];
        compare(line.nearest(Number(row.tag)).x, row.x);
    }

    PushButton {
        id: button

        y: 150
        text: "Weiter"

        FocusRing {
            id: ring

            control: button
        }
    }
    Window {
        id: other

        transientParent: null
    }
    function test_theRingTellsWhoBroughtTheFocus() {
        const leaveAndReturn = () => {
            other.visible = true;
            other.requestActivate();
            tryVerify(() => !ring.visible && !button.activeFocus);
            other.visible = false;
            test.Window.window.requestActivate();
            tryVerify(() => button.activeFocus);
        };
        button.forceActiveFocus(Qt.TabFocusReason);
        verify(ring.visible);
        leaveAndReturn();
        verify(ring.visible);
        slider.takeFocusByMouse();
        mouseClick(button);
        verify(button.activeFocus && !ring.visible);
        leaveAndReturn();
        verify(!ring.visible);
        slider.takeFocusByMouse();
        verify(!slider.showsFocus);
        slider.forceActiveFocus(Qt.TabFocusReason);
        button.forceActiveFocus(Qt.TabFocusReason);
        slider.forceActiveFocus(Qt.BacktabFocusReason);
        verify(slider.showsFocus && !ring.visible);
    }

    TestBench {
        id: bench
    }
    function test_assistiveTechnologyClicks_data() {
        return ["PushButton", "IconButton", "ChoiceButton", "ToggleSwitch", "ContextMenuItem"].map(type => ({ tag: type }));
    }
    function test_assistiveTechnologyClicks(row) {
        const item = Qt.createQmlObject("import Ventaro.Style; " + row.tag + " { property int clicks; onClicked: ++clicks }", test);
        verify(bench.act(item, "Press"));
        compare(item.clicks, 1);
        verify(!bench.isChecked(item), "a click changes nothing by itself");
        item.enabled = false;
        bench.act(item, "Press");
        compare(item.clicks, 1, "although it was disabled");
        item.destroy();
    }
}
