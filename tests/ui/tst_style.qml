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

    function test_contrast() {
        const t = Theme;
        const tinted = (base, opacity, ground) => over(t.tint(base, opacity), ground);
        for (const isDark of [true, false]) {
            Appearance.dark = isDark;
            const block = over(t.blockTint, t.sidebar);
            const fanRow = over(t.blockTint, t.popover);
            const grounds = [t.window, t.sidebar, t.card, t.popover, block];
            // Texts with the grounds on which they stand.
            const texts = [
                [t.textPrimary, [...grounds, fanRow, over(t.controlFill, t.window), over(t.controlPressed, t.window), tinted(t.orange, 0.14, t.window), tinted(t.yellow, 0.12, t.window), tinted(t.red, 0.10, t.window), tinted(t.green, 0.10, t.window), t.segmentSelected]],
                [t.textSecondary, [...grounds, tinted(t.accentFill, 0.10, t.card), tinted(t.orange, 0.10, t.popover), tinted(t.purple, 0.10, t.popover), tinted(t.green, 0.10, t.popover)]],
                [t.textTertiary, [t.card, t.window, t.field]],
                [t.accentText, [t.card]],
                [t.greenText, [block, tinted(t.green, 0.20, t.card)]],
                [t.yellowText, [block]],
                [t.orangeText, [block, tinted(t.orange, 0.20, t.card)]],
                [t.redText, [block]],
                [t.cyanText, [block, fanRow]],
                [t.textOnAccent, [t.accent, t.accentHover, t.accentPressed]],
                [t.textOnOrange, [t.orangeButton, t.orangeButtonHover, t.orangeButtonPressed]],
                [t.textOnBubble, [t.bubble]],
            ];
            for (const [text, behind] of texts)
                for (const ground of behind)
                    verify(contrast(text, ground) >= 4.5, text + " on " + ground + ": " + contrast(text, ground).toFixed(2));
        }
    }

    SmallSlider {
        id: slider

        width: 200
        from: 0
        to: 120
        stepSize: 50
        value: 57
    }
    function test_snapping() {
        for (const [wanted, snapped] of [[-5, 0], [24, 0], [26, 50], [99, 100], [109, 100], [111, 120], [500, 120]])
            compare(slider.snapped(wanted), snapped, wanted);
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
    function test_nearestPoint() {
        line.points = [Qt.point(0, 10), Qt.point(10, 10), Qt.point(20, 90)];
        for (const [wanted, nearest] of [[-3, 0], [5, 0], [5.1, 10], [14.9, 10], [99, 20]])
            compare(line.nearest(wanted).x, nearest, wanted);
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
    function test_theRingTellsWhoBroughtTheFocus() {
        for (const isByKey of [true, false]) {
            slider.takeFocusByMouse();
            if (isByKey)
                button.forceActiveFocus(Qt.TabFocusReason);
            else
                mouseClick(button);
            verify(button.activeFocus && ring.visible === isByKey);
            bench.leaveAndReturn(button);
            tryVerify(() => button.activeFocus && ring.visible === isByKey);
        }
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
    function test_assistiveTechnologyClicks() {
        for (const type of ["PushButton", "IconButton", "ChoiceButton", "ToggleSwitch", "ContextMenuItem"]) {
            const item = Qt.createQmlObject("import Ventaro.Style; " + type + " { property int clicks; onClicked: ++clicks }", test);
            verify(bench.act(item, "Press"), type);
            verify(!bench.isChecked(item), "a click changes nothing by itself");
            item.enabled = false;
            bench.act(item, "Press");
            compare(item.clicks, 1, type + ": once, and not while it was disabled");
            item.destroy();
        }
    }
}
